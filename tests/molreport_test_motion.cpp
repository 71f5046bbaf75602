#include "Assembly.h"
#include "Monitor.h"
#include "PdbWriter.h"
#include "Rms.h"
#include "Selection.h"
#include "coredefs.h"
#include "molreport_files.h"

#include <sstream>

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

namespace {

/// The placements of assembly 1 as "NUMBER:CHAINS ", or what is wrong.
std::string placementsOf(const std::string& text) {
  std::vector<RemarkLine> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back({static_cast<int>(lines.size()) + 1, "REMARK 350 " + line});
  Assembly assembly;
  const std::string fault = readAssembly("FILE", lines, 1, assembly);
  if (!fault.empty()) return fault;
  std::string placements;
  for (const Placement& p : assembly) placements += fmt::format("{}:{} ", p.number, p.chains);
  return placements;
}

/// What is written of a model, or what is wrong.
std::string written(const Model& model) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const stream = open_memstream(&text, &size);
  const std::string fault = PdbWriter(stream).writeModel(model, 1);
  std::fclose(stream);
  const std::string result(text, size);
  std::free(text);
  return fault.empty() ? result : fault;
}

}  // namespace

TEST(MolreportAssembly, IsReadFromItsRecords) {
  const std::string id = "BIOMOLECULE: 1\n", apply = "APPLY THE FOLLOWING TO CHAINS: ";
  const auto op = [](int number, const char* shift = "   0.00000") {
    return fmt::format("  BIOMT1{0:4}  1.000000  0.000000  0.000000     {1}\n"
                       "  BIOMT2{0:4}  0.000000  1.000000  0.000000        0.00000\n"
                       "  BIOMT3{0:4}  0.000000  0.000000  1.000000        0.00000\n",
                       number, shift);
  };
  const std::string one = op(1);
  const struct {
    const char* label;
    std::string text;
    const char* expected;
  } cases[] = {
      {"lists that go on", id + apply + "A, B,\n                   AND CHAINS: C, 1\n" + one,
       "1:ABC1 "},
      {"a motion of two groups",
       id + apply + "A\n" + one + op(2, "  12.50000") + apply + "B\n" + op(1), "1:AB 2:A "},
      {"groups with motions of their own",
       id + apply + "A\n" + one + apply + "B\n" + op(1, "-999.50000"), "1:A 1:B "},
      {"the chain without id", id + apply + "NULL\n" + one, "1: \x20"},
      {"another assembly first",
       "BIOMOLECULE: 2\n" + apply + "A\n" + op(7) + id + apply + "B\n" + one, "1:B "},
      {"one for several ids", "BIOMOLECULE: 3, 1\n" + apply + "A\n" + one, "1:A "},
      {"none", "SOFTWARE USED: PISA\n", "FILE: no REMARK 350 records that describe an assembly"},
      {"not this one", "BIOMOLECULE: 11\n" + one, "FILE: no assembly 1; the file describes 11"},
      {"no operators", id + apply + "A\n", "FILE: assembly 1 has no operators"},
      {"no chains", id + one, "FILE:2: no chains are named for operator 1"},
      {"a long chain id", id + apply + "A, AA\n",
       "FILE:2: chain \"AA\" is longer than one character"},
      {"a row missing", id + apply + "A\n" + one.substr(58),
       "FILE:3: BIOMT2 of operator 1 is out of order"},
      {"rows of two operators", id + apply + "A\n" + with(one, 58 + 12, "2"),
       "FILE:4: BIOMT2 of operator 2 is out of order"},
      {"cut", id + apply + "A\n" + one.substr(0, 58), "FILE: an operator of assembly 1 lacks rows"},
      {"junk", id + apply + "A\n" + with(one, 15, "1.0x0000"),
       "FILE:3: columns 24 to 33, \"1.0x0000\", are not a number"},
      {"no rotation", id + apply + "A\n" + with(one, 14, "-1.000000"),
       "FILE:5: operator 1 is not a rotation"}};
  for (const auto& c : cases) EXPECT_EQ(placementsOf(c.text), c.expected) << c.label;
}

