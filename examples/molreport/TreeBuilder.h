#ifndef MOLREPORT_TREEBUILDER_H
#define MOLREPORT_TREEBUILDER_H

#include "AtomRecord.h"
#include "Structure.h"

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>

/// \file TreeBuilder.h
/// Sorts the atom records of a file into models, chains and residues.

namespace molreport {

/// Remembers the names made last by the columns that they came from, so that an atom line costs a
/// few look-ups in a small array instead of searches in the table of all names.
class RecentNames {
public:
  /// The name kept for these columns, else the one that `make` gives.
  template <class Make> Name find(std::uint64_t columns, Make make) {
    Entry& entry = entries_[columns * 0x9E3779B97F4A7C15u >> 56];
    if (entry.columns != columns) entry = {columns, make()};
    return entry.name;
  }

private:
  struct Entry {
    std::uint64_t columns = 0;  // all 0 stand for the empty name
    Name name;
  };
  std::array<Entry, 256> entries_;
};

/// Builds the tree below a structure, atom by atom in file order.
///
/// - A chain is all that carries its id, wherever it stands in the model. After the TER of its id,
///   an ATOM that numbers from lower again opens another chain of that id, unless it is of a water.
/// - A residue is what carries one number, insertion code and name in a chain. An atom that it has
///   already (same name, same location) is refused when it lies at the same place; at another place
///   it opens another residue of that number, since programs start over when columns are full.
class TreeBuilder {
public:
  /// \param structure without models; outlives the builder.
  explicit TreeBuilder(Structure& structure) : structure_(structure) {}

  /// Number of a model that has none on its line: one more than the last, 1 at first.
  int nextModel() const { return lastModel_ + 1; }
  /// Opens a model; atoms go into it until it is closed. Close the one before first.
  void openModel(int number);
  /// Closes the model, if one is open. 0 when it had no atoms, and then it is gone; else 1.
  int closeModel();
  /// Ends the polymer of chain `id` in the open model.
  void endChain(char id);
  /// Ends the polymer of the last atom.
  void endChain();

  /// Adds an atom, to a new model when none is open.
  ///
  /// \param remark gets what is odd about an atom that was added (see `addRemark`).
  /// \returns why the atom is refused, empty when it was added.
  std::string add(const AtomRecord& record, std::string& remark);

private:
  struct ChainSlot {
    Chain* chain = nullptr;  // the last one of its id
    int lastNumber = 0;      // of its residues
    bool isEnded = false;
  };
  struct ResidueKey {
    const Chain* chain;
    int number;
    char insertionCode;
    Name name;
    bool operator==(const ResidueKey& other) const;
  };
  struct ResidueHash {
    std::size_t operator()(const ResidueKey& key) const;
  };

  ChainSlot& slot(char id) { return chains_[static_cast<unsigned char>(id)]; }
  Chain* chainOf(const AtomRecord& record, Name residueName);
  void findResidue(const AtomRecord& record);
  const Atom* twin(const Atom& atom) const;
  Atom* makeAtom(const AtomRecord& record);

  Structure& structure_;
  int lastModel_ = 0;
  Model* model_ = nullptr;  // null between models
  std::array<ChainSlot, 256> chains_;
  Residue* residue_ = nullptr;                                      // of the last atom
  ResidueKey key_{};                                                // of that residue
  int inStandardResidue_ = 0;                                       // likewise
  std::unordered_map<ResidueKey, Residue*, ResidueHash> residues_;  // of the model
  RecentNames atomNames_;
  RecentNames residueNames_;
  RecentNames elements_;
};

}  // namespace molreport

#endif
