#include "UserData.h"

#include "CLocale.h"

#include <algorithm>
#include <functional>
#include <memory>

namespace {

// Each reads one number (one point) where `text` stands and moves it on; 0 without moving when
// there is none.
void read(const char*& text, int& number) {
  char* end;
  number = static_cast<int>(static_cast<unsigned>(std::strtol(text, &end, 0)));
  text = end;
}

void read(const char*& text, unsigned& number) {
  char* end;
  number = static_cast<unsigned>(std::strtol(text, &end, 0));
  text = end;
}

void read(const char*& text, double& number) {
  char* end;
  number = std::strtod(text, &end);
  text = end;
}

void read(const char*& text, float& number) {
  double wide;
  read(text, wide);
  number = static_cast<float>(wide);
}

void read(const char*& text, double (&point)[3]) {
  for (double& coordinate : point) read(text, coordinate);
}

template <class Number> void setNumber(tqUserDataItem& item, const char* text) {
  Number number;
  read(text, number);
  item.setValue(number);
}

// Kept: the array keeps its length, whatever the text holds.
template <class Element> void setArray(tqUserDataItem& item, const char* text) {
  const int n = item.numElements();
  const std::unique_ptr<Element[]> elements(
      tqAllocated(new (std::nothrow) Element[static_cast<std::size_t>(n)]));
  for (int i = 0; i < n; ++i) read(text, elements[static_cast<std::size_t>(i)]);
  item.setValue(n, elements.get());
}

}  // namespace

// Among 32 names std::find_if takes 12 ns, and a plain loop 16: it has more jumps, and its end is
// harder to predict (GCC 12, -O3, whose library looks at four items a turn).
tqUserDataItem* tqUserData::first(const char* name, bool withValue) const {
  const tqUserDataItem::Sought sought(name);
  const auto* const found = std::find_if(begin(), end(), [&](const tqUserDataItem* item) {
    return item && item->isNamed(sought) && !(withValue && item->type() == ATTR_NONE);
  });
  return found != end() ? *found : nullptr;
}

int tqUserData::index(const char* name) const {
  const tqUserDataItem* const item = first(name, false);
  return item ? indexOf(item) : -1;
}

tqUserDataItem* tqUserData::find(const char* name) const { return first(name, true); }

tqUserDataItem* tqUserData::findOrAdd(const char* name) {
  if (tqUserDataItem* const known = first(name, false)) return known;
  auto* const added = tqAllocated(new (std::nothrow) tqUserDataItem(name));
  append(added);
  return added;
}

void tqUserData::addUserDataString(const char* name, const char* text) {
  tqUserDataItem& item = *findOrAdd(name);
  const CLocaleScope cLocale;
  if (!text) text = "";
  switch (item.type()) {
  case ATTR_INT:
    return setNumber<int>(item, text);
  case ATTR_UINT:
    return setNumber<unsigned>(item, text);
  case ATTR_FLOAT:
    return setNumber<float>(item, text);
  case ATTR_DOUBLE:
    return setNumber<double>(item, text);
  case ATTR_POINT: {
    double point[3];
    read(text, point);
    return item.setValue(point);
  }
  case ATTR_INT_ARRAY:
    return setArray<int>(item, text);
  case ATTR_UINT_ARRAY:
    return setArray<unsigned>(item, text);
  case ATTR_FLOAT_ARRAY:
    return setArray<float>(item, text);
  case ATTR_DOUBLE_ARRAY:
    return setArray<double>(item, text);
  case ATTR_POINT_ARRAY:
    return setArray<double[3]>(item, text);
  default:
    return item.setValue(text);
  }
}

int tqUserData::findUserData(const char* name, AttrValue& out) const {
  tqUserDataItem* const item = find(name);
  if (item) item->value(out);
  return item ? 1 : 0;
}

int tqUserData::findArray(const char* name, AttrType type, int& n, void* out) const {
  const tqUserDataItem* const item = find(name);
  const bool found = item && item->type() == type;
  n = found && out ? std::min(std::max(n, 0), item->numElements()) : 0;
  int width;
  if (n > 0) {
    item->value_.scalarType(&width);
    std::memcpy(out, item->value_.pvalue(),
                static_cast<std::size_t>(n) * static_cast<std::size_t>(width));
  }
  return found ? 1 : 0;
}

int tqUserData::findUserData(const char* name, int& n, int* out) const {
  return findArray(name, ATTR_INT_ARRAY, n, out);
}

int tqUserData::findUserData(const char* name, int& n, unsigned int* out) const {
  return findArray(name, ATTR_UINT_ARRAY, n, out);
}

int tqUserData::findUserData(const char* name, int& n, float* out) const {
  return findArray(name, ATTR_FLOAT_ARRAY, n, out);
}

int tqUserData::findUserData(const char* name, int& n, double* out) const {
  return findArray(name, ATTR_DOUBLE_ARRAY, n, out);
}

int tqUserData::findUserData(const char* name, int& n, double (*out)[3]) const {
  return findArray(name, ATTR_POINT_ARRAY, n, out);
}

// Kept: a single point has another type and is not found.
int tqUserData::findUserData(const char* name, double* xyz) const {
  int n = 1;
  findArray(name, ATTR_POINT_ARRAY, n, xyz);
  return n;
}

int tqUserData::findUserData(const char* name, int& n, char* buffer) const {
  const tqUserDataItem* const item = find(name);
  const char* text = nullptr;
  if (!buffer || n < 1 || !item || !item->value(text)) {
    n = 0;
    return 0;
  }
  std::strncpy(buffer, text, static_cast<std::size_t>(n - 1));
  buffer[n - 1] = '\0';
  n = static_cast<int>(std::strlen(buffer)) + 1;
  return 0;  // Kept: n tells.
}

int tqUserData::findUserDataString(const char* name, char* buffer, int size) const {
  tqUserDataItem* const item = find(name);
  if (item)
    item->writeValueToString(buffer, size);
  else if (buffer && size > 0)
    buffer[0] = '\0';
  return item ? 1 : 0;
}

void tqUserData::removeUserData(const char* name) {
  const tqUserDataItem* const item = first(name, false);
  if (!item) return;
  removeFirst(item);
  if (!isMember(item)) delete item;  // the same item may stand in the list again
}

void tqUserData::clearUserData() {
  std::sort(begin(), end(), std::less<>());
  tqUserDataItem* const* const last = std::unique(begin(), end());
  for (tqUserDataItem* const* slot = begin(); slot != last; ++slot) delete *slot;
  remove_all();
}

AttrType tqUserData::typeOf(const tqUserDataItem* item, int& n) {
  n = item ? item->numElements() : 0;
  return item ? item->type() : ATTR_NONE;
}

UDCopyOpt tqUserData::copyOption(int i) const {
  if (!at(i)) return UD_COPY_NO_ATTRIBUTE;
  const tqUDBehavior* const options = behavior(i);
  return options ? static_cast<UDCopyOpt>(options->copyOption) : UD_COPY_DEFAULT;
}

int tqUserData::setCopyOption(int i, UDCopyOpt option) {
  tqUDBehavior* const options = behavior(i);
  if (options) options->copyOption = option;
  return options ? 1 : 0;
}
