#include "molreport_files.h"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
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
  const std::string out = scratchPath("out.txt");
  const std::string messages = scratchPath("messages.txt");
  const int status = std::system(
      fmt::format("\"{}\" >\"{}\" 2>\"{}\" {}", MOLREPORT_PROGRAM, out, messages, arguments)
          .c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(messages)};
}

const std::string peptide = MOLREPORT_DATA "/peptide.pdb";

}  // namespace

TEST(MolreportProgram, EndsWithTwoAndAClearErrorWhenAFileCannotBeUsed) {
  const std::string empty = writeFile("empty.pdb", "REMARK\n");
  const struct {
    const char* label;
    std::string arguments;
    const char* message;
  } cases[] = {{"missing", "summary no_such_file.pdb",
                "molreport: no_such_file.pdb: No such file or directory\n"},
               {"directory", "torsions /", "molreport: /: Is a directory\n"},
               {"no atoms", empty, "empty.pdb: no atoms\n"},
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
  EXPECT_NE(alone.out.find("PEPTIDE WITH IDEAL BONDS"), std::string::npos) << alone.out;
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
      writeFile("dash.pdb", with(atomLine(" CA", "GLY -  -3", {1, 2, 3}), 7, "    7"));
  const Outcome result = run("attributes -/-3/CA " + file + " --set charge=-1 --set serial=-2");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("-/-3/CA         serial        -2\n"), std::string::npos)
      << result.out << result.messages;
  EXPECT_NE(result.out.find("charge        -1\n"), std::string::npos);
}

TEST(MolreportProgram, WritesAnAssemblyWholeOrNotAtAll) {
  const std::string folder = scratchPath("assembly");
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  const std::string input = folder + "/in.pdb";
  const std::string out = folder + "/out.pdb";
  const std::string far = folder + "/far.pdb";
  const std::string text = contentOf(peptide);
  std::ofstream(input) << text;
  std::ofstream(far) << with(text, static_cast<int>(text.find("30.00000")) + 1, "-999.000");
  std::ofstream(out) << "what was there";
  std::filesystem::create_symlink(input, folder + "/link.pdb");
  const struct {
    const char* label;
    std::string arguments;
    const char* message;
  } cases[] = {
      {"unknown id", "3 " + input + " -o " + out, "no assembly 3; the file describes 1, 2"},
      {"no number", "x " + input + " -o " + out, "ID = x"},
      {"the input", "1 " + input + " -o " + input, "this is the input itself"},
      {"a link to it", "1 " + input + " -o " + folder + "/link.pdb", "the input itself"},
      {"no output", "1 " + input, "--output is required"},
      {"a directory", "1 " + input + " -o " + folder, "Is a directory"},
      {"no directory", "1 " + input + " -o " + folder + "/no/x", "No such file"},
      {"a device", "1 " + input + " -o /dev/null", "not a regular file"},
      {"too far away", "1 " + far + " -o " + out, "does not fit 8 columns"}};
  for (const auto& c : cases) {
    const Outcome result = run("assembly " + c.arguments);
    EXPECT_EQ(result.status, 2) << c.label;
    EXPECT_EQ(result.out, "") << c.label;
    EXPECT_NE(result.messages.find(c.message), std::string::npos) << c.label << result.messages;
    EXPECT_EQ(contentOf(out), "what was there") << c.label;
    EXPECT_EQ(contentOf(input), text) << c.label;
  }
  const Outcome result = run("assembly 1 " + input + " -o " + out);
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_NE(result.out.find("2 models with 128 atoms, from 66 atoms of model 1\n"),
            std::string::npos)
      << result.out;
  EXPECT_EQ(readStructure(out).structure->models().count(), 2);
  const std::filesystem::directory_iterator files(folder);
  EXPECT_EQ(std::distance(begin(files), end(files)), 4) << "a temporary was left";
}
