#include "peers.h"

#include "fortran_io.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#if __has_include(<fast_float/fast_float.h>)
#include <fast_float/fast_float.h>
#endif
#ifdef TQ_PEER_GFORTRAN
static const bool gfortranNoted = noteVersion("gfortran", TQ_PEER_GFORTRAN);
#endif

namespace {

// The eight fields of an atom line that a structure reader cannot do without.
struct Atom {
  int serial;
  char name[5];
  char residue[4];
  int residueNumber;
  double x, y, z, factor;
};

bool operator==(const Atom& a, const Atom& b) {
  return a.serial == b.serial && !std::strcmp(a.name, b.name) &&
         !std::strcmp(a.residue, b.residue) && a.residueNumber == b.residueNumber && a.x == b.x &&
         a.y == b.y && a.z == b.z && a.factor == b.factor;
}

// Lines as structure files hold them, one NUL-terminated text each, and the atoms they spell.
struct Lines {
  std::vector<std::array<char, 84>> texts;
  std::vector<Atom> atoms;

  explicit Lines(std::size_t count) : texts(count), atoms(count) {
    const char* const names[] = {" N  ", " CA ", " C  ", " O  ", " CB ", " CG1", "HD21"};
    const char* const residues[] = {"ALA", "GLY", "LEU", "TRP", "SER"};
    std::mt19937 random(1);
    const auto between = [&](int first, int last) {
      return std::uniform_int_distribution<int>(first, last)(random);
    };
    for (std::size_t i = 0; i < count; ++i) {
      Atom& atom = atoms[i];
      atom.serial = static_cast<int>(i % 99999) + 1;
      std::strcpy(atom.name, names[between(0, 6)]);
      std::strcpy(atom.residue, residues[between(0, 4)]);
      atom.residueNumber = static_cast<int>(i / 8 % 9999) + 1;
      atom.x = between(-99999, 199999) / 1000.0;
      atom.y = between(-99999, 199999) / 1000.0;
      atom.z = between(-99999, 199999) / 1000.0;
      atom.factor = between(200, 9999) / 100.0;
      std::snprintf(texts[i].data(), texts[i].size(),
                    "ATOM  %5d %4s %3s A%4d    %8.3f%8.3f%8.3f  1.00%6.2f          %2.1s  ",
                    atom.serial, atom.name, atom.residue, atom.residueNumber, atom.x, atom.y,
                    atom.z, atom.factor, atom.name + 1);
    }
  }
};

struct Tq {
  static void read(const char* line, Atom& atom) {
    fortran_sscanf(line, "6x,i5,1x,a4,1x,a3,2x,i4,4x,3f8,6x,f6", 8, &atom.serial, atom.name,
                   atom.residue, &atom.residueNumber, &atom.x, &atom.y, &atom.z, &atom.factor);
  }
};

// Hand-cut fields: the columns stand in the program, and `Convert` reads one number.
template <class Convert> struct HandCut {
  static void read(const char* line, Atom& atom) {
    Convert::number(line + 6, 5, atom.serial);
    std::memcpy(atom.name, line + 12, 4);
    atom.name[4] = '\0';
    std::memcpy(atom.residue, line + 17, 3);
    atom.residue[3] = '\0';
    Convert::number(line + 22, 4, atom.residueNumber);
    Convert::number(line + 30, 8, atom.x);
    Convert::number(line + 38, 8, atom.y);
    Convert::number(line + 46, 8, atom.z);
    Convert::number(line + 60, 6, atom.factor);
  }
};

const char* skipBlanks(const char* first, const char* last) {
  while (first != last && *first == ' ') ++first;
  return first;
}

struct FromChars {
  template <class T> static void number(const char* first, int width, T& value) {
    std::from_chars(skipBlanks(first, first + width), first + width, value);
  }
};

struct CLibrary {
  static void number(const char* first, int width, int& value) {
    value = static_cast<int>(std::strtol(cut(first, width).data(), nullptr, 10));
  }
  static void number(const char* first, int width, double& value) {
    value = std::strtod(cut(first, width).data(), nullptr);
  }

private:
  // The field by itself: the C library reads up to a character that cannot belong to the number.
  static std::array<char, 16> cut(const char* first, int width) {
    std::array<char, 16> field;
    std::memcpy(field.data(), first, static_cast<std::size_t>(width));
    field[static_cast<std::size_t>(width)] = '\0';
    return field;
  }
};

struct OneSscanf {
  static void read(const char* line, Atom& atom) {
    std::sscanf(line, "%*6c%5d%*c%4c%*c%3c%*2c%4d%*4c%8lf%8lf%8lf%*6c%6lf", &atom.serial, atom.name,
                atom.residue, &atom.residueNumber, &atom.x, &atom.y, &atom.z, &atom.factor);
    atom.name[4] = atom.residue[3] = '\0';
  }
};

#ifdef TQ_PEER_GFORTRAN
extern "C" void read_atom_line(const char* line, int* serial, char* name, char* residue,
                               int* number, double* x, double* y, double* z, double* factor);

struct GfortranRead {
  static void read(const char* line, Atom& atom) {
    read_atom_line(line, &atom.serial, atom.name, atom.residue, &atom.residueNumber, &atom.x,
                   &atom.y, &atom.z, &atom.factor);
    atom.name[4] = atom.residue[3] = '\0';
  }
};
#endif

#if __has_include(<fast_float/fast_float.h>)
struct FastFloat {
  static void number(const char* first, int width, int& value) {
    FromChars::number(first, width, value);
  }
  static void number(const char* first, int width, double& value) {
    fast_float::from_chars(skipBlanks(first, first + width), first + width, value);
  }
};
#endif

// Opening a structure: the eight fields of every atom line, in file order.
template <class Peer> void ReadAtomLine(benchmark::State& state) {
  const Lines lines(static_cast<std::size_t>(state.range(0)));
  for (std::size_t i = 0; i < lines.texts.size(); ++i) {
    Atom atom = {};
    Peer::read(lines.texts[i].data(), atom);
    if (!(atom == lines.atoms[i])) return state.SkipWithError("wrong value");
  }
  Atom atom = {};
  for (auto _ : state)
    for (const auto& text : lines.texts) {
      Peer::read(text.data(), atom);
      benchmark::DoNotOptimize(atom);
    }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// bench/report.py takes the names apart: job, peer, lines.
constexpr int million = 1000000;
BENCHMARK_TEMPLATE(ReadAtomLine, Tq)->Name("ReadAtomLine/tq")->Arg(million);
#if __has_include(<fast_float/fast_float.h>)
BENCHMARK_TEMPLATE(ReadAtomLine, HandCut<FastFloat>)->Name("ReadAtomLine/fast_float")->Arg(million);
#endif
BENCHMARK_TEMPLATE(ReadAtomLine, HandCut<FromChars>)->Name("ReadAtomLine/from_chars")->Arg(million);
BENCHMARK_TEMPLATE(ReadAtomLine, HandCut<CLibrary>)->Name("ReadAtomLine/strtod")->Arg(million);
BENCHMARK_TEMPLATE(ReadAtomLine, OneSscanf)->Name("ReadAtomLine/sscanf")->Arg(million);
#ifdef TQ_PEER_GFORTRAN
BENCHMARK_TEMPLATE(ReadAtomLine, GfortranRead)->Name("ReadAtomLine/gfortran READ")->Arg(million);
#endif

}  // namespace

BENCHMARK_MAIN();
