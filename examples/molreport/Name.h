#ifndef MOLREPORT_NAME_H
#define MOLREPORT_NAME_H

#include "tqString.h"

#include <string_view>

/// \file Name.h
/// Names of atoms, residues and elements. A structure repeats a few dozen of them tens of thousands
/// of times, so each is interned: stored once for the process and compared by its address.

namespace molreport {

/// An interned name; as cheap to copy and compare as a pointer.
class Name {
public:
  /// The empty name.
  Name() = default;
  /// The name of this text; null counts as the empty one.
  Name(const char* text) {
    if (text && *text) *this = Name(tqUniqueString(text));
  }

  /// The characters, which have no NUL behind them; good for as long as the process lives.
  std::string_view text() const { return {data_, static_cast<std::size_t>(length_)}; }
  bool isEmpty() const { return length_ == 0; }
  bool operator==(Name other) const { return data_ == other.data_; }
  bool operator!=(Name other) const { return data_ != other.data_; }

private:
  explicit Name(const tqUniqueString& text) : data_(text.data), length_(text.length) {}

  const char* data_ = nullptr;
  int length_ = 0;
};

}  // namespace molreport

#endif
