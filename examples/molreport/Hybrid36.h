#ifndef MOLREPORT_HYBRID36_H
#define MOLREPORT_HYBRID36_H

#include <string>

/// \file Hybrid36.h
/// Numbers that outgrow their columns: decimal as long as they fit, then in base 36 with a letter
/// in front. Five columns go on from 99999 with A0000 to ZZZZZ, then a0000 to zzzzz. The scheme is
/// that of R. W. Grosse-Kunstleve (Computational Crystallography Newsletter 1, 2007).

namespace molreport {

/// Reads `width` characters, blanks around them included, decimal or in base 36. 1, or 0 for any
/// other text, and then `value` is untouched.
int readHybrid36(const char* text, int width, int& value);

/// The number in `width` columns (2 to 5), right-justified; asterisks when it fits neither way.
std::string writeHybrid36(int value, int width);

}  // namespace molreport

#endif
