// molreport: what is in structure files in PDB format, and what is wrong with them.

#include "Assembly.h"
#include "Attributes.h"
#include "Monitor.h"
#include "Rms.h"
#include "Summary.h"
#include "Torsions.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace molreport;

constexpr int success = 0;
constexpr int failure = 2;  // of an input, an output or the command line

/// Reads the files one after another and hands each that can be used to `report`.
template <class Report> int forEachFile(const std::vector<std::string>& files, Report report) {
  int status = success;
  bool isFirst = true;
  for (const std::string& file : files) {
    const Reading reading = readStructure(file);
    if (!reading.structure) {
      status = failure;
      continue;
    }
    if (!isFirst) fmt::print("\n");
    isFirst = false;
    report(file, reading);
  }
  return status;
}

int summary(const std::vector<std::string>& files) {
  return forEachFile(files, [](const std::string& file, const Reading& reading) {
    printSummary(stdout, file, reading);
  });
}

int torsions(const std::vector<std::string>& files) {
  return forEachFile(files, [](const std::string& file, const Reading& reading) {
    fmt::print("{}\n", file);
    printTorsions(stdout, *reading.structure);
  });
}

int rms(const std::vector<std::string>& files) {
  return forEachFile(files, [](const std::string& file, const Reading& reading) {
    fmt::print("{}\n", file);
    printRms(stdout, *reading.structure);
  });
}

/// Reads one file and hands it to `report`, which returns what is wrong with the request.
template <class Report> int withFile(const std::string& file, Report report) {
  const Reading reading = readStructure(file);
  if (!reading.structure) return failure;
  const std::string fault = report(*reading.structure);
  if (fault.empty()) return success;
  fmt::print(stderr, "molreport: {}: {}\n", file, fault);
  return failure;
}

int assembly(const std::string& file, int id, const std::string& outFile) {
  const Reading reading = readStructure(file);
  if (!reading.structure) return failure;
  const std::string fault = writeAssembly(stdout, file, reading, id, outFile);
  if (fault.empty()) return success;
  fmt::print(stderr, "molreport: {}\n", fault);
  return failure;
}

/// A selection in a chain whose id is "-" looks like an option; a byte that no argument starts with
/// stands in for the "-" while the command line is parsed.
constexpr char guard = '\x01';

std::string guarded(std::string argument) {
  if (argument.compare(0, 2, "-/") == 0) argument[0] = guard;
  return argument;
}

std::string unguarded(std::string argument) {
  if (!argument.empty() && argument[0] == guard) argument[0] = '-';
  return argument;
}

constexpr const char* description = "Reports on structure files in PDB format.";
constexpr const char* footer =
    "\"molreport FILE...\" is short for \"molreport summary FILE...\", and\n"
    "\"molreport COMMAND --help\" explains a command.\n\n"
    "Lines that cannot be used, or are odd, are named on standard error as\n"
    "file:line: message. The exit status is 0, or 2 when a file cannot be read or has\n"
    "no atoms, when the report cannot be written, or when the command line is wrong.";

/// The command line: each command has its arguments here and runs when it is parsed.
class CommandLine {
public:
  CommandLine();
  int run(int argc, char** argv);

private:
  CLI::App* addFilesCommand(const char* name, const char* text,
                            int (*command)(const std::vector<std::string>&));
  void addAttributesCommand();
  void addMonitorCommand();
  void addAssemblyCommand();
  bool isCommandOrOption(const std::string& argument) const;

  CLI::App app_{description, "molreport"};
  std::vector<std::string> files_;
  std::string file_;
  std::string selection_;
  std::vector<std::string> settings_;
  std::vector<std::string> specs_;
  int assembly_ = 0;
  std::string outFile_;
  int status_ = success;
};

CommandLine::CommandLine() {
  app_.require_subcommand(1);
  app_.failure_message([](const CLI::App*, const CLI::Error& error) {
    return fmt::format("molreport: {}\nRun molreport --help for more information.\n", error.what());
  });
  app_.get_formatter()->column_width(14);
  app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app_.get_formatter()->label("TEXT", "");
  app_.get_formatter()->label("REQUIRED", "");
  addFilesCommand("summary", "Count what the files hold and measure its extent", summary)
      ->footer("Counted are models, chains, residues, atoms by element and hetero groups, in the\n"
               "first model and in the whole file. The bounding box, the centroid and the radius\n"
               "of gyration are those of all atom records of the first model, with equal weight.");
  addFilesCommand("torsions", "List the backbone torsions phi, psi and omega", torsions)
      ->footer("Degrees, for each residue of each model that has the atoms N, CA and C. Omega is\n"
               "that of the link to the next residue, CA-C-N-CA. Residues are linked when C and N\n"
               "are within 2 angstroms. Of alternate locations, the one with the highest\n"
               "occupancy in the residue counts, the first letter on a tie.");
  addFilesCommand("rms", "Compare each model with the first", rms)
      ->footer("The root mean square deviation in angstroms over the atoms that both models have:\n"
               "same chain, residue number and insertion code, atom name and letter of the\n"
               "alternate location. The models are compared as they stand, nothing is superposed.\n"
               "Counted are the atoms of the model and those matched with the first model; a\n"
               "model without such atoms has a - for its deviation.");
  addAttributesCommand();
  addMonitorCommand();
  addAssemblyCommand();
  app_.footer(footer);
}

