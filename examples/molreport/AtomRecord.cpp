#include "AtomRecord.h"

#include "Elements.h"
#include "Hybrid36.h"
#include "fortran_io.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace molreport {

namespace {

struct Column {
  const char* what;
  int first;
  int last;
};
constexpr Column coordinates[] = {
    {"x coordinate", 31, 38}, {"y coordinate", 39, 46}, {"z coordinate", 47, 54}};
constexpr Column occupancyColumns = {"occupancy", 55, 60};
constexpr Column temperatureColumns = {"temperature factor", 61, 66};
constexpr Column residueNumberColumns = {"residue number", 23, 26};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f;
}

void replaceControls(char* text) {
  for (; *text; ++text)
    if (isControl(*text)) *text = '?';
}

Content contentOf(const Line& line, const Column& column) {
  return contentOf(line, column.first, column.last, true);
}

std::string notANumber(const Line& line, const Column& column) {
  return fmt::format("{} \"{}\" is not a number", column.what,
                     line.field(column.first, column.last));
}

}  // namespace

void addRemark(std::string& remarks, const std::string& remark) {
  if (!remarks.empty()) remarks += "; ";
  remarks += remark;
}

bool Line::startsWith(const char* name) const {
  return std::strncmp(text, name, std::strlen(name)) == 0;
}

std::string_view Line::columns(int first, int last) const {
  last = std::min(last, length);
  while (first <= last && text[first - 1] == ' ') ++first;
  while (first <= last && text[last - 1] == ' ') --last;
  if (first > last) return {};
  return {text + first - 1, static_cast<std::size_t>(last - first + 1)};
}

std::string Line::field(int first, int last) const {
  std::string field(columns(first, last));
  replaceControls(field.data());
  return field;
}

Content contentOf(const Line& line, int first, int last, bool allowPoint) {
  std::string_view field = line.columns(first, last);
  if (field.empty()) return Content::blank;
  if (field[0] == '-' || field[0] == '+') field.remove_prefix(1);
  bool hasDigit = false;
  for (const char c : field) {
    if (isDigit(c))
      hasDigit = true;
    else if (c == '.' && allowPoint)
      allowPoint = false;
    else
      return Content::other;
  }
  return hasDigit ? Content::number : Content::other;
}

int readNumber(const Line& line, int first, int last, int& value) {
  constexpr int widest = 9;
  const int width = last - first + 1;
  if (width < 1 || width > widest) return 0;
  char text[widest + 1];
  const std::string format = fmt::format("{}x,a{}", first - 1, width);
  fortran_sscanf(line.text, format.c_str(), 1, text);
  return readHybrid36(text, width, value);
}

namespace {

// What makes an atom line useless, but for the form of the residue number.
std::string faultOf(const Line& line) {
  if (line.length < coordinates[0].first) return "the line ends before the coordinates";
  for (const Column& column : coordinates) {
    if (line.length < column.last)
      return fmt::format("the line ends within the coordinates, after column {}", line.length);
    const Content content = contentOf(line, column);
    if (content == Content::blank) return fmt::format("{} is missing", column.what);
    if (content == Content::other) return notANumber(line, column);
  }
  if (line.columns(13, 16).empty()) return "atom name is missing";
  if (line.columns(residueNumberColumns.first, residueNumberColumns.last).empty())
    return "residue number is missing";
  return {};
}

}  // namespace

bool isAtomLine(const Line& line) {
  if (line.startsWith("HETATM")) return true;
  return line.startsWith("ATOM") && (line.column(5) == ' ' || isDigit(line.column(5))) &&
         (line.column(6) == ' ' || line.column(6) == '-' || isDigit(line.column(6)));
}

std::string AtomRecord::read(const Line& line, std::string& remark) {
  std::string fault = faultOf(line);
  if (!fault.empty()) return fault;
  scan(line);
  readSerial(line, remark);
  if (contentOf(line, residueNumberColumns.first, residueNumberColumns.last, false) !=
          Content::number &&
      !readNumber(line, residueNumberColumns.first, residueNumberColumns.last, residueNumber))
    return notANumber(line, residueNumberColumns);
  readDefaults(line, remark);
  readCharge(line, remark);
  return {};
}

// The whole record in one scan; columns past the end of the line read as blanks and zeros.
void AtomRecord::scan(const Line& line) {
  isHetero = line.text[0] == 'H';
  const char* const format = isHetero ? "6x,i5,x,a4,a1,a4,a1,i4,a1,3x,3f8,2f6,10x,a2"
                                      : "4x,i7,x,a4,a1,a4,a1,i4,a1,3x,3f8,2f6,10x,a2";
  fortran_sscanf(line.text, format, 13, &serial, nameColumns, location, residueName, chain,
                 &residueNumber, insertionCode, &xyz[0], &xyz[1], &xyz[2], &occupancy,
                 &temperatureFactor, symbolColumns);
  for (char* text : {nameColumns, location, residueName, chain, insertionCode})
    replaceControls(text);
}

void AtomRecord::readSerial(const Line& line, std::string& remark) {
  const int first = isHetero ? 7 : 5;
  const Content content = contentOf(line, first, 11, false);
  hasSerial =
      content == Content::number || (content == Content::other && readNumber(line, 7, 11, serial));
  if (hasSerial) return;
  serial = 0;
  if (content == Content::other) addRemark(remark, notANumber(line, {"serial", first, 11}));
}

void AtomRecord::readDefaults(const Line& line, std::string& remark) {
  const struct {
    const Column& column;
    double& value;
    double otherwise;
  } fields[] = {{occupancyColumns, occupancy, 1.0}, {temperatureColumns, temperatureFactor, 0.0}};
  for (const auto& field : fields) {
    const Content content = contentOf(line, field.column);
    if (content == Content::number) continue;
    field.value = field.otherwise;
    if (content == Content::other)
      addRemark(remark,
                fmt::format("{}, {:.2f} taken", notANumber(line, field.column), field.otherwise));
  }
}

// Without an element before it, the field is not a charge: older releases put line numbers there.
void AtomRecord::readCharge(const Line& line, std::string& remark) {
  charge = 0;
  if (line.length < 79 || !isElementSymbol(symbolColumns)) return;
  const char first = line.column(79);
  const char second = line.column(80);
  if (first == ' ' && second == ' ') return;
  const bool isSignLast = isDigit(first) && (second == '+' || second == '-');
  const bool isSignFirst = isDigit(second) && (first == '+' || first == '-');
  if (isSignLast)
    charge = second == '-' ? '0' - first : first - '0';
  else if (isSignFirst)
    charge = first == '-' ? '0' - second : second - '0';
  else
    addRemark(remark, notANumber(line, {"charge", 79, 80}));
}

}  // namespace molreport
