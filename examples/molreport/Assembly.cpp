#include "Assembly.h"

#include "AtomRecord.h"
#include "OutputFile.h"
#include "PdbWriter.h"
#include "Text.h"
#include "fortran_io.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

namespace molreport {

namespace {

/// An operator as the file has it.
struct Operator {
  int number = 0;
  double rows[3][4] = {};  // rotation and shift

  bool operator==(const Operator& other) const {
    return std::equal(&rows[0][0], &rows[0][0] + 12, &other.rows[0][0]);
  }
};

/// Columns of the numbers in a BIOMT record.
struct Column {
  int first;
  int last;
  bool hasPoint;
};
constexpr Column biomtColumns[] = {{19, 19, false}, {20, 23, false}, {24, 33, true},
                                   {34, 43, true},  {44, 53, true},  {59, 68, true}};

constexpr int mostModels = 9999;  // a MODEL has four columns for its number

std::vector<std::string> wordsOf(const std::string& list) {
  std::vector<std::string> words;
  for (std::size_t start = 0; (start = list.find_first_not_of(", ", start)) != std::string::npos;) {
    const std::size_t end = std::min(list.find_first_of(", ", start), list.size());
    words.push_back(list.substr(start, end - start));
    start = end;
  }
  return words;
}

// Whether the rows are at right angles, right-handed and of length 1, as far as decimals tell.
bool isRotation(const Operator& op) {
  const auto row = [&op](int i) { return tqPoint3D(op.rows[i][0], op.rows[i][1], op.rows[i][2]); };
  constexpr double tolerance = 1e-3;
  return std::abs(row(0).dist2({}) - 1.0) < tolerance &&
         std::abs(row(1).dist2({}) - 1.0) < tolerance &&
         row(0).crossProduct(row(1)).dist2(row(2)) < tolerance * tolerance;
}

tqMatrix4x4 motionOf(const Operator& op) {
  tqMatrix3x3 rotation;
  for (int i = 0; i < 3; ++i) rotation.setRow(i, {op.rows[i][0], op.rows[i][1], op.rows[i][2]});
  return {rotation.t(), {op.rows[0][3], op.rows[1][3], op.rows[2][3]}};
}

/// Reads the records of one assembly, line by line.
class AssemblyReader {
public:
  AssemblyReader(int id, Assembly& assembly) : id_(id), assembly_(assembly) {}

  /// Returns what is wrong with a line.
  std::string read(const Line& line);
  /// Returns what is wrong once all lines are read.
  std::string finish() const;

private:
  std::string readIds(const std::string& list);
  std::string readChains(const std::string& list);
  std::string readRow(const Line& line);
  void addOperator();

