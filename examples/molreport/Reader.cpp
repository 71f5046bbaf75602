#include "Reader.h"

#include "AtomRecord.h"
#include "Connections.h"
#include "FileStream.h"
#include "Hybrid36.h"
#include "Progress.h"
#include "TreeBuilder.h"

#include <fmt/format.h>

#include <cstring>
#include <filesystem>

namespace molreport {

namespace {

constexpr int longestLine = 1024;  // of what is looked at; lines have 80 columns

long long sizeOf(const std::string& path) {
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(path, failure);
  return failure ? 0 : static_cast<long long>(size);
}

/// Reads one file line by line.
class Reader {
public:
  explicit Reader(const std::string& path)
      : path_(path), progress_(path, sizeOf(path)), structure_(std::make_unique<Structure>()),
        builder_(*structure_) {}

  Reading read();

private:
  bool readLines();
  void readLine(const Line& line);
  void readAtom(const Line& line);
  void readModel(const Line& line);
  void readTer(const Line& line);
  void readConnection(const Line& line);
  void closeModel();
  void refuse(const std::string& message) { refuse(reading_.lines, message); }
  void refuse(int lineNumber, const std::string& message);
  void remark(const std::string& message) { remark(reading_.lines, message); }
  void remark(int lineNumber, const std::string& message);
  bool fail(const std::string& message);

  std::string path_;
  Progress progress_;
  std::unique_ptr<Structure> structure_;
  TreeBuilder builder_;
  Connections connections_;
  AtomRecord record_;
  Reading reading_;
};

Reading Reader::read() {
  const bool isUsable = readLines() && (structure_->childCount() > 0 || fail(path_ + ": no atoms"));
  if (isUsable) reading_.structure = std::move(structure_);
  return std::move(reading_);
}

bool Reader::readLines() {
  FileStream file(path_.c_str());
  if (file.open_input() != 1) return fail(file.error());
  char buffer[longestLine];
  char* text = buffer;
  int bytes;
  bool isLineStart = true;
  while ((bytes = file.get_oneline(text, longestLine)) >= 0) {
    if (isLineStart) {
      ++reading_.lines;
      readLine({text, static_cast<int>(std::strlen(text))});
    }
    isLineStart = file.isWholeLine();
    progress_.advance(isLineStart ? bytes + 1 : bytes);
  }
  if (!file.error().empty()) return fail(file.error());
  closeModel();
  connections_.join(*structure_, [this](int number, const std::string& message, bool isUseless) {
    isUseless ? refuse(number, message) : remark(number, message);
  });
  progress_.clear();
  return true;
}

void Reader::readLine(const Line& line) {
  if (isAtomLine(line))
    readAtom(line);
  else if (line.startsWith("TITLE"))
    structure_->addTitle(line.field(11, 80));
  else if (line.startsWith("MODEL"))
    readModel(line);
  else if (line.startsWith("TER") && line.column(4) == ' ')
    readTer(line);
  else if (line.startsWith("CONECT"))
    readConnection(line);
  else if (line.startsWith("REMARK 350"))
    reading_.remarks350.push_back({reading_.lines, line.text});
  else if (line.startsWith("ENDMDL") || line.columns(1, 6) == "END")
    closeModel();
}

void Reader::readAtom(const Line& line) {
  std::string remarks;
  std::string fault = record_.read(line, remarks);
  if (fault.empty()) fault = builder_.add(record_, remarks);
  if (!fault.empty()) return refuse(fault);
  if (!remarks.empty()) remark(remarks);
}

void Reader::readModel(const Line& line) {
  closeModel();
  int number = builder_.nextModel();
  const std::string field = line.field(6, 14);
  if (field.empty())
    remark(fmt::format("the model has no number, {} taken", number));
  else if (!readNumber(line, 6, 14, number))
    remark(fmt::format("model number \"{}\" is not a number, {} taken", field, number));
  builder_.openModel(number);
}

void Reader::closeModel() {
  if (!builder_.closeModel()) remark("the model that ends here has no atoms");
}

// A TER that names no chain ends that of the last atom.
void Reader::readTer(const Line& line) {
  if (line.length >= 22)
    builder_.endChain(line.column(22));
  else
    builder_.endChain();
}

void Reader::readConnection(const Line& line) {
  const std::string fault = connections_.add(line, reading_.lines);
  if (!fault.empty()) refuse(fault);
}

void Reader::refuse(int lineNumber, const std::string& message) {
  ++reading_.refused;
  progress_.clear();
  fmt::print(stderr, "{}:{}: {}, line not used\n", path_, lineNumber, message);
}

void Reader::remark(int lineNumber, const std::string& message) {
  ++reading_.remarked;
  progress_.clear();
  fmt::print(stderr, "{}:{}: {}\n", path_, lineNumber, message);
}

bool Reader::fail(const std::string& message) {
  progress_.clear();
  fmt::print(stderr, "molreport: {}\n", message);
  return false;
}

}  // namespace

Reading readStructure(const std::string& path) { return Reader(path).read(); }

}  // namespace molreport
