#ifndef TQ_COLOR_H
#define TQ_COLOR_H

/// \file Color.h
/// The kinds of colour value that a colour list may hold.

/// How an application reads the numbers of a `tqColorList`, which stores the kind and never
/// interprets it.
enum ColorType : int {
  COLOR_NONE = 0,   ///< no colours
  COLOR_INDEX = 1,  ///< indices into the application's colour map
  COLOR_RGB = 2     ///< packed red, green and blue
};

#endif
