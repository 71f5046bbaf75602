#include "peers.h"

#include "Assembly.h"

#include <strings.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#if __has_include(<gemmi/pdb.hpp>)
#include <gemmi/pdb.hpp>
#include <gemmi/version.hpp>
#define TQ_PEER_GEMMI 1
static const bool gemmiNoted = noteVersion("gemmi", GEMMI_VERSION);
#endif

/// \file molreport_bench.cpp
/// What molreport does with a large structure: reads it, and builds an assembly of moved copies.
///
/// The structure is made up, of the size and shape of a virus core: 49,061 atoms in 15 chains. With
/// the environment variable TQ_BENCH_STRUCTURE, a file in PDB format is taken instead, and its name
/// is the size in the report; it should have one model, no faults, and element columns.

namespace {

// What a file says of an atom.
struct PlainAtom {
  double xyz[3];
  int serial;
  int residueNumber;
  float occupancy;
  float temperatureFactor;
  char name[5];
  char residueName[5];
  char element[3];
  char chain;
  char location;
  char insertionCode;
};

// Numbers are as near as they are when a reader rounds more than once.
bool isNear(double a, double b) { return std::abs(a - b) < 1e-5; }

bool operator==(const PlainAtom& a, const PlainAtom& b) {
  return std::equal(a.xyz, a.xyz + 3, b.xyz, isNear) && a.serial == b.serial &&
         a.residueNumber == b.residueNumber && isNear(a.occupancy, b.occupancy) &&
         isNear(a.temperatureFactor, b.temperatureFactor) && !std::strcmp(a.name, b.name) &&
         !std::strcmp(a.residueName, b.residueName) && !strcasecmp(a.element, b.element) &&
         a.chain == b.chain && a.location == b.location && a.insertionCode == b.insertionCode;
}

template <std::size_t n> void put(char (&to)[n], std::string_view text) {
  to[text.copy(to, n - 1)] = '\0';
}

// --- The file

struct Acid {
  const char* name;
  std::vector<const char*> atoms;  // in their four columns
};
const std::array<Acid, 6> acids = {{
    {"ALA", {" N  ", " CA ", " C  ", " O  ", " CB "}},
    {"LEU", {" N  ", " CA ", " C  ", " O  ", " CB ", " CG ", " CD1", " CD2"}},
    {"ARG",
     {" N  ", " CA ", " C  ", " O  ", " CB ", " CG ", " CD ", " NE ", " CZ ", " NH1", " NH2"}},
    {"ASP", {" N  ", " CA ", " C  ", " O  ", " CB ", " CG ", " OD1", " OD2"}},
    {"THR", {" N  ", " CA ", " C  ", " O  ", " CB ", " OG1", " CG2"}},
    {"MET", {" N  ", " CA ", " C  ", " O  ", " CB ", " CG ", " SD ", " CE "}},
}};

// Chain by chain residues of the acids, each chain with its number of atoms; the last residue of a
// chain may lack some.
void writeStructure(std::FILE* file) {
  const struct {
    const char* ids;
    int atoms;
  } chains[] = {{"A", 6824}, {"B", 7150}, {"CDEFGHIJPQRST", 2699}};
  std::mt19937 random(6);
  const auto between = [&](int first, int last) {
    return std::uniform_int_distribution<int>(first, last)(random);
  };
  const auto coordinate = [&] { return between(-99999, 399999) / 1000.0; };
  int serial = 0;
  for (const auto& [ids, atoms] : chains)
    for (const char* id = ids; *id; ++id) {
      const Acid* acid = nullptr;
      int number = 0, left = atoms;
      while (left > 0) {
        acid = &acids[static_cast<std::size_t>(between(0, 5))];
        ++number;
        for (const char* name : acid->atoms) {
          if (left == 0) break;
          --left;
          const double x = coordinate(), y = coordinate(), z = coordinate();
          std::fprintf(file,
                       "ATOM  %5d %s %s %c%4d    %8.3f%8.3f%8.3f  1.00%6.2f          %2.1s  \n",
                       ++serial, name, acid->name, *id, number, x, y, z, between(200, 9999) / 100.0,
                       name + 1);
        }
      }
      std::fprintf(file, "TER   %5d      %s %c%4d\n", ++serial, acid->name, *id, number);
    }
  std::fputs("END\n", file);
}

const char* givenFile() { return std::getenv("TQ_BENCH_STRUCTURE"); }

// The given file, or one that is written for this run and removed at its end.
class StructureFile {
public:
  StructureFile() : path_(givenFile() ? givenFile() : "") {
    if (!path_.empty()) return;
    path_ = (std::filesystem::temp_directory_path() / "tq_bench_XXXXXX").string();
    const int descriptor = mkstemp(path_.data());
    std::FILE* const file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
    if (!file) return;
    isOurs_ = true;
    writeStructure(file);
    std::fclose(file);
  }
  StructureFile(const StructureFile&) = delete;
  StructureFile& operator=(const StructureFile&) = delete;
  ~StructureFile() {
    if (isOurs_) std::remove(path_.c_str());
  }
  const std::string& path() const { return path_; }

private:
  std::string path_;
  bool isOurs_ = false;
};

const std::string& structurePath() {
  static const StructureFile file;
  return file.path();
}

// --- The peers: what reads a structure, and what shows its atoms in file order.

struct Tq {
  static std::unique_ptr<molreport::Structure> read(const std::string& path) {
    return molreport::readStructure(path).structure;
  }
  static std::vector<PlainAtom> atoms(const std::unique_ptr<molreport::Structure>& structure) {
    return structure ? atoms(*structure->models()[0]) : std::vector<PlainAtom>();
  }
  static std::vector<PlainAtom> atoms(const molreport::Model& model) {
    std::vector<PlainAtom> all;
    molreport::forEachAtom(model,
                           [&](const molreport::Chain& chain, const molreport::Residue& residue,
                               const molreport::Atom& atom) {
                             PlainAtom& plain = all.emplace_back();
                             atom.position().XYZ(plain.xyz[0], plain.xyz[1], plain.xyz[2]);
                             plain.serial = atom.serial();
                             plain.residueNumber = residue.number();
                             plain.occupancy = atom.occupancy();
                             plain.temperatureFactor = atom.temperatureFactor();
                             put(plain.name, atom.name().text());
                             put(plain.residueName, residue.name().text());
                             put(plain.element, atom.element().text());
                             plain.chain = chain.id();
                             plain.location = atom.location();
                             plain.insertionCode = residue.insertionCode();
                           });
    return all;
  }
};

#ifdef TQ_PEER_GEMMI
struct Gemmi {
  static gemmi::Structure read(const std::string& path) { return gemmi::read_pdb_file(path); }
  static std::vector<PlainAtom> atoms(const gemmi::Structure& structure) {
    std::vector<PlainAtom> all;
    for (const gemmi::Chain& chain : structure.models[0].chains)
      for (const gemmi::Residue& residue : chain.residues)
        for (const gemmi::Atom& atom : residue.atoms) {
          PlainAtom& plain = all.emplace_back();
          plain.xyz[0] = atom.pos.x;
          plain.xyz[1] = atom.pos.y;
          plain.xyz[2] = atom.pos.z;
          plain.serial = atom.serial;
          plain.residueNumber = *residue.seqid.num;
          plain.occupancy = atom.occ;
          plain.temperatureFactor = atom.b_iso;
          put(plain.name, atom.name);
          put(plain.residueName, residue.name);
          put(plain.element, atom.element.name());
          plain.chain = chain.name.empty() ? ' ' : chain.name[0];
          plain.location = atom.altloc_or(' ');
          plain.insertionCode = residue.seqid.icode;
        }
    return all;
  }
};
#endif

// The columns as they stand; sets the answers that the readers are to give.
struct Columns {
  static std::vector<PlainAtom> read(const std::string& path) {
    std::vector<PlainAtom> all;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line) && line.compare(0, 6, "ENDMDL") != 0;) {
      if (line.compare(0, 6, "ATOM  ") != 0 && line.compare(0, 6, "HETATM") != 0) continue;
      line.resize(80, ' ');
      PlainAtom& plain = all.emplace_back();
      for (std::size_t i = 0; i < 3; ++i)
        plain.xyz[i] = std::atof(line.substr(30 + 8 * i, 8).c_str());
      plain.serial = std::atoi(line.substr(6, 5).c_str());
      plain.residueNumber = std::atoi(line.substr(22, 4).c_str());
      plain.occupancy = static_cast<float>(std::atof(line.substr(54, 6).c_str()));
      plain.temperatureFactor = static_cast<float>(std::atof(line.substr(60, 6).c_str()));
      put(plain.name, word(line.substr(12, 4)));
      put(plain.residueName, word(line.substr(17, 4)));
      put(plain.element, word(line.substr(76, 2)));
      plain.chain = line[21];
      plain.location = line[16];
      plain.insertionCode = line[26];
    }
    return all;
  }

