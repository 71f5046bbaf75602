#include "Platform.h"

namespace {

unsigned current = 0;

}  // namespace

tqApplObject::tqApplObject() : tqBase(1) {}

tqApplObject::~tqApplObject() = default;

void tqApplObject::setCurrent(tqApplObject* application) {
  current = application ? application->oid() : 0;
}

unsigned tqApplObject::currentOid() { return tqBase::validated(current, 0) ? current : 0; }

unsigned tqApplObject::classId() const { return 1047; }

const char* tqApplObject::className() const { return "ApplObject"; }

int tqApplObject::isA(unsigned id) const { return id == 1047 ? 1 : tqBase::isA(id); }
