#ifndef MOLREPORT_NAME_H
#define MOLREPORT_NAME_H

/// \file Name.h
/// Names of atoms, residues and elements. A structure repeats a few dozen of them tens of thousands
/// of times, so each text is stored once and compared by its address.

namespace molreport {

/// A short text stored once for the whole process; as cheap to copy and compare as a pointer.
class Name {
public:
  /// The empty name.
  Name() : text_(empty) {}
  /// The name of this text; null counts as the empty one.
  Name(const char* text);

  const char* text() const { return text_; }
  bool isEmpty() const { return text_ == empty; }
  bool operator==(Name other) const { return text_ == other.text_; }
  bool operator!=(Name other) const { return text_ != other.text_; }

private:
  static constexpr char empty[1] = "";

  const char* text_;
};

}  // namespace molreport

#endif