private:
  static std::string word(const std::string& columns) {
    const std::size_t first = std::min(columns.find_first_not_of(' '), columns.size());
    return columns.substr(first, columns.find_last_not_of(' ') + 1 - first);
  }
};

// By serial: a reader may bring together what stands apart in the file.
std::vector<PlainAtom> inOrder(std::vector<PlainAtom> atoms) {
  std::stable_sort(atoms.begin(), atoms.end(),
                   [](const PlainAtom& a, const PlainAtom& b) { return a.serial < b.serial; });
  return atoms;
}

// Opening a structure, with all that its atom lines say. Closing it is not part of that.
template <class Peer> void ReadStructure(benchmark::State& state) {
  const std::string& path = structurePath();
  const std::vector<PlainAtom> atoms = inOrder(Columns::read(path));
  if (atoms.empty() || inOrder(Peer::atoms(Peer::read(path))) != atoms)
    return state.SkipWithError("wrong atoms");
  for (auto _ : state) {
    auto structure = Peer::read(path);
    benchmark::DoNotOptimize(structure);
    state.PauseTiming();
    structure = {};
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(atoms.size()));
}

// --- Copies

// Where the points of a copy go: x' = rotation x + shift.
struct Motion {
  double rotation[3][3];
  double shift[3];

  void move(double (&xyz)[3]) const {
    const double x = xyz[0], y = xyz[1], z = xyz[2];
    for (int i = 0; i < 3; ++i)
      xyz[i] = rotation[i][0] * x + rotation[i][1] * y + rotation[i][2] * z + shift[i];
  }
};

