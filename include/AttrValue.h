#ifndef TQ_ATTRVALUE_H
#define TQ_ATTRVALUE_H

#include "Warn.h"

#include <cstddef>

/// \file AttrValue.h
/// The value of an attribute: one of eleven kinds, from an int to an array of points or a text,
/// with a text form for display and storage. A value owns its array or text; copies are deep.

/// Kind of a value. The codes are fixed: applications store them.
enum AttrType : int {
  ATTR_NONE = 0,  ///< empty
  ATTR_INT = 1,
  ATTR_UINT = 2,  ///< an object identifier
  ATTR_FLOAT = 3,
  ATTR_DOUBLE = 4,
  ATTR_POINT = 5,  ///< one 3-D point: x, y, z
  ATTR_INT_ARRAY = 6,
  ATTR_UINT_ARRAY = 7,  ///< object identifiers
  ATTR_FLOAT_ARRAY = 8,
  ATTR_DOUBLE_ARRAY = 9,
  ATTR_POINT_ARRAY = 10,
  ATTR_STRING = 11,
  ATTR_RESERVED = 12  ///< no setter makes it
};

/// A value with its kind.
///
/// Each setter replaces kind and value together. It may be given the value's own text or array:
/// that is copied before it is released. Each getter answers 1 when the value is of its kind;
/// otherwise it answers 0 and leaves its argument untouched.
/// \snippet attributes.cpp values
class TQ_API AttrValue {
public:
  /// An empty value.
  AttrValue() = default;
  /// One constructor per setter; see there.
  AttrValue(int number) { setValue(number); }
  AttrValue(unsigned int oid) { setValue(oid); }
  AttrValue(float number) { setValue(number); }
  AttrValue(double number) { setValue(number); }
  AttrValue(const double* point) { setValue(point); }
  AttrValue(const char* text) { setValue(text); }
  AttrValue(const int* numbers, int n) { setValue(numbers, n); }
  AttrValue(const unsigned int* oids, int n) { setValue(oids, n); }
  AttrValue(const float* numbers, int n) { setValue(numbers, n); }
  AttrValue(const double* numbers, int n) { setValue(numbers, n); }
  AttrValue(const double (*points)[3], int n) { setValue(points, n); }

  AttrValue(const AttrValue& other) { copyAttrValue(other); }
  ~AttrValue() { clear(); }
  /// Becomes a deep copy; assigning a value to itself keeps it.
  AttrValue& operator=(const AttrValue& other);

  AttrType type() const { return type_; }

  /// Elements of an array (points of a point array), characters of a text, 1 for all else.
  ///
  /// Kept: an empty value answers 1 as well; loops over the elements test `type` first.
  int length() const;

  /// Address of the number, of the first element, or of the text; null for an empty value. It lasts
  /// until the value changes or dies.
  const void* pvalue() const;

  int value(int& number) const { return get(ATTR_INT, value_.signedNumber, number); }
  int value(unsigned int& oid) const { return get(ATTR_UINT, value_.unsignedNumber, oid); }
  int value(float& number) const { return get(ATTR_FLOAT, value_.singleNumber, number); }
  int value(double& number) const { return get(ATTR_DOUBLE, value_.doubleNumber, number); }
  /// The text itself, as `pvalue`; likewise the arrays below, which count `length()` elements.
  int value(const char*& text) const { return getElements(ATTR_STRING, text); }
  int value(const int*& numbers) const { return getElements(ATTR_INT_ARRAY, numbers); }
  int value(const unsigned int*& oids) const { return getElements(ATTR_UINT_ARRAY, oids); }
  int value(const float*& numbers) const { return getElements(ATTR_FLOAT_ARRAY, numbers); }
  /// The first double of an array, of a point, or of an array of points.
  int value(const double*& numbers) const;

