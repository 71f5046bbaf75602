#include "AtomRecord.h"
#include "Elements.h"
#include "Hybrid36.h"
#include "IdealPeptide.h"
#include "Summary.h"
#include "Torsions.h"
#include "coredefs.h"
#include "molreport_files.h"

using namespace molreport;

namespace {

const std::string good =
    "ATOM      1  N   GLY A  -2       1.000   2.000   3.000  0.50 10.00           N1+";
const std::string other =
    "ATOM      2  CA  GLY A  -2       1.458   2.000   3.000  1.00 10.00           C  \n";

std::string readTree(const std::string& text) {
  const TextReading result = readText(text);
  return result.reading.structure ? treeOf(*result.reading.structure) : "(no structure)";
}

const Atom& firstAtom(const Structure& structure) {
  return *structure.models()[0]->chains()[0]->residues()[0]->atoms()[0];
}

}  // namespace

TEST(MolreportLine, ThatCannotBeUsedIsNamedAndCountedAndNothingElseIsLost) {
  const struct {
    const char* fault;
    std::string line;
    const char* message;
  } cases[] = {
      {"letters", with(good, 31, "   junk "), "x coordinate \"junk\" is not a number"},
      {"blank", with(good, 39, "        "), "y coordinate is missing"},
      {"overflow", with(good, 47, "********"), "z coordinate \"********\" is not a number"},
      {"two numbers", with(good, 31, "1.0 22.0"), "x coordinate \"1.0 22.0\" is not a number"},
      {"two points", with(good, 31, "   1.0.0"), "x coordinate \"1.0.0\" is not a number"},
      {"sign alone", with(good, 31, "       -"), "x coordinate \"-\" is not a number"},
      {"not finite", with(good, 31, "     nan"), "x coordinate \"nan\" is not a number"},
      {"exponent", with(good, 31, "   1.0e2"), "x coordinate \"1.0e2\" is not a number"},
      {"control", with(good, 31, "  1\x1b[31m"), "x coordinate \"1?[31m\" is not a number"},
      {"cut before", good.substr(0, 28), "the line ends before the coordinates"},
      {"cut within", good.substr(0, 53), "the line ends within the coordinates, after column 53"},
      {"NUL within", with(good, 50, std::string(1, '\0')),
       "the line ends within the coordinates, after column 49"},
      {"no name", with(good, 13, "    "), "atom name is missing"},
      {"no number", with(good, 23, "    "), "residue number is missing"},
      {"junk number", with(good, 23, "A-02"), "residue number \"A-02\" is not a number"},
      {"repeated", with(other, 7, "   99").substr(0, 80), "repeats atom CA of residue GLY A -2"}};
  for (const auto& c : cases) {
    const TextReading result = readText(other + c.line + "\n" + with(other, 14, "C "));
    EXPECT_EQ(result.messages, fmt::format("FILE:2: {}, line not used\n", c.message)) << c.fault;
    EXPECT_EQ(result.reading.refused, 1) << c.fault;
    ASSERT_TRUE(result.reading.structure) << c.fault;
    EXPECT_EQ(treeOf(*result.reading.structure), "1[A[GLY-2(CA,C)]]") << c.fault;
  }
}

