// Lists and tables: how a list grows and removes, how a table is searched and walked, and how an
// application makes a table of its own in a few lines.

#include "Base.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("  %s: %s\n", holds ? "yes" : "NO", what);
  if (!holds) ++failures;
}

void print(const char* label, const tqBaseList& list) {
  std::printf("  %s:", label);
  for (const tqBase* object : list) std::printf(" %u", object->oid());
  std::printf("  (%d of %d slots)\n", list.count(), list.capacity());
}

void useLists() {
  std::printf("A list holds pointers and owns none of the objects\n");
  tqBase first(1), second(1), third(1), fourth(1);
  tqBaseList list(0);  // no slots yet
  for (tqBase* object : {&first, &second, &third, &fourth}) list.append(object);
  print("four objects", list);

  tqBaseList ordered(list);  // a list of its own over the same objects
  ordered.ordered(1);
  list.remove(0);
  ordered.remove(0);
  print("without the first, unordered", list);
  print("without the first, ordered", ordered);
  expect(list.item(0) == &fourth, "an unordered list moves its last element into the hole");
  expect(ordered.item(0) == &second, "an ordered one keeps the order");

  tqBaseList_Iterator search(ordered);
  expect(search.canFind(&third) && search.index() == 1, "a search gives the position");
  expect(!list.isMember(&first), "what was taken out is no member");
}

void useTheTables() {
  std::printf("A table leads from a key to the newest of its values\n");
  int window = 0, menu = 0;
  OIDHndTbl table(0);
  table.insert(7, &window);
  table.insert(7, &menu);
  void* found = nullptr;
  expect(table.find(found, 7) && found == &menu, "the newest hides the older");
  table.remove(7);
  expect(table.find(found, 7) && found == &window, "until it is removed");
  expect(!table.find(found, 8) && found == &window, "a failed search leaves the value alone");

  for (int key = 100; key < 166; ++key) table.insert(key, &menu);
  std::printf("  %d entries in %d slots\n", table.count(), table.bucketCount());
  int entries = 0, highest = 0;
  for (OIDHndTbl_Iterator i(table); i.more(); i.next(), ++entries)
    if (i.current->key > highest) highest = i.current->key;
  expect(entries == table.count() && highest == 165, "an iterator stands on each of them once");
}

/// A table of the application: from the symbol of an element to its mass. It states its types, the
/// hash that selects the slot, one that tells keys apart, and equality; the rest is the family's.
struct MassTableRule {
  using Key = const char*;
  using Value = double;
  static unsigned hash(const char* symbol) { return ProtoTable::hash(symbol) ^ unsigned(*symbol); }
  static unsigned spread(const char* symbol) { return spreadBits(symbol, std::strlen(symbol)); }
  static bool equal(const char* a, const char* b) { return std::strcmp(a, b) == 0; }
};
using MassTable = ChainedTable<MassTableRule>;

void makeATableOfYourOwn() {
  std::printf("A table of the application's own\n");
  // Standard atomic weights (IUPAC 2021, abridged).
  MassTable masses(0);
  masses.insert("H", 1.008);
  masses.insert("C", 12.011);
  masses.insert("N", 14.007);
  masses.insert("O", 15.999);
  double glycine = 0.0;  // C2 H5 N O2
  const struct {
    const char* symbol;
    int atoms;
  } formula[] = {{"C", 2}, {"H", 5}, {"N", 1}, {"O", 2}};
  for (const auto& part : formula) {
    double mass = 0.0;
    if (!masses.find(mass, part.symbol)) expect(false, part.symbol);
    glycine += part.atoms * mass;
  }
  std::printf("  glycine has a mass of %.3f\n", glycine);
  expect(glycine > 75.06 && glycine < 75.08, "that is the tabulated mass, 75.07");
}

}  // namespace

int main() {
  useLists();
  useTheTables();
  makeATableOfYourOwn();
  return failures == 0 ? 0 : 1;
}
