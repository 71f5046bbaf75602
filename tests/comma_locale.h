#ifndef COMMA_LOCALE_H
#define COMMA_LOCALE_H

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

/// Makes a locale with a decimal comma, named "comma", while it lives. It needs `localedef` and its
/// German sources (Debian's packages libc-bin and locales); without them `setlocale` refuses it.
struct CommaLocale {
  CommaLocale() { setenv("LOCPATH", folder.c_str(), 1); }
  ~CommaLocale() { std::filesystem::remove_all(folder); }
  const std::string folder = testing::TempDir() + "tq_locale_" + std::to_string(getpid());
  const std::string make = "localedef -i de_DE -f UTF-8 " + folder + "/comma >/dev/null 2>&1";
  const bool made = std::filesystem::create_directory(folder) && std::system(make.c_str()) == 0;
};

#endif