TEST(MolreportLine, IsKeptWhenAFieldThatCanBeDoneWithoutIsBad) {
  const struct {
    const char* fault;
    std::string line;
    const char* message;
  } cases[] = {{"sound", good, ""},
               {"no serial", with(good, 7, "     "), ""},
               {"starred serial", with(good, 7, "*****"), "serial \"*****\" is not a number"},
               {"serial spilled over", with(good, 1, "ATOM 111757"), ""},
               {"hybrid-36 serial", with(good, 7, "A0000"), ""},
               {"ends after z", good.substr(0, 54), ""},
               {"no occupancy", with(good, 55, "      "), ""},
               {"junk occupancy", with(good, 55, "  1,00"),
                "occupancy \"1,00\" is not a number, 1.00 taken"},
               {"junk temperature factor", with(good, 61, "******"),
                "temperature factor \"******\" is not a number, 0.00 taken"},
               {"junk charge", with(good, 79, "xx"), "charge \"xx\" is not a number"},
               {"line number in columns 77-80", with(good, 73, "1GDR 109"), ""},
               {"two of them", with(with(good, 55, "     x"), 7, "    x"),
                "serial \"x\" is not a number; occupancy \"x\" is not a number, 1.00 taken"}};
  for (const auto& c : cases) {
    const TextReading result = readText(c.line);
    const std::string message = *c.message ? fmt::format("FILE:1: {}\n", c.message) : "";
    EXPECT_EQ(result.messages, message) << c.fault;
    EXPECT_EQ(result.reading.refused, 0) << c.fault;
    EXPECT_EQ(result.reading.remarked, *c.message ? 1 : 0) << c.fault;
    ASSERT_TRUE(result.reading.structure) << c.fault;
    EXPECT_EQ(firstAtom(*result.reading.structure).position().z, 3.0) << c.fault;
  }
}

TEST(MolreportLine, HasItsFieldsInFixedColumnsEvenWhereTheyTouch) {
  AtomRecord record;
  std::string remark;
  const std::string text =
      "HETATM99999 HH11AARGGB-999C   -123.456-234.567-345.6781.0000100.00      SEGI H2-";
  EXPECT_EQ(record.read({text.c_str(), static_cast<int>(text.size())}, remark), "");
  EXPECT_EQ(remark, "");
  EXPECT_TRUE(record.isHetero);
  EXPECT_EQ(record.serial, 99999);
  EXPECT_STREQ(record.nameColumns, "HH11");
  EXPECT_STREQ(record.location, "A");
  EXPECT_STREQ(record.residueName, "ARGG");
  EXPECT_STREQ(record.chain, "B");
  EXPECT_EQ(record.residueNumber, -999);
  EXPECT_STREQ(record.insertionCode, "C");
  EXPECT_EQ(record.xyz[0], -123.456);
  EXPECT_EQ(record.xyz[1], -234.567);
  EXPECT_EQ(record.xyz[2], -345.678);
  EXPECT_EQ(record.occupancy, 1.0);
  EXPECT_EQ(record.temperatureFactor, 100.0);
  EXPECT_STREQ(record.symbolColumns, " H");
  EXPECT_EQ(record.charge, -2);
}

TEST(MolreportHybrid36, GoesOnWhereDecimalNumbersEnd) {
  const struct {
    int value;
    int width;
    const char* text;
  } cases[] = {{-999, 4, "-999"},      {9999, 4, "9999"},      {10000, 4, "A000"},
               {1223055, 4, "ZZZZ"},   {1223056, 4, "a000"},   {2436111, 4, "zzzz"},
               {99999, 5, "99999"},    {100000, 5, "A0000"},   {100035, 5, "A000Z"},
               {43770015, 5, "ZZZZZ"}, {43770016, 5, "a0000"}, {87440031, 5, "zzzzz"}};
  for (const auto& c : cases) {
    int value = 0;
    EXPECT_EQ(writeHybrid36(c.value, c.width), c.text);
    EXPECT_EQ(readHybrid36(c.text, c.width, value), 1) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
  }
  int value = 7;
  for (const char* text : {"    ", "A00 ", "Aa00", "-   ", "1A00", "A-00", "****"})
    EXPECT_EQ(readHybrid36(text, 4, value), 0) << text;
  EXPECT_EQ(value, 7);
  EXPECT_EQ(writeHybrid36(-1000, 4), "****");
  EXPECT_EQ(writeHybrid36(2436112, 4), "****");
}

