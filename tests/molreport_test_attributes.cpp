#include "Attributes.h"
#include "Selection.h"
#include "UserData.h"
#include "molreport_files.h"

using namespace molreport;

namespace {

const std::string atoms =
    "HETATM    7 ZN    ZN A  -3       0.000   0.000   0.000  0.50 31.25          ZN2+\n"
    "ATOM      8  N  ACYS    59B      1.000   0.000   0.000  1.00 10.00           N  \n"
    "ATOM      9  SG ACYS    59B      2.000   0.000   0.000  1.00 10.00           S  \n"
    "TER\n";
const std::string models =
    "MODEL        1\n" + atoms + "ENDMDL\nMODEL        2\n" + atoms + "ENDMDL\n";

/// What the command prints, or complains of, without the header line.
std::string listed(const std::string& text, const std::string& selection,
                   const std::vector<std::string>& settings = {}) {
  const TextReading result = readText(text);
  testing::internal::CaptureStdout();
  const std::string fault = printAttributes(stdout, *result.reading.structure, selection, settings);
  std::fflush(stdout);
  const std::string printed = testing::internal::GetCapturedStdout();
  return fault.empty() ? printed.substr(printed.find('\n') + 1) : fault;
}

/// The atoms that the first atom's "bonds" refer to, by name.
std::string bondsOf(const Atom& atom) {
  unsigned oids[10];
  int count = 10;
  std::string names;
  const tqUserData* const own = atom.userData();
  if (!own || !own->findUserData(facts::bonds, count, oids)) return "none";
  for (int i = 0; i < count; ++i) {
    const tqBase* const object = tqBase::validated(oids[i], 0);
    names += object ? selectionOf(*static_cast<const Atom*>(object)) + " " : "gone ";
  }
  return names;
}

}  // namespace

TEST(MolreportAttributes, HoldWhatTheFileSaysOfAtomsAndResidues) {
  EXPECT_EQ(listed(atoms, "A/-3/ZN"), "      1  A/-3/ZN         serial        7\n"
                                      "      1  A/-3/ZN         occupancy     0.5\n"
                                      "      1  A/-3/ZN         tempFactor    31.25\n"
                                      "      1  A/-3/ZN         charge        2\n");
  EXPECT_EQ(listed(atoms, "/59B/SG"), "      1  /59B/SG         serial        9\n"
                                      "      1  /59B/SG         occupancy     1\n"
                                      "      1  /59B/SG         tempFactor    10\n"
                                      "      1  /59B/SG         altLoc        A\n");
  EXPECT_EQ(listed(atoms, "*/*"), "      1  A/-3            hetero        1\n"
                                  "      1  /59B            ter           1\n");
}

TEST(MolreportAttributes, AreThoseOfTheSelection) {
  const struct {
    const char* selection;
    int rows;  // of serials, in two models
  } cases[] = {{"*/*/*", 6},  {"A/*/*", 2},   {"/*/*", 4},  {"*/59B/*", 4},
               {"*/*/SG", 2}, {"*/-3/ZN", 2}, {"/59B/N", 2}};
  for (const auto& c : cases) {
    const std::string text = listed(models, c.selection);
    int rows = 0;
    for (std::size_t at = 0; (at = text.find("serial", at)) != std::string::npos; ++at) ++rows;
    EXPECT_EQ(rows, c.rows) << c.selection << '\n' << text;
  }
}

TEST(MolreportAttributes, AreSetFromTextAsTheKindThatTheyHave) {
  const std::string text = listed(
      atoms, "/59B/N", {"serial=0x10", "occupancy=0.25x", "altLoc=", "note=a=b", "charge=-1"});
  EXPECT_EQ(text, "      1  /59B/N          serial        16\n"
                  "      1  /59B/N          occupancy     0.25\n"
                  "      1  /59B/N          tempFactor    10\n"
                  "      1  /59B/N          altLoc        \n"
                  "      1  /59B/N          note          a=b\n"
                  "      1  /59B/N          charge        -1\n");
}

