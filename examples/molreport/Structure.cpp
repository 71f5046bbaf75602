#include "Structure.h"

#include "UserData.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace molreport {

namespace {

template <class Number> Number fact(const tqTreeNode& node, const char* name, Number otherwise) {
  if (node.userData()) node.userData()->findUserData(name, otherwise);
  return otherwise;
}

}  // namespace

void Atom::moveTo(const tqPoint3D& position) {
  position_ = position;
  isPresent_ = true;
  doTrigger(movedEvent);
}

void Atom::setAbsent() {
  if (!isPresent_) return;
  isPresent_ = false;
  doTrigger(movedEvent);
}

int Atom::serial() const { return fact(*this, facts::serial, 0); }

char Atom::location() const {
  char letter[2] = "";
  int size = sizeof letter;
  if (userData()) userData()->findUserData(facts::location, size, letter);
  return letter[0] == '\0' ? ' ' : letter[0];
}

float Atom::occupancy() const { return fact(*this, facts::occupancy, 1.0f); }

float Atom::temperatureFactor() const { return fact(*this, facts::temperatureFactor, 0.0f); }

int Atom::charge() const { return fact(*this, facts::charge, 0); }

bool Residue::isHetero() const { return fact(*this, facts::hetero, 0) != 0; }

bool Residue::isChainEnd() const { return fact(*this, facts::chainEnd, 0) != 0; }

std::string Residue::label() const {
  std::string text = std::to_string(number_);
  if (insertionCode_ != ' ') text += insertionCode_;
  return text;
}

char Residue::mainLocation() const {
  std::map<char, float> occupancies;
  for (const Atom* atom : atoms())
    if (atom->location() != ' ') occupancies[atom->location()] += atom->occupancy();
  const auto best = std::max_element(occupancies.begin(), occupancies.end(),
                                     [](auto& a, auto& b) { return a.second < b.second; });
  return best == occupancies.end() ? ' ' : best->first;
}

Atom* Residue::find(Name name, const Name* element) const {
  const char main = mainLocation();
  const auto rank = [main](const Atom& atom) {
    return atom.location() == ' ' ? 2 : atom.location() == main ? 1 : 0;
  };
  Atom* best = nullptr;
  for (Atom* atom : atoms()) {
    if (atom->name() != name || (element && atom->element() != *element)) continue;
    if (!best || rank(*atom) > rank(*best)) best = atom;
  }
  return best;
}

void Structure::addTitle(const std::string& text) {
  if (!title_.empty() && title_.back() != '-') title_ += ' ';
  title_ += text;
}

bool isWater(Name residueName) {
  static const Name waters[] = {"HOH", "WAT", "DOD", "H2O", "D2O", "TIP3", "SOL"};
  return std::find(std::begin(waters), std::end(waters), residueName) != std::end(waters);
}

}  // namespace molreport
