#include "Monitor.h"
#include "Rms.h"
#include "coredefs.h"
#include "molreport_files.h"

using namespace molreport;

// What is done with several models, and with models that move.

namespace {

const std::string n1 = atomLine(" N", "GLY A   1", {1, 0, 0});

std::string model(int number, const std::string& atoms) {
  return fmt::format("MODEL     {:4}\n{}ENDMDL\n", number, atoms);
}

Structure& read(TextReading& result, const std::string& text) {
  result = readText(text);
  return *result.reading.structure;
}

}  // namespace

TEST(MolreportRms, ComparesTheAtomsThatBothModelsHave) {
  const std::string ca = atomLine(" CA", "GLY A   1", {0, 0, 0});
  const std::string moved = atomLine(" CA", "GLY A   1", {2, 3, 6});  // 7 away
  const struct {
    const char* label;
    std::string first, second;
    int matched;
    double rms;
  } cases[] = {{"one stays, one moves 7", n1 + ca, n1 + moved, 2, std::sqrt(49.0 / 2)},
               {"another order", ca + n1, n1 + moved, 2, std::sqrt(49.0 / 2)},
               {"one missing in the second", n1 + ca, moved, 1, 7.0},
               {"one more in the second", ca, n1 + moved, 1, 7.0},
               {"another residue name", ca, with(moved, 18, "ALA"), 1, 7.0},
               {"another chain", ca, with(moved, 22, "B"), 0, 0.0},
               {"another number", ca, with(moved, 26, "2"), 0, 0.0},
               {"another insertion code", ca, with(moved, 27, "A"), 0, 0.0},
               {"another location", with(ca, 17, "A"), with(moved, 17, "B"), 0, 0.0},
               {"a location against none", ca, with(moved, 17, "A"), 0, 0.0},
               {"calcium against an alpha carbon", ca, with(moved, 13, "CA  "), 0, 0.0},
               {"locations in another order", with(ca, 17, "A") + with(moved, 17, "B"),
                with(moved, 17, "B") + with(ca, 17, "A"), 2, 0.0},
               {"a number used twice", ca + moved, ca + moved, 2, 0.0}};
  for (const auto& c : cases) {
    TextReading result;
    const Structure& structure = read(result, model(1, c.first) + model(2, c.second));
    const Deviation deviation = deviationOf(*structure.models()[1], *structure.models()[0]);
    EXPECT_EQ(deviation.matched, c.matched) << c.label;
    EXPECT_NEAR(deviation.rms, c.rms, 1e-12) << c.label;
  }
}

TEST(MolreportRms, IsPrintedForEachModelWithTheNumberMatched) {
  TextReading result;
  const Structure& structure =
      read(result, model(3, n1) + model(4, n1 + with(n1, 38, "5")) + model(5, with(n1, 22, "B")));
  testing::internal::CaptureStdout();
  printRms(stdout, structure);
  const std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_NE(printed.find("from model 3 in"), std::string::npos);
  EXPECT_NE(printed.find("\n      4          2          1      0.000\n"
                         "      5          1          0          -\n"),
            std::string::npos)
      << printed;
}

namespace {

/// What `monitor` prints for one model after another, without what comes before the numbers.
std::string monitored(const std::string& text, const std::vector<std::string>& specs) {
  const TextReading result = readText(text);
  testing::internal::CaptureStdout();
  const std::string fault = printMonitors(stdout, *result.reading.structure, specs);
  const std::string printed = testing::internal::GetCapturedStdout();
  return fault.empty() ? printed.substr(printed.find("\n\n") + 2) : fault;
}

// Four atoms at right angles: sides of 1, a torsion of 90 degrees.
std::string corners(const char* lastAtom = " D") {
  return atomLine(" A", "LIG A  -3", {1, 0, 0}) + atomLine(" B", "LIG A  -3", {0, 0, 0}) +
         atomLine(" C", "LIG    59B", {0, 1, 0}) + atomLine(lastAtom, "LIG -   1", {0, 1, 1});
}

struct FourAtoms {
  Atom a{"A", 1, "C", false}, b{"B", 1, "C", false}, c{"C", 1, "C", false}, d{"D", 1, "C", false};
};

}  // namespace

