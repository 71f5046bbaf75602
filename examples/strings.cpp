// Texts: views of a record's fields, searches and numbers in them, names kept once, file names.

#include "tqFilename.h"
#include "tqString.h"

#include <cstdio>

namespace {

int failures = 0;

void expect(int holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "strings: %s\n", what);
  ++failures;
}

// The text between the blanks around it.
tqString trimmed(tqString text) {
  while (text.length > 0 && text.data[0] == ' ') text = tqString(text.data + 1, text.length - 1);
  while (text.length > 0 && text.data[text.length - 1] == ' ')
    text.set_to_substr(0, text.length - 1);
  return text;
}

void viewFields() {
  //! [views]
  const tqString record = "ATOM    145  CA  ALA A  17      11.104   6.134  -6.504";
  const tqString residue = record.substr(17, 3);  // a view: nothing is copied
  const tqString z = record.substr(-7, -1);       // the last seven characters
  const tqCopyString kept = residue;              // outlives the record
  std::printf("residue %.*s\n", residue.length, residue.data);
  //! [views]
  expect(residue == "ALA" && kept == residue && kept.data != residue.data, "residue name");
  expect(z == " -6.504", "last column");

  //! [convert]
  int number = 0;
  double coordinate = 0.0;
  const int read = record.substr(6, 5).convert(number) && z.convert(coordinate);
  if (!read) std::fprintf(stderr, "no number in the record\n");
  //! [convert]
  expect(read && number == 145 && coordinate == -6.504, "numbers");
}

void searchText() {
  //! [search]
  const tqString setting = "title = a = b";
  const int first = setting.search(0, '=');  // 6
  const int last = setting.search(-1, '=');  // 10
  const tqString key = trimmed(setting.substr(0, first));
  //! [search]
  expect(first == 6 && last == 10 && key == "title", "search");
}

void internNames() {
  //! [unique]
  const tqUniqueString alphaCarbon("CA");
  const tqString record = "ATOM    145  CA  ALA A  17";
  const tqUniqueString name(trimmed(record.substr(12, 4)));
  if (name == alphaCarbon) std::printf("an alpha carbon\n");  // compares two addresses
  //! [unique]
  expect(name == alphaCarbon && name.data == alphaCarbon.data, "one name, one address");
}

void takePathsApart() {
  //! [filename]
  tqFilename path = "runs/2024.5/crambin.pdb";
  const tqFilename directory = path.directory();  // "runs/2024.5/"
  const tqFilename name = path.name();            // "crambin"
  path.replace_extension("log");
  std::printf("writing %s\n", path.data);  // an owned copy ends with a NUL
  //! [filename]
  expect(directory == "runs/2024.5/" && name == "crambin", "parts of a path");
  expect(path == "runs/2024.5/crambin.log" && path.extension() == "log", "new extension");
}

}  // namespace

int main() {
  viewFields();
  searchText();
  internNames();
  takePathsApart();
  return failures == 0 ? 0 : 1;
}
