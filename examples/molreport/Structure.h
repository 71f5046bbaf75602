#ifndef MOLREPORT_STRUCTURE_H
#define MOLREPORT_STRUCTURE_H

#include "Name.h"
#include "Platform.h"
#include "Point3D.h"

#include <string>

/// \file Structure.h
/// What a structure file describes, as a tree of identified objects: a structure holds models, a
/// model chains, a chain residues, a residue atoms. Each node owns what is below it.

namespace molreport {

/// The event that an atom dispatches when it moves.
constexpr int movedEvent = 0x1001;

/// Names of the attributes in which the nodes keep what a file says about them. Only what the file
/// gives is there: an atom without charge has no attribute for it.
namespace facts {
// Of atoms.
constexpr const char* serial = "serial";                 ///< int
constexpr const char* occupancy = "occupancy";           ///< float
constexpr const char* temperatureFactor = "tempFactor";  ///< float
constexpr const char* charge = "charge";                 ///< int
constexpr const char* location = "altLoc";               ///< text: the letter
constexpr const char* bonds = "bonds";                   ///< OIDs of the atoms of CONECT records
// Of residues.
constexpr const char* hetero = "hetero";  ///< int: 1, opened by a HETATM record
constexpr const char* chainEnd = "ter";   ///< int: 1, followed by a TER record
}  // namespace facts

/// What the nodes share: the answers of the class table, and copies of the right class.
///
/// `Self` names its entry of the table in `tableId` and `tableName`.
template <class Self> class Node : public tqTreeNode {
public:
  unsigned classId() const override { return Self::tableId; }
  const char* className() const override { return Self::tableName; }
  int isA(unsigned id) const override { return id == Self::tableId ? 1 : tqTreeNode::isA(id); }
  tqCopyable* shallowCopy() const override { return new Self(static_cast<const Self&>(*this)); }
};

/// The children of a node, by their class, for range loops. The node must not change meanwhile.
template <class Child> class Children {
public:
  class Iterator {
  public:
    Iterator(const tqTreeNode& parent, int index) : parent_(parent), index_(index) {}
    Child* operator*() const { return static_cast<Child*>(parent_.child(index_)); }
    Iterator& operator++() {
      ++index_;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return index_ != other.index_; }

  private:
    const tqTreeNode& parent_;
    int index_;
  };

  explicit Children(const tqTreeNode& parent) : parent_(parent) {}
  Iterator begin() const { return {parent_, 0}; }
  Iterator end() const { return {parent_, parent_.childCount()}; }
  /// Child i, null out of range.
  Child* operator[](int i) const { return static_cast<Child*>(parent_.child(i)); }
  int count() const { return parent_.childCount(); }

private:
  const tqTreeNode& parent_;
};

/// One atom record: an atom at one of its locations.
class Atom : public Node<Atom> {
public:
  static constexpr unsigned tableId = 1006;
  static constexpr const char* tableName = "Atom";

  /// \param nameOffset blanks before the name in its four columns, 0 to 3: "CA" at 0 is calcium, at
  ///   1 an alpha carbon.
  Atom(Name name, int nameOffset, Name element, bool isHetero)
      : name_(name), element_(element), nameOffset_(static_cast<char>(nameOffset)),
        isHetero_(isHetero) {}

  Name name() const { return name_; }
  int nameOffset() const { return nameOffset_; }
  Name element() const { return element_; }
  /// Whether the record is a HETATM.
  bool isHetero() const { return isHetero_; }
  /// In angstroms.
  const tqPoint3D& position() const { return position_; }
  /// Puts the atom elsewhere, and there if it was absent, and dispatches `movedEvent`.
  void moveTo(const tqPoint3D& position);
  /// Says that the atom is not there for the time being, and dispatches `movedEvent`; nothing when
  /// it is absent already.
  void setAbsent();
  /// 0 while the atom is absent.
  int isValidObject() const override { return isPresent_ ? 1 : 0; }

  // What the file says beyond that is kept in attributes (see `facts`).
  /// 0 when there is none.
  int serial() const;
  /// The letter of the alternate location, ' ' for none.
  char location() const;
  float occupancy() const;
  /// In square angstroms.
  float temperatureFactor() const;
  /// In elementary charges.
  int charge() const;

private:
  tqPoint3D position_;
  Name name_;
  Name element_;
  char nameOffset_;
  bool isHetero_;
  bool isPresent_ = true;
};

/// A residue, nucleotide, ligand, ion or water.
///
/// Its class id is that of a chemical object: what a residue is, an amino acid, a nucleic acid or
/// something else, follows from its atoms, and a file may hold any name.
class Residue : public Node<Residue> {
public:
  static constexpr unsigned tableId = 1001;
  static constexpr const char* tableName = "ChemObject";

  Residue(Name name, int number, char insertionCode)
      : name_(name), number_(number), insertionCode_(insertionCode) {}

  Name name() const { return name_; }
  int number() const { return number_; }
  /// ' ' for none.
  char insertionCode() const { return insertionCode_; }
  /// The number with the insertion code, as in "59A".
  std::string label() const;

  Children<Atom> atoms() const { return Children<Atom>(*this); }
  /// Whether a HETATM record opened the residue.
  bool isHetero() const;
  /// Whether a TER record ends the polymer here.
  bool isChainEnd() const;

  /// The location at which the residue is measured: the letter whose atoms have the highest
  /// occupancy in total, the first such letter on a tie; ' ' when no atom has a letter.
  char mainLocation() const;
  /// The atom of this name, without location before the main location before any other; null when
  /// there is none. The element tells the alpha carbon "CA" from calcium; null for any.
  Atom* find(Name name, const Name* element = nullptr) const;

private:
  Name name_;
  int number_;
  char insertionCode_;
};

/// A chain: the polymer of its id and the ligands and waters that the file counts to it.
class Chain : public Node<Chain> {
public:
  static constexpr unsigned tableId = 1011;
  static constexpr const char* tableName = "Subunit";

  explicit Chain(char id) : id_(id) {}

  /// ' ' when the column is blank.
  char id() const { return id_; }
  Children<Residue> residues() const { return Children<Residue>(*this); }

private:
  char id_;
};

/// One model of a structure.
class Model : public Node<Model> {
public:
  static constexpr unsigned tableId = 1041;
  static constexpr const char* tableName = "Model";

  explicit Model(int number) : number_(number) {}

  /// The number on its MODEL line, or else one more than that of the model before.
  int number() const { return number_; }
  Children<Chain> chains() const { return Children<Chain>(*this); }

private:
  int number_;
};

/// All that a file describes.
class Structure : public Node<Structure> {
public:
  static constexpr unsigned tableId = 1012;
  static constexpr const char* tableName = "Structure";

  /// The text of the TITLE lines in one; empty without them.
  const std::string& title() const { return title_; }
  /// Adds the text of one more TITLE line.
  void addTitle(const std::string& text);
  Children<Model> models() const { return Children<Model>(*this); }

private:
  std::string title_;
};

/// Whether a residue's name is one that water goes by.
bool isWater(Name residueName);

/// Calls `visit(Chain&, Residue&, Atom&)` for every atom of a model, in file order.
template <class Visit> void forEachAtom(const Model& model, Visit visit) {
  for (Chain* chain : model.chains())
    for (Residue* residue : chain->residues())
      for (Atom* atom : residue->atoms()) visit(*chain, *residue, *atom);
}

}  // namespace molreport

#endif
