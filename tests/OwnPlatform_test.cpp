#include "Matrix3x3.h"
#include "Platform.h"
#include "Trigger.h"

#include <gtest/gtest.h>

// A program may define single functions of the application layer itself; the library then calls
// these, and the rest of the default layer stays.
namespace {

unsigned currentApplication = 0;

}  // namespace

unsigned tqz_CurrentApplicationObject() { return currentApplication; }

void dmatinv_(double*, double* result, int* status) {
  for (int i = 0; i < 9; ++i) result[i] = i;
  *status = 0;
}

TEST(OwnPlatform, ProgramsOwnCurrentApplicationDecidesWhichTriggersFire) {
  tqApplObject application;
  tqApplTrigger trigger(TRIGGER_PLAIN);
  trigger.setDestAppl(&application);
  trigger.mode = tqApplTrigger::MODE_SAME_APPL;
  EXPECT_EQ(trigger.checkMode(), 0);
  currentApplication = application.oid();
  EXPECT_EQ(trigger.checkMode(), 1);
}

TEST(OwnPlatform, ProgramsOwnInversionServesMatrices) {
  const tqMatrix3x3 inverse = ~tqMatrix3x3();
  for (int i = 0; i < 9; ++i) EXPECT_EQ(inverse.at(i / 3, i % 3), i);
}