TEST(MolreportElement, ComesFromItsColumnsOrFromTheNameOfTheAtom) {
  const struct {
    const char* symbol;
    const char* name;
    const char* residue;
    const char* element;
  } cases[] = {
      {" C", " CA ", "ALA", "C"},  {"FE", "FE  ", "HEM", "FE"}, {"N ", " N  ", "ALA", "N"},
      {" D", " D1 ", "DOD", "D"},  {"Zn", "ZN  ", "ZN", "ZN"},  {"NA", "NA  ", "NA", "NA"},
      {"  ", " CA ", "LIG", "C"},  {"  ", "CA  ", "CA", "CA"},  {"  ", "CA  ", "ALA", "C"},
      {" 1", "HG21", "LIG", "H"},  {"  ", "1HB ", "ALA", "H"},  {"  ", "HG  ", "HG", "HG"},
      {"  ", "CL12", "LIG", "CL"}, {"  ", "CB12", "LIG", "C"},  {"  ", " O5*", "DA", "O"},
      {"  ", "SE  ", "MSE", "SE"}, {"  ", "Q1  ", "ALA", "X"},  {"09", "  12", "LIG", "X"}};
  for (const auto& c : cases)
    EXPECT_EQ(elementOf(c.symbol, c.name, isStandardResidue(c.residue)).text(), c.element)
        << c.symbol << '|' << c.name << '|' << c.residue;
}

TEST(MolreportTree, StoresEveryNameOnce) {
  const TextReading result =
      readText(good + "\n" + with(other, 18, "ALA") + with(good, 23, "   7"));
  const Children<Residue> residues = result.reading.structure->models()[0]->chains()[0]->residues();
  ASSERT_EQ(residues.count(), 3);
  const Atom& first = *residues[0]->atoms()[0];
  const Atom& last = *residues[2]->atoms()[0];
  EXPECT_EQ(first.name().text().data(), last.name().text().data());
  EXPECT_EQ(residues[0]->name().text().data(), residues[2]->name().text().data());
  EXPECT_TRUE(first.name() == Name("N") && first.element() == Name("N"));
  EXPECT_TRUE(residues[0]->name() != residues[1]->name());
  EXPECT_TRUE(Name() == Name("") && Name(nullptr).isEmpty());
}

TEST(MolreportTree, SortsAtomsIntoModelsChainsAndResidues) {
  const std::string n1 = atomLine(" N", "GLY A   1", {1, 0, 0});
  const std::string c1 = atomLine(" C", "GLY A   1", {2, 0, 0});
  const std::string n2 = atomLine(" N", "SER A   2", {3, 0, 0});
  const std::string water = atomLine(" O", "HOH A   1", {4, 0, 0}, "HETATM");
  const struct {
    const char* label;
    std::string text;
    const char* tree;
  } cases[] = {{"insertion codes", n1 + with(n1, 27, "A") + n2, "1[A[GLY1(N) GLY1A(N) SER2(N)]]"},
               {"a residue that goes on later", n1 + n2 + c1, "1[A[GLY1(N,C) SER2(N)]]"},
               {"two names at one number", n1 + with(n1, 18, "ALA"), "1[A[GLY1(N) ALA1(N)]]"},
               {"names that differ in blanks",
                atomLine("CA", "GLY A   1", {1, 0, 0}) + atomLine(" CA", "GLY A   1", {1, 0, 0}),
                "1[A[GLY1(CA,CA)]]"},
               {"locations", with(n1, 17, "A") + with(n1, 17, "B"), "1[A[GLY1(N.A,N.B)]]"},
               {"a number used again", n1 + with(n1, 33, "9") + c1, "1[A[GLY1(N) GLY1(N,C)]]"},
               {"water after TER", n1 + n2 + "TER\n" + water, "1[A[GLY1(N) SER2(N) HOH1(O)]]"},
               {"numbers from 1 after TER", n2 + "TER\n" + n1, "1[A[SER2(N)]A[GLY1(N)]]"},
               {"numbers that go on after TER", n1 + "TER       1      GLY A\n" + n2,
                "1[A[GLY1(N) SER2(N)]]"},
               {"blank chain", with(n1, 22, " ") + n1, "1[ [GLY1(N)]A[GLY1(N)]]"},
               {"models", "MODEL        4\n" + n1 + "ENDMDL\nMODEL       9\n" + n1,
                "4[A[GLY1(N)]]9[A[GLY1(N)]]"},
               {"a model without number", "MODEL\n" + n1 + "ENDMDL\nMODEL\n" + n1,
                "1[A[GLY1(N)]]2[A[GLY1(N)]]"},
               {"a model number run together", "MODEL12\n" + n1, "12[A[GLY1(N)]]"},
               {"a model never ended", "MODEL        1\n" + n1 + "MODEL        2\n" + n1,
                "1[A[GLY1(N)]]2[A[GLY1(N)]]"},
               {"atoms after ENDMDL", "MODEL        1\n" + n1 + "ENDMDL\n" + n2,
                "1[A[GLY1(N)]]2[A[SER2(N)]]"},
               {"atoms after END", n1 + "END\n" + n2, "1[A[GLY1(N)]]2[A[SER2(N)]]"},
               {"an empty model", "MODEL        1\nENDMDL\nMODEL        2\n" + n1, "2[A[GLY1(N)]]"},
               {"CR LF and NULs at the end",
                with(n1, 55, "\r\n") + with(n2, 55, "\r\n") + std::string(9, '\0'),
                "1[A[GLY1(N) SER2(N)]]"},
               {"no line end, other records", "ANISOU\nATOMS\nHELIX\n\n" + n1.substr(0, 54),
                "1[A[GLY1(N)]]"},
               {"a very long line", n1.substr(0, 66) + std::string(2000, ' ') + n2 + n2,
                "1[A[GLY1(N) SER2(N)]]"},
               {"no atoms", "HEADER\n", "(no structure)"},
               {"nothing", "", "(no structure)"}};
  for (const auto& c : cases) EXPECT_EQ(readTree(c.text), c.tree) << c.label;
}