void CommandLine::addAttributesCommand() {
  CLI::App* const added = app_.add_subcommand("attributes", "List what the file says of atoms");
  added->group("Commands");
  added->add_option("SELECTION", selection_, "CHAIN/RESIDUE/ATOM, or CHAIN/RESIDUE")->required();
  added->add_option("FILE", file_, "Structure file")->required();
  added->add_option("--set", settings_, "Set an attribute before listing; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  added->footer(
      "A/-3/CA is the atom CA of residue -3 in chain A, A/59B/* are all atoms of residue 59\n"
      "with insertion code B, */*/ZN all atoms ZN, /7/O is in the chain without id. A/-3\n"
      "is the residue itself.\n\n"
      "Atoms have serial, occupancy, tempFactor, charge, altLoc and bonds, residues\n"
      "hetero and ter, as far as the file gives them. Set attributes keep their kind: a\n"
      "number is read from the text; new ones are texts. The file is not changed.");
  added->callback([this] {
    status_ = withFile(file_, [this](const Structure& structure) {
      return printAttributes(stdout, structure, unguarded(selection_), settings_);
    });
  });
}

void CommandLine::addMonitorCommand() {
  CLI::App* const added = app_.add_subcommand("monitor", "Follow distances and angles");
  added->group("Commands")->positionals_at_end();  // so that SPEC leaves one for FILE
  added->add_option("SPEC", specs_, "2, 3 or 4 atoms: CHAIN/RESIDUE/ATOM,...")->required();
  added->add_option("FILE", file_, "Structure file")->required();
  added->footer(
      "A/-3/CA,A/20/CA is the distance between two atoms in angstroms; three atoms are the\n"
      "angle at the second, four a torsion, both in degrees. A/59B/N has an insertion code,\n"
      "/7/O is in the chain without id.\n\n"
      "The atoms are those of the first model; its values and those of the other models are\n"
      "listed, one row per model. Of alternate locations, the one with the highest occupancy\n"
      "in the residue is followed, the first letter on a tie; the letter stands in brackets.\n"
      "\"missing\": the model lacks one of the atoms. \"undefined\": atoms of an angle in one\n"
      "place, or three atoms of a torsion in line.");
  added->callback([this] {
    std::transform(specs_.begin(), specs_.end(), specs_.begin(), unguarded);
    status_ = withFile(file_, [this](const Structure& structure) {
      return printMonitors(stdout, structure, specs_);
    });
  });
}

void CommandLine::addAssemblyCommand() {
  CLI::App* const added = app_.add_subcommand("assembly", "Build a biological assembly");
  added->group("Commands");
  added->add_option("ID", assembly_, "Number of the assembly (BIOMOLECULE)")->required();
  added->add_option("FILE", file_, "Structure file")->required();
  added->add_option("-o,--output", outFile_, "File to write")->type_name("OUT")->required();
  added->footer(
      "Copies the chains of the first model and moves them as the REMARK 350 records of the\n"
      "file say. The new file is in PDB format, with a MODEL for each operator; serials count\n"
      "from 1 in each and go on in hybrid-36 after 99999. Alternate locations are copied;\n"
      "ANISOU and CONECT records are left out, and the CRYST1 record says that this is no\n"
      "crystal. A file of that name is replaced, but never the input.");
  added->callback([this] { status_ = assembly(file_, assembly_, outFile_); });
}

CLI::App* CommandLine::addFilesCommand(const char* name, const char* text,
                                       int (*command)(const std::vector<std::string>&)) {
  CLI::App* const added = app_.add_subcommand(name, text);
  added->group("Commands");
  added->add_option("FILE", files_, "Structure files")->required();
  added->callback([this, command] { status_ = command(files_); });
  return added;
}

bool CommandLine::isCommandOrOption(const std::string& argument) const {
  const auto isNamed = [&argument](const CLI::App* command) {
    return command->check_name(argument);
  };
  return argument[0] == '-' || !app_.get_subcommands(isNamed).empty();
}

int CommandLine::run(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (!arguments.empty() && !isCommandOrOption(arguments[0]))
    arguments.insert(arguments.begin(), "summary");
  std::transform(arguments.begin(), arguments.end(), arguments.begin(), guarded);
  std::reverse(arguments.begin(), arguments.end());  // as parse wants them
  try {
    app_.parse(arguments);
  } catch (const CLI::ParseError& error) {
    return app_.exit(error) == 0 ? success : failure;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    fmt::print(stderr, "molreport: the report could not be written\n");
    return failure;
  }
  return status_;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return CommandLine().run(argc, argv);
  } catch (const std::exception& error) {
    fmt::print(stderr, "molreport: {}\n", error.what());
    return failure;
  }
}
