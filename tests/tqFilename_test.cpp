#include "tqFilename.h"

#include <gtest/gtest.h>

namespace {

// Directory, name, extension and the path with the extension "o".
std::string parts(tqFilename path) {
  std::string all;
  for (const tqFilename& part : {path.directory(), path.name(), path.extension()})
    all += std::string(part.data ? part.data : "") + " | ";
  return all + path.replace_extension("o").data;
}

TEST(Filename, ComesApartAndTakesAnotherExtension) {
  for (const auto& [path, expected] : {std::pair("a/b/c.txt", "a/b/ | c | txt | a/b/c.o"),
                                       {"c", " | c |  | c.o"},
                                       {"a.d/c.tar.gz", "a.d/ | c.tar | gz | a.d/c.tar.o"},
                                       {"a.d/c", "a.d/ | c |  | a.d/c.o"},
                                       {"dir/.profile", "dir/ |  | profile | dir/.o"},
                                       {".rc", " |  | rc | .o"},
                                       {"a/b/", "a/b/ |  |  | a/b/.o"},
                                       {"/", "/ |  |  | /.o"},
                                       {"", " |  |  | .o"}})
    EXPECT_EQ(parts(path), expected);
}

TEST(Filename, KeptDotAtTheEndGivesTheWholePathAsExtension) {
  EXPECT_EQ(parts("d/file."), "d/ | file | d/file. | d/file.o");
}

TEST(Filename, TakesAnEmptyExtensionAndItsOwnName) {
  tqFilename path = "x.c";
  EXPECT_STREQ(path.replace_extension(tqFilename()).data, "x.");
  EXPECT_STREQ(path.replace_extension(path).data, "x.x.");
  path.set_to_substr(0, 3);
  EXPECT_EQ(&path.replace_extension("pdb"), &path);
  EXPECT_STREQ(path.data, "x.pdb");
}

}  // namespace
