#ifndef TQ_COLORLIST_H
#define TQ_COLORLIST_H

#include "Color.h"
#include "tq_export.h"

/// \file ColorList.h
/// A colour scheme as a plain value: a kind and the colours, which it owns. It is no identified
/// object, but answers for its class as objects do.

/// A `ColorType` and an array of colour values, copied in and copied with the list.
class TQ_API tqColorList {
public:
  /// No colours, kind `COLOR_NONE`.
  tqColorList() = default;
  /// Copies `n` colours; a null array or n of 0 or less gives an empty list of that kind.
  tqColorList(ColorType type, const int* colors, int n);
  tqColorList(const tqColorList& other);
  tqColorList& operator=(const tqColorList& other);

  ColorType type() const { return type_; }
  int count() const { return count_; }

  // Virtual slots: applications override these, the order counts.
  virtual ~tqColorList();
  virtual unsigned classId() const;       ///< 1122
  virtual const char* className() const;  ///< "ColorList"
  virtual int isA(unsigned id) const;     ///< 1 for 1122 alone
  /// The colour at index i, 0 when i is out of range.
  virtual int colorAt(int i);
  /// Replaces the colour at index i; an index out of range is ignored.
  virtual void setColorAt(int i, int color);
  /// Replaces kind and colours, as the constructor takes them.
  virtual void setColorList(ColorType type, const int* colors, int n);

private:
  void assign(ColorType type, const int* colors, int n);

  ColorType type_ = COLOR_NONE;
  int count_ = 0;
  int* colors_ = nullptr;  // from malloc, null when there are none
};

#endif