TEST(MolreportTree, RemarksOnWhatIsOddAboutResiduesAndModels) {
  const std::string n = atomLine(" N", "GLY A   1", {1, 0, 0});
  EXPECT_EQ(readText(n + with(n, 33, "9")).messages,
            "FILE:2: residue GLY A 1 stands here once more\n");
  EXPECT_EQ(readText("MODEL\n" + n).messages, "FILE:1: the model has no number, 1 taken\n");
  EXPECT_EQ(readText("MODEL     one\n" + n).messages,
            "FILE:1: model number \"one\" is not a number, 1 taken\n");
  EXPECT_EQ(readText("MODEL        1\nENDMDL\n" + n).messages,
            "FILE:2: the model that ends here has no atoms\n");
}

TEST(MolreportTree, AnswersTheIdsOfTheClassTable) {
  const TextReading result = readText(good);
  const tqTreeNode* node = result.reading.structure.get();
  for (const char* name : {"Structure", "Model", "Subunit", "ChemObject", "Atom"}) {
    ASSERT_TRUE(node) << name;
    EXPECT_STREQ(node->className(), name);
    EXPECT_EQ(node->classId(), StringToClassId(name));
    EXPECT_EQ(node->isA(StringToClassId("TreeNode")), 1);
    node = node->child(0);
  }
}

