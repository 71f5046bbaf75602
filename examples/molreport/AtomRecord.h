#ifndef MOLREPORT_ATOMRECORD_H
#define MOLREPORT_ATOMRECORD_H

#include <string>
#include <string_view>

/// \file AtomRecord.h
/// The fields of an ATOM or HETATM line, and what can be wrong with them.

namespace molreport {

/// A line of the file, without its line end.
struct Line {
  const char* text;  ///< ends with a NUL
  int length;        ///< up to that NUL

  /// Whether the line starts with `name`, in capitals.
  bool startsWith(const char* name) const;
  /// Column 1, 2, ...; ' ' past the end.
  char column(int number) const { return number <= length ? text[number - 1] : ' '; }
  /// Columns `first` to `last` as far as the line has them, without blanks around them.
  std::string_view columns(int first, int last) const;
  /// Likewise, as a text to print: what cannot be printed becomes '?'.
  std::string field(int first, int last) const;
};

/// What the columns of a number hold.
enum class Content { blank, number, other };
/// Looks at columns `first` to `last`: blanks only, a decimal number (with a point only if
/// `allowPoint`) between blanks, or anything else: asterisks, letters, an exponent, two numbers.
Content contentOf(const Line& line, int first, int last, bool allowPoint);

/// Reads a serial or residue number, decimal or hybrid-36: 1, or 0 when the columns hold none.
int readNumber(const Line& line, int first, int last, int& value);

/// Adds to the remarks on a line, set apart by semicolons.
void addRemark(std::string& remarks, const std::string& remark);

/// The fields of one atom line.
struct AtomRecord {
  bool isHetero = false;
  bool hasSerial = false;
  int serial = 0;                  ///< decimal or hybrid-36; 0 when missing
  char nameColumns[5] = "    ";    ///< columns 13-16 as they stand
  char location[2] = " ";          ///< ' ' for none
  char residueName[5] = "    ";    ///< columns 18-21 as they stand
  char chain[2] = " ";             ///< ' ' for none
  int residueNumber = 0;           ///< decimal or hybrid-36
  char insertionCode[2] = " ";     ///< ' ' for none
  double xyz[3] = {0, 0, 0};       ///< angstroms
  double occupancy = 1.0;          ///< 1.00 when blank
  double temperatureFactor = 0.0;  ///< 0.00 when blank
  char symbolColumns[3] = "  ";    ///< columns 77-78 as they stand
  int charge = 0;                  ///< from "2+" or "+2"

  /// Reads a line that starts with ATOM or HETATM.
  ///
  /// A serial may be missing or spill over to the left into columns 5 and 6 of an ATOM line; the
  /// occupancy and all that follows it may be missing.
  /// \param remark says what is wrong with a field that can be done without, and is given its
  ///   default: the serial, the occupancy, the temperature factor, the charge.
  /// \returns what makes the line useless, empty when nothing does: no residue number, no atom
  ///   name, a coordinate that is missing, cut or not a number.
  std::string read(const Line& line, std::string& remark);

private:
  void scan(const Line& line);
  void readSerial(const Line& line, std::string& remark);
  void readDefaults(const Line& line, std::string& remark);
  void readCharge(const Line& line, std::string& remark);
};

/// Whether the line is an atom record: it starts with HETATM, or with ATOM and a serial or blanks.
bool isAtomLine(const Line& line);

}  // namespace molreport

#endif