  int id_;
  Assembly& assembly_;
  std::vector<Operator> operators_;  // of the placements
  std::vector<std::string> ids_;     // of all assemblies in the file
  bool isFound_ = false;
  bool isWanted_ = false;  // the lines are those of the assembly
  std::string chains_;     // of the group
  Operator operator_;
  int rows_ = 0;  // of that operator
};

std::string AssemblyReader::read(const Line& line) {
  if (line.field(14, 18) == "BIOMT") return isWanted_ ? readRow(line) : std::string();
  char text[70];
  fortran_sscanf(line.text, "11x,a69", 1, text);
  const std::string columns = text;
  const auto listAfter = [&columns](const char* label) {
    const std::size_t at = columns.find_first_not_of(' ');
    const std::size_t length = std::char_traits<char>::length(label);
    const bool isThere = at != std::string::npos && columns.compare(at, length, label) == 0;
    return isThere ? columns.substr(at + length) + " " : std::string();
  };
  const std::string ids = listAfter("BIOMOLECULE:");
  if (!ids.empty()) return readIds(ids);
  const std::string first = listAfter("APPLY THE FOLLOWING TO CHAINS:");
  if (!first.empty()) chains_.clear();
  const std::string chains = first.empty() ? listAfter("AND CHAINS:") : first;
  return isWanted_ && !chains.empty() ? readChains(chains) : std::string();
}

std::string AssemblyReader::readIds(const std::string& list) {
  const std::vector<std::string> ids = wordsOf(list);
  const bool wasCut = isWanted_ && rows_ > 0;
  ids_.insert(ids_.end(), ids.begin(), ids.end());
  isWanted_ = std::find(ids.begin(), ids.end(), std::to_string(id_)) != ids.end();
  isFound_ = isFound_ || isWanted_;
  chains_.clear();
  return wasCut ? "an operator lacks rows" : "";
}

std::string AssemblyReader::readChains(const std::string& list) {
  for (const std::string& word : wordsOf(list)) {
    if (word.size() > 1 && word != "NULL")
      return fmt::format("chain \"{}\" is longer than one character", word);
    chains_ += word == "NULL" ? ' ' : word[0];
  }
  return {};
}

std::string AssemblyReader::readRow(const Line& line) {
  for (const Column& column : biomtColumns)
    if (contentOf(line, column.first, column.last, column.hasPoint) != Content::number)
      return fmt::format("columns {} to {}, \"{}\", are not a number", column.first, column.last,
                         line.field(column.first, column.last));
  int row = 0, number = 0;
  double values[4];
  fortran_sscanf(line.text, "18x,i1,i4,3f10,5x,f10", 6, &row, &number, &values[0], &values[1],
                 &values[2], &values[3]);
  if (row != rows_ + 1 || (rows_ > 0 && number != operator_.number))
    return fmt::format("BIOMT{} of operator {} is out of order", row, number);
  if (chains_.empty()) return fmt::format("no chains are named for operator {}", number);
  operator_.number = number;
  std::copy(values, values + 4, operator_.rows[rows_]);
  if (++rows_ < 3) return {};
  rows_ = 0;
  if (!isRotation(operator_)) return fmt::format("operator {} is not a rotation", number);
  addOperator();
  return {};
}

void AssemblyReader::addOperator() {
  const auto known = std::find(operators_.begin(), operators_.end(), operator_);
  const auto index = static_cast<std::size_t>(known - operators_.begin());
  if (known == operators_.end()) {
    operators_.push_back(operator_);
    assembly_.push_back({operator_.number, motionOf(operator_), {}});
  }
  std::string& placed = assembly_[index].chains;
  for (const char id : chains_)
    if (placed.find(id) == std::string::npos) placed += id;
}

std::string AssemblyReader::finish() const {
  if (ids_.empty()) return "no REMARK 350 records that describe an assembly";
  if (!isFound_)
    return fmt::format("no assembly {}; the file describes {}", id_, fmt::join(ids_, ", "));
  if (rows_ > 0) return fmt::format("an operator of assembly {} lacks rows", id_);
  if (assembly_.empty()) return fmt::format("assembly {} has no operators", id_);
  if (assembly_.size() > mostModels)
    return fmt::format("assembly {} takes more than {} models", id_, mostModels);
  return {};
}

std::string shownChains(const std::string& ids) {
  std::string text;
  for (const char id : ids) text += (text.empty() ? "" : ", ") + shownChain(id);
  return text;
}

std::string chainIds(const Model& model) {
  std::string ids;
  for (const Chain* chain : model.chains()) ids += chain->id();
  return ids;
}

// The ids of the assembly's chains that the model lacks.
std::string missingChains(const Assembly& assembly, const Model& model) {
  const std::string present = chainIds(model);
  std::string missing;
  for (const Placement& placement : assembly)
    for (const char id : placement.chains)
      if (present.find(id) == std::string::npos && missing.find(id) == std::string::npos)
        missing += id;
  return missing;
}

// "1.000000 0.000000 0.000000 0.00000" for each coordinate: what is done to x, y and z.
void writeMotion(PdbWriter& writer, const tqMatrix4x4& motion) {
  for (int i = 0; i < 3; ++i)
    writer.writeRemark(fmt::format("    {}{}{}  {}", fixed(motion.at(0, i), 10, 6),
                                   fixed(motion.at(1, i), 10, 6), fixed(motion.at(2, i), 10, 6),
                                   fixed(motion.at(3, i), 12, 5)));
}

void writeHeader(PdbWriter& writer, const std::string& path, const Structure& structure, int id,
                 const Assembly& assembly) {
  const std::string name = std::filesystem::path(path).filename().string();
  const std::string title = structure.title().empty() ? name : structure.title();
  writer.writeTitle(fmt::format("BIOLOGICAL ASSEMBLY {}: {}", id, title));
  writer.writeModelCount(static_cast<int>(assembly.size()));
  writer.writeRemark(fmt::format("Assembly {}, built by molreport from model {} and the REMARK 350 "
                                 "records of {}.",
                                 id, structure.models()[0]->number(), name));
  writer.writeRemark("Each MODEL holds chains moved by one operator, rotation and shift:");
  int number = 0;
  for (const Placement& placement : assembly) {
    writer.writeRemark(fmt::format("MODEL {}: operator {}, chains {}", ++number, placement.number,
                                   shownChains(placement.chains)));
    writeMotion(writer, placement.motion);
  }
  writer.writeNoCrystal();
}

std::string writeModels(PdbWriter& writer, const Assembly& assembly, const Model& source) {
  int number = 0;
  for (const Placement& placement : assembly) {
    const std::unique_ptr<Model> model(place(placement, source, ++number));
    const std::string fault = writer.writeModel(*model, number);
    if (!fault.empty()) return fmt::format("model {} of the assembly, {}", number, fault);
  }
  writer.writeEnd();
  return {};
}

}  // namespace

std::string readAssembly(const std::string& path, const std::vector<RemarkLine>& lines, int id,
                         Assembly& assembly) {
  AssemblyReader reader(id, assembly);
  for (const RemarkLine& line : lines) {
    const std::string fault = reader.read({line.text.c_str(), static_cast<int>(line.text.size())});
    if (!fault.empty()) return fmt::format("{}:{}: {}", path, line.number, fault);
  }
  const std::string fault = reader.finish();
  return fault.empty() ? fault : fmt::format("{}: {}", path, fault);
}

Model* place(const Placement& placement, const Model& model, int number) {
  Model* const placed = tqAllocated(new Model(number));
  for (Chain* chain : model.chains())
    if (placement.chains.find(chain->id()) != std::string::npos)
      placed->addChild(chain->copyTree());
  forEachAtom(*placed, [&placement](const Chain&, const Residue&, Atom& atom) {
    atom.moveTo(placement.motion.multPointMatrix(atom.position()));
  });
  return placed;
}

std::string writeAssembly(std::FILE* report, const std::string& input, const Reading& reading,
                          int id, const std::string& output) {
  const Model& source = *reading.structure->models()[0];
  Assembly assembly;
  std::string fault = readAssembly(input, reading.remarks350, id, assembly);
  if (!fault.empty()) return fault;
  const std::string missing = missingChains(assembly, source);
  if (!missing.empty())
    return fmt::format("{}: assembly {} has chains that model {} lacks: {}", input, id,
                       source.number(), shownChains(missing));
  OutputFile file;
  fault = file.open(output, input);
  if (!fault.empty()) return fault;
  PdbWriter writer(file.stream());
  writeHeader(writer, input, *reading.structure, id, assembly);
  fault = writeModels(writer, assembly, source);
  if (!fault.empty()) return fmt::format("{}: {}", input, fault);
  fault = file.commit();
  if (!fault.empty()) return fault;
  int atoms = 0;
  forEachAtom(source, [&atoms](const Chain&, const Residue&, const Atom&) { ++atoms; });
  fmt::print(report, "{}: assembly {} of {}, {} {} with {} atoms, from {} atoms of model {}\n",
             output, id, input, assembly.size(), assembly.size() == 1 ? "model" : "models",
             writer.atoms(), atoms, source.number());
  return {};
}

}  // namespace molreport
