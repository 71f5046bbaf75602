#ifndef TQ_TQFILENAME_H
#define TQ_TQFILENAME_H

#include "tqString.h"

/// \file tqFilename.h
/// File names as texts: a path taken apart into directory, name and extension, and given another
/// extension. Every result owns its characters; the file system is never asked.

/// A path. '/' separates its parts and the last '.' of the last part starts the extension; nothing
/// else is special.
/// \snippet strings.cpp filename
class TQ_API tqFilename : public tqCopyString {
public:
  tqFilename() = default;
  /// Copies the text.
  tqFilename(const char* path);
  tqFilename(const tqString& path);
  tqFilename(const tqFilename& other) = default;

  using tqCopyString::operator=;
  tqFilename& operator=(const tqFilename& other);

  /// All up to the last '/', which is included; empty when there is none.
  tqFilename directory() const;
  /// The last part without its extension; empty when it begins with its only '.', as ".profile".
  tqFilename name() const;
  /// What follows the last '.' of the last part, empty when there is none.
  ///
  /// Kept: a '.' at the very end gives the whole path, since no characters follow it (see
  /// `substr`). Callers that must tell ask whether `search(-1, '.')` is `length - 1`.
  tqFilename extension() const;
  /// Puts '.' and the extension, given without one, in the place of the present extension, or at
  /// the end when there is none; an empty one leaves the '.' alone. Gives this object.
  tqFilename& replace_extension(const tqFilename& extension);

  // Slots of tqString.
  ~tqFilename() override = default;

private:
  int extensionDot() const;
};

#endif