// As many as an icosahedron has.
std::vector<Motion> motions() {
  constexpr int count = 60;
  std::vector<Motion> all;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * 3.14159265358979 * i / count;
    const double c = std::cos(angle), s = std::sin(angle);
    all.push_back({{{c, -s, 0}, {s, c, 0}, {0, 0, 1}}, {1.0 * i, 2.0 * i, 3.0 * i}});
  }
  return all;
}

// A copy of the tree, identities and attributes included.
struct TqCopies {
  explicit TqCopies(const std::string& path) : structure(Tq::read(path)) {
    const molreport::Model& model = *structure->models()[0];
    for (const molreport::Chain* chain : model.chains()) chains += chain->id();
  }
  std::unique_ptr<molreport::Model> place(const Motion& motion) const {
    tqMatrix3x3 rows;
    for (int i = 0; i < 3; ++i)
      rows.setRow(i, {motion.rotation[i][0], motion.rotation[i][1], motion.rotation[i][2]});
    const tqPoint3D shift(motion.shift);
    const molreport::Placement placement = {1, {rows.t(), shift}, chains};
    return std::unique_ptr<molreport::Model>(
        molreport::place(placement, *structure->models()[0], 1));
  }
  static std::vector<PlainAtom> atoms(const std::unique_ptr<molreport::Model>& model) {
    return Tq::atoms(*model);
  }

  std::unique_ptr<molreport::Structure> structure;
  std::string chains;
};

// What it costs without either: an array of atoms.
struct PlainCopies {
  explicit PlainCopies(const std::string& path) : structure(Columns::read(path)) {}
  std::vector<PlainAtom> place(const Motion& motion) const {
    std::vector<PlainAtom> copy = structure;
    for (PlainAtom& atom : copy) motion.move(atom.xyz);
    return copy;
  }
  static const std::vector<PlainAtom>& atoms(const std::vector<PlainAtom>& copy) { return copy; }

  std::vector<PlainAtom> structure;
};

// Building a virus: a moved copy for each motion, gone when the next one is made, as molreport has
// written it by then.
template <class Peer> void CopyAndMove(benchmark::State& state) {
  std::vector<PlainAtom> atoms = inOrder(Columns::read(structurePath()));
  if (atoms.empty()) return state.SkipWithError("no atoms");
  const Peer peer(structurePath());
  const std::vector<Motion> all = motions();
  for (PlainAtom& atom : atoms) all[7].move(atom.xyz);
  if (inOrder(Peer::atoms(peer.place(all[7]))) != atoms) return state.SkipWithError("wrong copy");
  for (auto _ : state)
    for (const Motion& motion : all) {
      const auto copy = peer.place(motion);
      benchmark::DoNotOptimize(&copy);
      benchmark::ClobberMemory();
    }
  state.SetItemsProcessed(state.iterations() *
                          static_cast<std::int64_t>(all.size() * atoms.size()));
}

std::string size() {
  return givenFile() ? std::filesystem::path(givenFile()).filename().string() : "49061";
}

BENCHMARK_TEMPLATE(ReadStructure, Tq)->Name("ReadStructure/tq/" + size());
#ifdef TQ_PEER_GEMMI
BENCHMARK_TEMPLATE(ReadStructure, Gemmi)->Name("ReadStructure/gemmi/" + size());
#endif
BENCHMARK_TEMPLATE(CopyAndMove, TqCopies)->Name("CopyAndMove/tq/" + size());
BENCHMARK_TEMPLATE(CopyAndMove, PlainCopies)->Name("CopyAndMove/plain structs/" + size());

}  // namespace

BENCHMARK_MAIN();