TEST(MolreportTorsions, AreThoseThatThePeptideWasBuiltWith) {
  const Reading reading = readStructure(MOLREPORT_DATA "/peptide.pdb");
  ASSERT_TRUE(reading.structure);
  ASSERT_EQ(reading.structure->models().count(), idealModels);
  // Rounding to three decimals moves each atom by up to 0.0009; seen from an axis 1.2 away, the
  // two ends and the axis turn by about 0.05 degrees each.
  const auto expectTurn = [](const Torsion& torsion, double degrees, const std::string& what) {
    EXPECT_TRUE(torsion.isDefined) << what;
    EXPECT_NEAR(std::remainder(torsion.degrees - degrees, 360.0), 0.0, 0.2) << what;
  };
  for (int m = 0; m < idealModels; ++m) {
    const std::vector<BackboneTorsions> rows = torsionsOf(*reading.structure->models()[m]);
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(idealLength));
    for (int i = 0; i < idealLength; ++i) {
      const BackboneTorsions& row = rows[static_cast<std::size_t>(i)];
      const std::string what = fmt::format("model {}, residue {}", m, row.residue->label());
      EXPECT_EQ(row.residue->name().text(), idealResidues[i].name) << what;
      EXPECT_EQ(row.residue->number(), idealResidues[i].number) << what;
      EXPECT_EQ(row.residue->insertionCode(), idealResidues[i].insertionCode) << what;
      if (i > 0) expectTurn(row.phi, idealTorsions[m][i].phi, what + " phi");
      if (i == idealLength - 1) continue;
      expectTurn(row.psi, idealTorsions[m][i].psi, what + " psi");
      expectTurn(row.omega, idealTorsions[m][i].omega, what + " omega");
    }
    EXPECT_FALSE(rows.front().phi.isDefined);
    EXPECT_FALSE(rows.back().psi.isDefined);
    EXPECT_FALSE(rows.back().omega.isDefined);
  }
}

namespace {

/// A residue's N, CA and C in the plane, 3.5 angstroms further along x for each step: linked in a
/// zigzag with torsions of 180.
std::string backbone(const std::string& residue, int step, const std::string& location = " ") {
  const double x = 3.5 * step, up = step % 2 ? 1.0 : 0.0;
  return with(atomLine(" N", residue, {x, up, 0}), 17, location) +
         with(atomLine(" CA", residue, {x + 1.2, 1.0 - up, 0}), 17, location) +
         with(atomLine(" C", residue, {x + 2.4, up, 0}), 17, location);
}

std::string definedTorsions(const std::string& text) {
  const TextReading result = readText(text);
  std::string defined;
  for (const BackboneTorsions& row : torsionsOf(*result.reading.structure->models()[0])) {
    defined += std::string(row.residue->name().text()) + row.residue->label() + ":";
    if (row.phi.isDefined) defined += " phi";
    if (row.psi.isDefined) defined += " psi";
    if (row.omega.isDefined) defined += " omega";
    defined += "; ";
  }
  return defined;
}

}  // namespace

TEST(MolreportTorsions, LinkResiduesByTheDistanceFromCToN) {
  const std::string first = backbone("ALA A   1", 0), second = backbone("ALA A   2", 1);
  const std::string ca = atomLine("CA", "ALA A   2", {4.7, 0, 0}, "HETATM");
  const struct {
    const char* label;
    std::string text;
    const char* torsions;
  } cases[] = {
      {"linked", first + second, "ALA1: psi omega; ALA2: phi; "},
      {"numbers do not matter", first + backbone("ALA A  90", 1), "ALA1: psi omega; ALA90: phi; "},
      {"a gap", first + backbone("ALA A   2", 3), "ALA1:; ALA2:; "},
      {"two chains", first + backbone("ALA B   2", 1), "ALA1:; ALA2:; "},
      {"a residue without backbone between",
       first + atomLine(" O", "HOH A   3", {0, 9, 9}) + second, "ALA1: psi omega; ALA2: phi; "},
      {"alternatives at one position",
       first + backbone("SER A   2", 1, "A") + backbone("THR A   2", 1, "B") +
           backbone("ALA A   3", 2),
       "ALA1: psi omega; SER2: phi psi omega; THR2: psi omega; ALA3: phi; "},
      {"calcium is no alpha carbon", first + second.substr(0, 67) + ca, "ALA1:; "},
      {"in line",
       first + with(with(with(second, 39, "   1.000"), 106, "   1.000"), 173, "   1.000"),
       "ALA1: psi omega; ALA2:; "}};
  for (const auto& c : cases) EXPECT_EQ(definedTorsions(c.text), c.torsions) << c.label;
}

