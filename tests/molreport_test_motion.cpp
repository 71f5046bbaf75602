#include "Rms.h"
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
