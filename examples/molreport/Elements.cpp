#include "Elements.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace molreport {

namespace {

// The symbols in two columns each, right-justified, as the files write them.
constexpr std::string_view symbols =
    " H D XHELIBE B C N O FNENAMGALSI P SCLAR KCASCTI VCRMNFECONICUZNGAGEASSEBRKRRBSR YZRNBMOTCRURH"
    "PDAGCDINSNSBTE IXECSBALACEPRNDPMSMEUGDTBDYHOERTMYBLUHFTA WREOSIRPTAUHGTLPBBIPOATRNFRRAACTHPA"
    " UNPPUAMCMBKCFESFMMDNOLRRFDBSGBHHSMTDSRGCNNHFLMCLVTSOG";

// Residues whose atoms are hydrogen, carbon, nitrogen, oxygen, phosphorus and sulphur only.
constexpr std::string_view standardResidues[] = {
    "A",   "ALA", "ARG", "ASN", "ASP", "C",   "CYS", "DA",  "DC", "DG",  "DI",
    "DT",  "DU",  "G",   "GLN", "GLU", "GLY", "HIS", "HOH", "I",  "ILE", "LEU",
    "LYS", "MET", "PHE", "PRO", "SER", "THR", "TRP", "TYR", "U",  "VAL", "WAT"};

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool contains(std::string_view text, char c) { return text.find(c) != std::string_view::npos; }

// Whether two characters, right-justified, are a symbol; ' ' and 'C' are carbon.
bool isSymbol(char first, char second) {
  const char columns[] = {capital(first), capital(second), '\0'};
  if (!isLetter(second)) return false;
  for (std::size_t i = 0; i < symbols.size(); i += 2)
    if (symbols[i] == columns[0] && symbols[i + 1] == columns[1]) return true;
  return false;
}

Name symbol(char first, char second) {
  const char text[] = {capital(first), capital(second), '\0'};
  return first == ' ' ? Name(text + 1) : Name(text);
}

// Whether a name that takes all four columns starts with a one-letter symbol: every hydrogen
// ("HD11"), and what carries a Greek letter ("CB12", but "CL12").
bool startsWithOneLetter(const char* name) {
  if (name[0] == ' ' || name[3] == ' ') return false;
  const char first = capital(name[0]);
  return first == 'H' || (contains("CNOS", first) && contains("ABGDEZH", capital(name[1])));
}

}  // namespace

int isElementSymbol(const char* columns) {
  // Some programs write the symbol to the left.
  return isSymbol(columns[0], columns[1]) || (columns[1] == ' ' && isSymbol(' ', columns[0]));
}

int isStandardResidue(std::string_view residueName) {
  return std::binary_search(std::begin(standardResidues), std::end(standardResidues), residueName);
}

Name elementOf(const char* symbolColumns, const char* nameColumns, int inStandardResidue) {
  if (isElementSymbol(symbolColumns))
    return symbolColumns[1] == ' ' ? symbol(' ', symbolColumns[0])
                                   : symbol(symbolColumns[0], symbolColumns[1]);
  const bool oneLetter = inStandardResidue || startsWithOneLetter(nameColumns);
  if (!oneLetter && isSymbol(nameColumns[0], nameColumns[1]))
    return symbol(nameColumns[0], nameColumns[1]);
  const char* const letter = std::find_if(nameColumns, nameColumns + 4, isLetter);
  return letter != nameColumns + 4 && isSymbol(' ', *letter) ? symbol(' ', *letter) : Name("X");
}

}  // namespace molreport
