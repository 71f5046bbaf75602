#include "TreeBuilder.h"

#include "Elements.h"
#include "Text.h"
#include "UserData.h"

#include <fmt/format.h>

#include <cstring>
#include <memory>

namespace molreport {

namespace {

constexpr double samePlace2 = 1e-6;  // squared distance, in square angstroms

std::uint64_t packed(const char* columns) {
  std::uint64_t bytes = 0;
  for (; *columns; ++columns) bytes = bytes << 8 | static_cast<unsigned char>(*columns);
  return bytes;
}

Name trimmedName(const char* columns) {
  char text[8];
  columns += std::strspn(columns, " ");
  std::size_t length = std::strlen(columns);
  while (length > 0 && columns[length - 1] == ' ') --length;
  std::memcpy(text, columns, length);
  text[length] = '\0';
  return {text};
}

void addFacts(tqUserData& own, const AtomRecord& record) {
  if (record.hasSerial) own.addUserData(facts::serial, record.serial);
  own.addUserData(facts::occupancy, static_cast<float>(record.occupancy));
  own.addUserData(facts::temperatureFactor, static_cast<float>(record.temperatureFactor));
  if (record.charge != 0) own.addUserData(facts::charge, record.charge);
  if (record.location[0] != ' ') own.addUserData(facts::location, record.location);
}

}  // namespace

bool TreeBuilder::ResidueKey::operator==(const ResidueKey& other) const {
  return chain == other.chain && number == other.number && insertionCode == other.insertionCode &&
         name == other.name;
}

std::size_t TreeBuilder::ResidueHash::operator()(const ResidueKey& key) const {
  const std::hash<const void*> address;
  const auto number =
      static_cast<unsigned>(key.number) * 256u + static_cast<unsigned char>(key.insertionCode);
  return (address(key.chain) ^ address(key.name.text().data()) << 20 ^ number) *
         0x9E3779B97F4A7C15u;
}

void TreeBuilder::openModel(int number) {
  lastModel_ = number;
  model_ = tqAllocated(new Model(number));
  structure_.addChild(model_);
  chains_.fill({});
  residues_.clear();
  residue_ = nullptr;
}

int TreeBuilder::closeModel() {
  const bool isEmpty = model_ && model_->childCount() == 0;
  if (isEmpty) delete model_;
  model_ = nullptr;
  return isEmpty ? 0 : 1;
}

void TreeBuilder::endChain(char id) {
  slot(id).isEnded = true;
  const Chain* const chain = slot(id).chain;
  if (!model_ || !chain || chain->childCount() == 0) return;
  Residue* const last = chain->residues()[chain->childCount() - 1];
  last->userData()->addUserData(facts::chainEnd, 1);
}

void TreeBuilder::endChain() {
  if (residue_) endChain(key_.chain->id());
}

std::string TreeBuilder::add(const AtomRecord& record, std::string& remark) {
  if (!model_) openModel(nextModel());
  findResidue(record);
  std::unique_ptr<Atom> atom(makeAtom(record));
  if (const Atom* other = residue_ ? twin(*atom) : nullptr) {
    if (other->position().dist2(atom->position()) < samePlace2)
      return fmt::format("repeats atom {} of residue {}", atom->name().text(),
                         shownResidue(*key_.chain, *residue_));
    addRemark(remark, fmt::format("residue {} stands here once more",
                                  shownResidue(*key_.chain, *residue_)));
    residue_ = nullptr;
  }
  if (!residue_) {
    residue_ = tqAllocated(new Residue(key_.name, key_.number, key_.insertionCode));
    slot(record.chain[0]).chain->addChild(residue_);
    slot(record.chain[0]).lastNumber = key_.number;
    if (record.isHetero) residue_->userData()->addUserData(facts::hetero, 1);
    residues_[key_] = residue_;
  }
  residue_->addChild(atom.release());
  return {};
}

// Leaves the residue of the record in `residue_`, null when it is a new one, and its key.
void TreeBuilder::findResidue(const AtomRecord& record) {
  const Name name = residueNames_.find(packed(record.residueName),
                                       [&] { return trimmedName(record.residueName); });
  const ResidueKey key = {chainOf(record, name), record.residueNumber, record.insertionCode[0],
                          name};
  if (residue_ && key == key_) return;
  key_ = key;
  inStandardResidue_ = isStandardResidue(name.text());
  const auto found = residues_.find(key);
  residue_ = found == residues_.end() ? nullptr : found->second;
}

Chain* TreeBuilder::chainOf(const AtomRecord& record, Name residueName) {
  ChainSlot& chain = slot(record.chain[0]);
  const bool startsOver = chain.isEnded && !record.isHetero &&
                          record.residueNumber <= chain.lastNumber && !isWater(residueName);
  if (!chain.chain || startsOver) {
    chain = {tqAllocated(new Chain(record.chain[0])), record.residueNumber, false};
    model_->addChild(chain.chain);
  }
  return chain.chain;
}

// The atom of the residue with the name, columns and location of this one.
const Atom* TreeBuilder::twin(const Atom& atom) const {
  for (const Atom* other : residue_->atoms())
    if (other->name() == atom.name() && other->nameOffset() == atom.nameOffset() &&
        other->location() == atom.location())
      return other;
  return nullptr;
}

Atom* TreeBuilder::makeAtom(const AtomRecord& record) {
  const std::uint64_t columns = packed(record.nameColumns);
  const Name name = atomNames_.find(columns, [&] { return trimmedName(record.nameColumns); });
  const std::uint64_t kind =
      columns << 24 | packed(record.symbolColumns) << 8 | static_cast<unsigned>(inStandardResidue_);
  const Name element = elements_.find(kind, [&] {
    return elementOf(record.symbolColumns, record.nameColumns, inStandardResidue_);
  });
  const auto offset = static_cast<int>(std::strspn(record.nameColumns, " "));
  Atom* const atom = tqAllocated(new Atom(name, offset, element, record.isHetero));
  addFacts(*atom->userData(), record);
  atom->moveTo(tqPoint3D(record.xyz));
  return atom;
}

}  // namespace molreport
