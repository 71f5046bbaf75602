#include "Text.h"

#include <fmt/format.h>

namespace molreport {

std::string shownChain(char id) { return id == ' ' ? "(blank)" : std::string(1, id); }

std::string_view shownName(Name name) {
  return name.isEmpty() ? std::string_view("?") : name.text();
}

std::string shownResidue(const Chain& chain, const Residue& residue) {
  return fmt::format("{} {} {}", shownName(residue.name()), shownChain(chain.id()),
                     residue.label());
}

std::string fixed(double value, int width, int decimals) {
  std::string text = fmt::format("{:.{}f}", value, decimals);
  if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return fmt::format("{:>{}}", text, width);
}

}  // namespace molreport
