#include "Name.h"

#include <string>
#include <unordered_set>

namespace molreport {

Name::Name(const char* text) : text_(empty) {
  static std::unordered_set<std::string>* const texts = new std::unordered_set<std::string>;
  if (text && *text) text_ = texts->insert(text).first->c_str();
}

}  // namespace molreport
