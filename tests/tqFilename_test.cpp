#include "tqFilename.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(Filename, ComesApartAndTakesAnotherExtension) {
  for (const auto& [text, directory, name, extension, replaced] :
       {std::tuple("a/b/c.txt", "a/b/", "c", "txt", "a/b/c.o"),
        {"c", "", "c", "", "c.o"},
        {"a.d/c.tar.gz", "a.d/", "c.tar", "gz", "a.d/c.tar.o"},
        {"a.d/c", "a.d/", "c", "", "a.d/c.o"},
        {"dir/.profile", "dir/", "", "profile", "dir/.o"},
        {"a/b/", "a/b/", "", "", "a/b/.o"},
        {".rc", "", "", "rc", ".o"},
        {"a.b/", "a.b/", "", "", "a.b/.o"},
        {"", "", "", "", ".o"},
        {"a\\b:c.x y", "", "a\\b:c", "x y", "a\\b:c.o"},
        {"/", "/", "", "", "/.o"}}) {
    SCOPED_TRACE(text);
    tqFilename path(text);
    EXPECT_TRUE(path.directory() == directory) << path.directory().data;
    EXPECT_TRUE(path.name() == name) << path.name().data;
    EXPECT_TRUE(path.extension() == extension) << path.extension().data;
    EXPECT_EQ(&path.replace_extension("o"), &path);
    EXPECT_STREQ(path.data, replaced);
  }
}

TEST(Filename, KeptDotAtTheEndGivesTheWholePathAsExtension) {
  EXPECT_TRUE(tqFilename("d/file.").extension() == "d/file.");
  EXPECT_TRUE(tqFilename("d/file.").name() == "file");
}

TEST(Filename, TakesAnEmptyExtensionAndItsOwnName) {
  tqFilename path = "x.c";
  EXPECT_STREQ(path.replace_extension(tqFilename()).data, "x.");
  EXPECT_STREQ(path.replace_extension(path).data, "x.x.");
  path.set_to_substr(0, 3);
  EXPECT_STREQ(path.replace_extension("pdb").data, "x.pdb");
}

}  // namespace