TEST(MolreportTorsions, AreTakenAtTheLocationOfHighestOccupancy) {
  const std::string n = atomLine(" N", "ALA A   1", {1, 0, 0});
  const auto at = [&n](char location, const char* occupancy, int x) {
    return with(with(with(n, 17, std::string(1, location)), 55, occupancy), 31,
                fmt::format("{:8}", x));
  };
  const struct {
    const char* label;
    std::string text;
    double x;
  } cases[] = {{"higher", at('A', "  0.40", 1) + at('B', "  0.60", 2), 2},
               {"tie", at('B', "  0.50", 1) + at('A', "  0.50", 2), 2},
               {"no letter before any", at('A', "  0.90", 1) + at(' ', "  0.10", 2), 2},
               {"missing there", at('A', "  0.10", 1) + with(at('B', "  0.90", 2), 13, " CA "), 1}};
  for (const auto& c : cases) {
    const TextReading result = readText(c.text);
    const Residue& residue = *result.reading.structure->models()[0]->chains()[0]->residues()[0];
    ASSERT_TRUE(residue.find("N")) << c.label;
    EXPECT_EQ(residue.find("N")->position().x, c.x) << c.label;
    EXPECT_EQ(residue.find("P"), nullptr) << c.label;
  }
}

TEST(MolreportSummary, CountsTheFirstModelAndTheWholeFile) {
  const std::string model = with(atomLine(" CA", "ALA A   1", {0, 0, 0}), 17, "A") +
                            with(atomLine(" CA", "ALA A   1", {1, 0, 0}), 17, "B") +
                            atomLine("FE", "HEM A   2", {0, 2, 0}, "HETATM") +
                            atomLine(" O", "HOH B   1", {0, 0, 3}, "HETATM");
  const TextReading result =
      readText("MODEL        1\n" + model + "ENDMDL\nMODEL        2\n" + model +
               atomLine(" O", "HOH C   1", {0, 0, 4}, "HETATM") + "ENDMDL\n");
  Counts first, whole;
  first.add(*result.reading.structure->models()[0]);
  for (const Model* each : result.reading.structure->models()) whole.add(*each);
  const struct {
    int Counts::*member;
    int first, whole;
  } cases[] = {{&Counts::models, 1, 2}, {&Counts::chains, 2, 5}, {&Counts::residues, 3, 7},
               {&Counts::waters, 1, 3}, {&Counts::atoms, 4, 9},  {&Counts::alternates, 2, 4}};
  for (const auto& c : cases) {
    EXPECT_EQ(first.*c.member, c.first) << &c - cases;
    EXPECT_EQ(whole.*c.member, c.whole) << &c - cases;
  }
  EXPECT_EQ(first.heteroGroups, (std::map<std::string, int>{{"HEM", 1}}));
  EXPECT_EQ(whole.elements, (std::map<std::string, int>{{"C", 4}, {"FE", 2}, {"O", 3}}));
}

TEST(MolreportSummary, MeasuresTheExtentOfTheFirstModel) {
  // The corners of a box of 2 x 4 x 6 about (1, 2, 3): each is sqrt(1 + 4 + 9) from the middle.
  std::string text;
  for (const double x : {0.0, 2.0})
    for (const double y : {0.0, 4.0})
      for (const double z : {0.0, 6.0})
        text += atomLine(" C", fmt::format("LIG A{:4}", text.size() / 67), {x, y, z});
  const Extent extent = extentOf(*readText(text).reading.structure->models()[0]);
  EXPECT_EQ(extent.lowest.dist2({0, 0, 0}), 0.0);
  EXPECT_EQ(extent.highest.dist2({2, 4, 6}), 0.0);
  EXPECT_NEAR(extent.centroid.dist2({1, 2, 3}), 0.0, 1e-24);
  EXPECT_NEAR(extent.radiusOfGyration, std::sqrt(14.0), 1e-12);
}

TEST(MolreportSummary, JoinsTheLinesOfTheTitle) {
  const TextReading result =
      readText("TITLE     A LONG-\nTITLE    2 WINDED TITLE\nTITLE    3  OF THREE LINES\n" + good);
  EXPECT_EQ(result.reading.structure->title(), "A LONG-WINDED TITLE OF THREE LINES");
}
