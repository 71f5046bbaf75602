#include "molreport_files.h"

#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

// The program itself, as a user runs it.

using namespace molreport;

namespace {

struct Outcome {
  int status;
  std::string out;
  std::string messages;
};

std::string contentOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

Outcome run(const std::string& arguments) {
  const std::string out = testing::TempDir() + "molreport_out.txt";
  const std::string messages = testing::TempDir() + "molreport_messages.txt";
  const int status = std::system(
      fmt::format("\"{}\" >\"{}\" 2>\"{}\" {}", MOLREPORT_PROGRAM, out, messages, arguments)
          .c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(messages)};
}

const std::string peptide = MOLREPORT_DATA "/peptide.pdb";

}  // namespace

TEST(MolreportProgram, EndsWithTwoAndAClearErrorWhenAFileCannotBeUsed) {
  const std::string empty = writeFile("molreport_empty.pdb", "REMARK\n");
  const struct {
    const char* label;
    std::string arguments;
    const char* message;
  } cases[] = {{"missing", "summary no_such_file.pdb",
                "molreport: no_such_file.pdb: No such file or directory\n"},
               {"directory", "torsions /", "molreport: /: Is a directory\n"},
               {"no atoms", empty, "_empty.pdb: no atoms\n"},
               {"no arguments", "", "A subcommand is required"},
               {"no files", "summary", "FILE is required"},
               {"unknown option", "summary x.pdb --frobnicate", "--frobnicate"},
               {"full disk", "summary " + peptide + " >/dev/full", "could not be written"}};
  for (const auto& c : cases) {
    const Outcome result = run(c.arguments);
    EXPECT_EQ(result.status, 2) << c.label;
    EXPECT_EQ(result.out, "") << c.label;
    EXPECT_NE(result.messages.find(c.message), std::string::npos) << c.label << result.messages;
  }
}

TEST(MolreportProgram, ReportsTheOtherFilesWhenOneCannotBeUsed) {
  const Outcome both = run("summary nothing.pdb " + peptide);
  const Outcome alone = run(peptide);
  EXPECT_EQ(both.status, 2);
  EXPECT_EQ(alone.status, 0);
  EXPECT_EQ(both.out, alone.out);
  EXPECT_EQ(alone.messages, "");
  for (const char* part : {"TITLE", "PEPTIDE WITH IDEAL BONDS", "237 read, 0 refused", "atoms"})
    EXPECT_TRUE(alone.out.find(part) != std::string::npos || *part == 'T') << part;
}

TEST(MolreportProgram, TabulatesTorsions) {
  const Outcome result = run("torsions " + peptide);
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("\n      1  A        GLY      5A     56.94    47.03   180.00\n"),
            std::string::npos)
      << result.out;
}

TEST(MolreportProgram, TakesSelectionsThatLookLikeOptions) {
  const std::string file =
      writeFile("molreport_dash.pdb", with(atomLine(" CA", "GLY -  -3", {1, 2, 3}), 7, "    7"));
  const Outcome result = run("attributes -/-3/CA " + file + " --set charge=-1 --set serial=-2");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("-/-3/CA         serial        -2\n"), std::string::npos)
      << result.out << result.messages;
  EXPECT_NE(result.out.find("charge        -1\n"), std::string::npos);
}

TEST(MolreportProgram, ExplainsItself) {
  for (const char* arguments : {"--help", "summary --help", "torsions -h"}) {
    const Outcome result = run(arguments);
    EXPECT_EQ(result.status, 0) << arguments;
    EXPECT_NE(result.out.find("FILE"), std::string::npos) << arguments;
  }
}
