#ifndef MOLREPORT_FILES_H
#define MOLREPORT_FILES_H

#include "Reader.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

/// \file molreport_files.h
/// Structure files that the tests write themselves, and what the reader makes of them.

namespace molreport {

/// An atom line with sound fields: columns 1-6, 13-16, 18-27 and the coordinates.
inline std::string atomLine(const std::string& name, const std::string& residue,
                            const tqPoint3D& at, const std::string& record = "ATOM") {
  return fmt::format("{:<6}    1 {:<4} {:<10}   {:8.3f}{:8.3f}{:8.3f}  1.00 10.00\n", record, name,
                     residue, at.x, at.y, at.z);
}

/// The line with other text from a column on, as long as the text is.
inline std::string with(std::string line, int column, const std::string& text) {
  return line.replace(static_cast<std::size_t>(column) - 1, text.size(), text);
}

/// A path in a folder of this process, which goes when the process ends.
inline std::string scratchPath(const std::string& name) {
  static const struct Folder {
    std::string path = fmt::format("{}molreport_test_{}/", testing::TempDir(), getpid());
    Folder() { std::filesystem::create_directory(path); }
    ~Folder() { std::filesystem::remove_all(path); }
  } folder;
  return folder.path + name;
}

inline std::string writeFile(const std::string& name, const std::string& text) {
  const std::string path = scratchPath(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

/// What the reader says and makes of a file with this text.
struct TextReading {
  Reading reading;
  std::string messages;  ///< with FILE in the place of the path
};

inline TextReading readText(const std::string& text) {
  const std::string path = writeFile("input.pdb", text);
  testing::internal::CaptureStderr();
  TextReading result{readStructure(path), {}};
  result.messages = testing::internal::GetCapturedStderr();
  for (std::size_t at; (at = result.messages.find(path)) != std::string::npos;)
    result.messages.replace(at, path.size(), "FILE");
  return result;
}

/// The tree in one line: "1[A[GLY-2(N,CA) SER3(OG.A)]]" for a model, its chain and residues.
inline std::string treeOf(const Structure& structure) {
  std::string text;
  for (const Model* model : structure.models()) {
    text += fmt::format("{}[", model->number());
    for (const Chain* chain : model->chains()) {
      text += fmt::format("{}[", chain->id());
      for (const Residue* residue : chain->residues()) {
        text += std::string(residue->name().text()) + residue->label() + "(";
        for (const Atom* atom : residue->atoms()) {
          text += std::string(atom->name().text());
          if (atom->location() != ' ') text += fmt::format(".{}", atom->location());
          text += ',';
        }
        text.back() = ')';
        text += ' ';
      }
      text.back() = ']';
    }
    text += ']';
  }
  return text;
}

}  // namespace molreport

#endif
