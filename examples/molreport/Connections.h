#ifndef MOLREPORT_CONNECTIONS_H
#define MOLREPORT_CONNECTIONS_H

#include "AtomRecord.h"
#include "Structure.h"

#include <functional>
#include <string>
#include <vector>

/// \file Connections.h
/// The CONECT records of a file: which atoms are bonded, by serial.

namespace molreport {

/// Collects CONECT lines, and joins the atoms once all of them are known.
class Connections {
public:
  /// Takes the line of this number. Returns what makes it useless, empty when nothing does.
  std::string add(const Line& line, int lineNumber);

  /// Called for a line that does not lead to atoms: its number, the message, and whether the line
  /// could not be used at all.
  using Complaint = std::function<void(int lineNumber, const std::string& message, bool isUseless)>;

  /// Gives the first atom of each line an attribute with the OIDs of the others, in the order of
  /// the file, repetitions included: they stand for double bonds. Lines hold for every model that
  /// has an atom of the first serial.
  void join(const Structure& structure, const Complaint& complain) const;

private:
  struct Record {
    int lineNumber;
    int serial;
    std::vector<int> partners;
  };
  struct Found {
    bool first = false;
    int missing = 0;  // a partner that no atom of the model has, 0 when there is none
  };

  void joinModel(const Model& model, std::vector<Found>& found) const;

  std::vector<Record> records_;
};

}  // namespace molreport

#endif