  void setValue(int number) { set(ATTR_INT, value_.signedNumber, number); }
  void setValue(unsigned int oid) { set(ATTR_UINT, value_.unsignedNumber, oid); }
  void setValue(float number) { set(ATTR_FLOAT, value_.singleNumber, number); }
  void setValue(double number) { set(ATTR_DOUBLE, value_.doubleNumber, number); }
  /// One point, three doubles, copied; null counts as the origin.
  void setValue(const double* point);
  /// A text, copied; null counts as the empty one.
  void setValue(const char* text);
  /// An array of n elements, copied; null or an n below 0 makes an empty array.
  void setValue(const int* numbers, int n) { setArray(ATTR_INT_ARRAY, numbers, n); }
  void setValue(const unsigned int* oids, int n) { setArray(ATTR_UINT_ARRAY, oids, n); }
  void setValue(const float* numbers, int n) { setArray(ATTR_FLOAT_ARRAY, numbers, n); }
  void setValue(const double* numbers, int n) { setArray(ATTR_DOUBLE_ARRAY, numbers, n); }
  /// An array of n points, likewise. More points than an int can count coordinates of (3n above
  /// 2^31 - 1) run out of memory.
  void setValue(const double (*points)[3], int n);

  /// Releases the array or text: the value is empty.
  void clear() {
    if (type_ > ATTR_DOUBLE) release();
    type_ = ATTR_NONE;
  }

  /// Becomes a deep copy.
  ///
  /// Kept: what the value holds is not released, so that a caller who took it over by `pvalue` may
  /// keep it; others clear the value first, or assign. Of a value of the reserved kind only the
  /// code is copied.
  void copyAttrValue(const AttrValue& source);

  /// Sets to 0 each identifier, of one or of an array, that leads to no living object (mappings
  /// followed). Values of other kinds stay as they are.
  void validateObjects();

  /// Kind of one element of an array (that of `ATTR_POINT_ARRAY` is `ATTR_POINT`), and its width in
  /// bytes. Every other kind answers itself and width 0.
  AttrType scalarType(int* width) const;

  /// Writes one element as text with a NUL, and answers its length.
  ///
  /// The text is, to the byte, what `sprintf` gives in the "C" locale for "%d", "%.8G" (float),
  /// "%.17G" (double) and "(%.17G %.17G %.17G)" (point). Kinds that are no element, and a null
  /// element, give the empty text.
  ///
  /// Kept: an identifier is written as a signed number, so those from 2^31 on are negative; reading
  /// the text back with `tqUserData::addUserDataString` gives the same identifier.
  ///
  /// \param element an int, unsigned int, float, double or three doubles, as `kind` says
  /// \param out room for what is written; 80 characters hold every element
  int encodeScalar(const void* element, AttrType kind, char* out) const;

  /// Writes the value as text and answers `buffer`: elements as `encodeScalar` writes them with a
  /// blank between, a text as it is, nothing for an empty value.
  ///
  /// Never more than `size` characters, the NUL included: what does not fit is cut, in the middle
  /// of a number if need be, and a blank may stand last. A null buffer or a size below 1 is left
  /// alone.
  /// \snippet attributes.cpp text
  char* writeToString(char* buffer, int size) const;

private:
  friend class tqUserDataItem;

  /// In front of the elements of an array or point, in one block of the C heap.
  struct BlockHeader {
    int count;  // scalars in the block: 3 for each point
    int reserved;
  };

  union Value {
    int signedNumber;
    unsigned int unsignedNumber;
    float singleNumber;
    double doubleNumber;
    BlockHeader* block;
    char* text;
    void* word;
  };

  template <class T> int get(AttrType type, const T& number, T& out) const {
    if (type_ != type) return 0;
    out = number;
    return 1;
  }
  template <class T> int getElements(AttrType type, const T*& out) const {
    if (type_ != type) return 0;
    out = static_cast<const T*>(pvalue());
    return 1;
  }
  template <class T> void set(AttrType type, T& number, T newNumber) {
    clear();
    number = newNumber;
    type_ = type;
  }

  unsigned int* identifiers(int& n);
  void setArray(AttrType type, const void* elements, int count);
  char* writeCut(char* buffer, int size) const;
  void release();

  AttrType type_ = ATTR_NONE;
  Value value_ = {};
};

#endif