TEST(MolreportAssembly, ComesBackWithItsCoordinatesToTheLastDigit) {
  const std::string path = MOLREPORT_DATA "/peptide.pdb";
  const std::string out = scratchPath("assembly.pdb");
  const Reading reading = readStructure(path);
  testing::internal::CaptureStdout();
  ASSERT_EQ(writeAssembly(stdout, path, reading, 2, out), "");
  testing::internal::GetCapturedStdout();
  const Reading back = readStructure(out);
  ASSERT_TRUE(back.structure);
  EXPECT_EQ(back.refused + back.remarked, 0);
  EXPECT_EQ(back.structure->title().rfind("BIOLOGICAL ASSEMBLY 2: PEPTIDE WITH IDEAL", 0), 0u);
  std::vector<const Atom*> sources;
  forEachAtom(*reading.structure->models()[0],
              [&](const Chain&, const Residue&, Atom& atom) { sources.push_back(&atom); });
  // What the operators of the file do to a point as a column: turns of 120 degrees and a shift.
  const double turns[3][2] = {{1.0, 0.0}, {-0.5, 0.866025}, {-0.5, -0.866025}};
  ASSERT_EQ(back.structure->models().count(), 3);
  for (int m = 0; m < 3; ++m) {
    std::size_t i = 0;
    const double cosine = turns[m][0], sine = turns[m][1];
    forEachAtom(*back.structure->models()[m], [&](const Chain&, const Residue&, Atom& atom) {
      ASSERT_LT(i, sources.size());
      const Atom& source = *sources[i++];
      const tqPoint3D &p = source.position(), &q = atom.position();
      EXPECT_EQ(selectionOf(atom), selectionOf(source));
      EXPECT_EQ(atom.location(), source.location());
      EXPECT_EQ(atom.occupancy(), source.occupancy());
      EXPECT_EQ(atom.charge(), source.charge());
      EXPECT_EQ(atom.element(), source.element());
      EXPECT_NEAR(q.x, cosine * p.x - sine * p.y, 0.0005 + 1e-9) << selectionOf(atom);
      EXPECT_NEAR(q.y, sine * p.x + cosine * p.y, 0.0005 + 1e-9) << selectionOf(atom);
      EXPECT_NEAR(q.z, p.z + 12.5 * m, 0.0005 + 1e-9) << selectionOf(atom);
    });
    EXPECT_EQ(i, sources.size());
  }
}

TEST(MolreportAssembly, LacksNoChain) {
  const std::string remarks =
      "REMARK 350 BIOMOLECULE: 1\n"
      "REMARK 350 APPLY THE FOLLOWING TO CHAINS: A, C\n"
      "REMARK 350   BIOMT1   1  1.000000  0.000000  0.000000        0.00000\n"
      "REMARK 350   BIOMT2   1  0.000000  1.000000  0.000000        0.00000\n"
      "REMARK 350   BIOMT3   1  0.000000  0.000000  1.000000        0.00000\n";
  const TextReading result = readText(remarks + n1);
  EXPECT_EQ(writeAssembly(stdout, "FILE", result.reading, 1, ""),
            "FILE: assembly 1 has chains that model 1 lacks: C");
}

TEST(MolreportPdbWriter, WritesRecordsAsTheyWereRead) {
  const std::string records =
      "ATOM      1  N  AGLY A  -2    -999.999   0.0009999.999  0.50 10.25           N  \n"
      "ATOM      2 HH11BARGGB9999C   -123.456-234.567-345.678  1.00100.00           H1-\n"
      "TER       3      ARGGB9999C\n"
      "HETATM    4 ZN    ZN AA000       1.000   2.000   3.000  1.001234.5          ZN2+\n"
      "HETATM    5  D2  DOD     7       1.000   2.000   3.000  0.00  0.00           D  \n";
  const TextReading result = readText(records);
  // Chains follow each other whole.
  const std::size_t line = 81;
  const std::string zinc = with(records.substr(2 * line + 28, line), 11, "2");
  EXPECT_EQ(written(*result.reading.structure->models()[0]),
            "MODEL        1\n" + records.substr(0, line) + zinc +
                with(records.substr(line, line), 11, "3") +
                with(records.substr(2 * line, 28), 11, "4") + records.substr(3 * line + 28) +
                "ENDMDL\n");
}

TEST(MolreportPdbWriter, GoesOnInHybrid36WhereDecimalSerialsRunOut) {
  Model model(1);
  Chain* const chain = new Chain('A');
  Residue* const residue = new Residue("LIG", 10000, ' ');
  model.addChild(chain);
  chain->addChild(residue);
  for (int i = 0; i < 100001; ++i) residue->addChild(new Atom("C", 1, "C", true));
  const std::string text = written(model);
  EXPECT_NE(text.find("\nHETATM99999  C   LIG AA000       0.000"), std::string::npos);
  EXPECT_NE(text.find("\nHETATMA0000  C   LIG AA000       0.000"), std::string::npos);
  EXPECT_NE(text.find("\nHETATMA0001  C   LIG AA000       0.000"), std::string::npos);
}