TEST(MolreportMonitor, MeasuresInEachModelOfTheFile) {
  const std::string text = model(1, corners()) + model(2, with(corners(), 31, "   3.500")) +
                           model(3, corners("D")) + model(4, with(corners(), 31, "   0.000")) +
                           model(5, corners());
  EXPECT_EQ(monitored(text, {"A/-3/A,A/-3/B", "A/-3/A,A/-3/B,/59B/C", "A/-3/A,A/-3/B,/59B/C,-/1/D",
                             "/59B/C,-/1/D"}),
            "  model          1          2          3          4\n"
            "      1      1.000      90.00     -90.00      1.000\n"
            "      2      3.500      90.00     -90.00      1.000\n"
            "      3      1.000      90.00    missing    missing\n"
            "      4      0.000  undefined  undefined      1.000\n"
            "      5      1.000      90.00     -90.00      1.000\n");
}

TEST(MolreportMonitor, IsMeasuredAgainOnlyWhenAnAtomOfItsOwnMoved) {
  FourAtoms atoms;
  Monitor ab({&atoms.a, &atoms.b}), cd({&atoms.c, &atoms.d});
  EXPECT_EQ(Monitor::drain(), 0);
  atoms.a.moveTo({3, 0, 0});
  atoms.b.moveTo({0, 4, 0});
  EXPECT_EQ(fired_triggers[NOTIFY_SECOND]->count(), 1);
  EXPECT_EQ(ab.value(), 0.0) << "before the queue is drained";
  EXPECT_EQ(Monitor::drain(), 1);
  EXPECT_EQ(ab.value(), 5.0);
  EXPECT_EQ(fired_triggers[NOTIFY_SECOND]->count(), 0);

  atoms.a.moveTo({0, 4, 7});
  EXPECT_EQ(Monitor::drain(), 1) << "its trigger was not reset";
  EXPECT_EQ(ab.value(), 7.0);

  triggers_active = 0;
  atoms.c.moveTo({0, 0, 9});
  triggers_active = 1;
  EXPECT_EQ(Monitor::drain(), 0);
  EXPECT_EQ(cd.value(), 0.0);
  atoms.d.moveTo({0, 0, 2});
  EXPECT_EQ(Monitor::drain(), 1);
  EXPECT_EQ(cd.value(), 2.0) << "c was not among the atoms touched";
}

TEST(MolreportMonitor, LeavesTheTriggersOfOthersOnTheQueue) {
  FourAtoms atoms;
  tqTrigger other(TRIGGER_PLAIN);
  other.addEvent(movedEvent);
  other.addObject(&atoms.a);
  Monitor monitor({&atoms.a, &atoms.b});
  atoms.a.moveTo({1, 0, 0});
  EXPECT_EQ(Monitor::drain(), 1);
  ASSERT_EQ(fired_triggers[NOTIFY_SECOND]->count(), 1);
  EXPECT_EQ(fired_triggers[NOTIFY_SECOND]->item(0), &other);
}

TEST(MolreportMonitor, AnswersTheIdsOfTheClassTable) {
  FourAtoms atoms;
  const struct {
    const char* name;
    std::vector<Atom*> atoms;
  } cases[] = {{"DistanceMonitor", {&atoms.a, &atoms.b}},
               {"AngleMonitor", {&atoms.a, &atoms.b, &atoms.c}},
               {"TorsionMonitor", {&atoms.a, &atoms.b, &atoms.c, &atoms.d}}};
  for (const auto& c : cases) {
    const Monitor monitor(c.atoms);
    EXPECT_STREQ(monitor.className(), c.name);
    EXPECT_EQ(monitor.classId(), StringToClassId(c.name));
    EXPECT_EQ(monitor.isA(StringToClassId("Monitor")), 1) << c.name;
    EXPECT_EQ(monitor.isA(Atom::tableId), 0) << c.name;
  }
}

TEST(MolreportMonitor, NeedsAtomsThatTheFirstModelHas) {
  const struct {
    const char* spec;
    const char* fault;
  } cases[] = {{"A/-3/A,A/-3/B,", "\"\" is not of the form CHAIN/RESIDUE/ATOM"},
               {"A/-3/A,A/*/B", "\"A/*/B\" does not name one atom"},
               {"A/-3/A,A/-3", "\"A/-3\" does not name one atom"},
               {"A/-3/A,A/3/B", "model 1 has no atom A/3/B"},
               {"A/-3/A,A/-3/A", "A/-3/A is named twice"},
               {"A/-3/A", "a distance takes 2 atoms, an angle 3, a torsion 4, not 1"}};
  for (const auto& c : cases)
    EXPECT_EQ(monitored(corners(), {c.spec}), fmt::format("\"{}\": {}", c.spec, c.fault));
}
