// Named, typed attributes: values, text forms, and what happens to references.

#include "Base.h"
#include "UserData.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main() {
  //! [values]
  AttrValue value(3);
  value.setValue("three");  // another kind: the number is gone
  int number = -1;
  const char* text = nullptr;
  const int isNumber = value.value(number);  // 0, and the number is untouched
  const int isText = value.value(text);      // 1
  //! [values]

  //! [text]
  const int numbers[] = {1, 22, 333};
  char room[40];
  std::printf("%s\n", AttrValue(numbers, 3).writeToString(room, sizeof room));  // 1 22 333
  AttrValue(0.1).writeToString(room, sizeof room);  // 0.10000000000000001
  const bool isExact = std::strcmp(room, "0.10000000000000001") == 0;
  //! [text]

  //! [collection]
  tqUserData data;
  data.addUserData("charge", -1);
  data.addUserData("charge", -0.5);  // one attribute, now a double
  const double site[3] = {1.0, 2.0, 3.0};
  data.addUserData("site", site);
  double charge = 0.0;
  if (data.findUserData("charge", charge)) std::printf("charge %g\n", charge);
  for (int i = 0; i < data.count(); ++i) {
    data.findUserDataString(data.name(i), room, sizeof room);
    std::printf("%s = %s\n", data.name(i), room);
  }
  //! [collection]

  //! [from_text]
  data.addUserDataString("site", "4 5.5 -6");    // read as what it is: a point
  data.addUserDataString("note", "4 5.5 -6");    // new, so it becomes the text
  data.addUserDataString("charge", "0x10 etc");  // a double: strtod reads 16
  //! [from_text]
  data.findUserData("charge", charge);

  // A reference is an object identifier; it turns 0 when the object is gone.
  auto* const partner = new tqBase(1);
  data.addUserData("partner", partner->oid());
  delete partner;
  AttrValue reference;
  unsigned oid = 1;
  data.findUserData("partner", reference);
  reference.value(oid);
  std::printf("partner %u after it was destroyed\n", oid);

  const bool isRight = !isNumber && number == -1 && isText && isExact && data.count() == 4 &&
                       charge == 16.0 && oid == 0;
  return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