TEST(MolreportAttributes, AreNotListedWhenTheRequestIsWrong) {
  const struct {
    const char* selection;
    const char* setting;
    const char* fault;
  } cases[] = {
      {"A", "a=b", "\"A\" is not of the form CHAIN/RESIDUE/ATOM"},
      {"A/1/N/2", "a=b", "\"A/1/N/2\" is not of the form CHAIN/RESIDUE/ATOM"},
      {"AB/1/N", "a=b", "chain \"AB\" in \"AB/1/N\" is longer than one character"},
      {"A//N", "a=b", "residue \"\" in \"A//N\" is not a number with an insertion code or none"},
      {"A/5AB/N", "a=b",
       "residue \"5AB\" in \"A/5AB/N\" is not a number with an insertion code or none"},
      {"A/99999999999/N", "a=b",
       "residue \"99999999999\" in \"A/99999999999/N\" is not a number with an insertion "
       "code or none"},
      {"A/1/", "a=b", "\"A/1/\" names no atom"},
      {"A/-3/N", "a=b", "nothing matches A/-3/N"},
      {"A/-3/ZN", "charge", "\"charge\" is not of the form NAME=VALUE"},
      {"A/-3/ZN", "=1", "\"=1\" is not of the form NAME=VALUE"}};
  for (const auto& c : cases) EXPECT_EQ(listed(atoms, c.selection, {c.setting}), c.fault);
}

TEST(MolreportConnections, ReferToAtomsOfTheSameModel) {
  const TextReading result =
      readText(models + "CONECT    7    9    8\nCONECT    7    9\nCONECT    9    7\n");
  EXPECT_EQ(result.messages, "");
  for (const Model* model : result.reading.structure->models()) {
    const Chain& chain = *model->chains()[0];
    const Atom& zinc = *chain.residues()[0]->atoms()[0];
    EXPECT_EQ(bondsOf(zinc), "/59B/SG /59B/N /59B/SG ");
    unsigned oids[3];
    int count = 3;
    zinc.userData()->findUserData(facts::bonds, count, oids);
    EXPECT_EQ(tqBase::validated(oids[0], 0)->isA(Atom::tableId), 1);
    EXPECT_EQ(static_cast<tqTreeNode*>(tqBase::validated(oids[0], 0))->hasAncestor(model), 1);
    const Children<Residue> others = model->chains()[1]->residues();
    EXPECT_EQ(bondsOf(*others[0]->atoms()[0]), "none");
    EXPECT_EQ(bondsOf(*others[0]->atoms()[1]), "A/-3/ZN ");
  }
}

TEST(MolreportConnections, AreNamedWhenTheyLeadNowhere) {
  const struct {
    const char* line;
    const char* message;
    const char* bonds;
  } cases[] = {
      {"CONECT    1    7", "no atom has serial 1, line not used", "none"},
      {"CONECT    7    1    9", "no atom has serial 1", "/59B/SG "},
      {"CONECT    7", "the record does not connect two atoms, line not used", "none"},
      {"CONECT         7    9", "the record does not connect two atoms, line not used", "none"},
      {"CONECT    7    x", "serial \"x\" is not a number, line not used", "none"}};
  for (const auto& c : cases) {
    const TextReading result = readText(atoms + c.line + "\n");
    EXPECT_EQ(result.messages, fmt::format("FILE:5: {}\n", c.message));
    const Model& model = *result.reading.structure->models()[0];
    EXPECT_EQ(bondsOf(*model.chains()[0]->residues()[0]->atoms()[0]), c.bonds) << c.line;
  }
}

TEST(MolreportConnections, FollowTheAtomsIntoACopyOfTheTree) {
  const TextReading result = readText(atoms + "CONECT    7    9\nCONECT    9    7\n");
  Model& model = *result.reading.structure->models()[0];
  const std::unique_ptr<Model> copy(static_cast<Model*>(model.copyTree()));
  const Atom& zinc = *copy->chains()[0]->residues()[0]->atoms()[0];
  unsigned oid;
  int count = 1;
  ASSERT_EQ(zinc.userData()->findUserData(facts::bonds, count, &oid), 1);
  EXPECT_EQ(tqBase::validated(oid, 0), copy->chains()[1]->residues()[0]->atoms()[1]);
  EXPECT_EQ(zinc.serial(), 7);
  EXPECT_EQ(zinc.charge(), 2);

  // A chain alone leaves what its atoms refer to behind.
  const std::unique_ptr<tqTreeNode> chain(model.chains()[0]->copyTree());
  count = 1;
  oid = 1;
  static_cast<Chain*>(chain.get())
      ->residues()[0]
      ->atoms()[0]
      ->userData()
      ->findUserData(facts::bonds, count, &oid);
  EXPECT_EQ(oid, 0u);
}
