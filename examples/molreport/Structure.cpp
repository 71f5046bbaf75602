#include "Structure.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace molreport {

void Atom::moveTo(const tqPoint3D& position) {
  position_ = position;
  doTrigger(movedEvent);
}

void Atom::setFacts(int serial, char location, float occupancy, float temperatureFactor,
                    int charge) {
  serial_ = serial;
  location_ = location;
  occupancy_ = occupancy;
  temperatureFactor_ = temperatureFactor;
  charge_ = static_cast<signed char>(charge);
}

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
