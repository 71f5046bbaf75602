#include "Attributes.h"

#include "Selection.h"
#include "UserData.h"

#include <fmt/format.h>

namespace molreport {

namespace {

/// A node that is selected, and how it is shown.
struct Selected {
  const Model* model;
  std::string name;
  tqTreeNode* node;
};

std::vector<Selected> nodesOf(const Structure& structure, const Selection& selection) {
  std::vector<Selected> nodes;
  for (const Model* model : structure.models())
    for (const Chain* chain : model->chains()) {
      if (!selection.matches(*chain)) continue;
      for (Residue* residue : chain->residues()) {
        if (!selection.matches(*residue)) continue;
        if (selection.ofResidues)
          nodes.push_back({model, selectionOf(*chain, *residue), residue});
        else
          for (Atom* atom : residue->atoms())
            if (selection.matches(*atom)) nodes.push_back({model, selectionOf(*atom), atom});
      }
    }
  return nodes;
}

// The value as text, in full; `findUserDataString` cuts at the size of the buffer.
std::string textOf(const tqUserData& attributes, const char* name) {
  constexpr int longestElement = 80;
  int count = 0;
  const AttrType type = attributes.type(name, count);
  const int size = (type == ATTR_STRING ? count : count * longestElement) + 1;
  std::string text(static_cast<std::size_t>(size), '\0');
  attributes.findUserDataString(name, text.data(), size);
  text.resize(text.find('\0'));
  return text;
}

// The atoms that an attribute refers to, as " (A/4/SG A/5/N)"; empty when it refers to none.
std::string referencesOf(const tqUserData& attributes, const char* name) {
  int count = 0;
  if (attributes.type(name, count) != ATTR_UINT_ARRAY) return {};
  std::vector<unsigned> oids(static_cast<std::size_t>(count));
  attributes.findUserData(name, count, oids.data());
  std::string text;
  for (const unsigned oid : oids) {
    const tqBase* const object = tqBase::validated(oid, 1);
    const bool isAtom = object && object->isA(Atom::tableId);
    text += text.empty() ? " (" : " ";
    text += isAtom ? selectionOf(*static_cast<const Atom*>(object)) : "-";
  }
  return text.empty() ? text : text + ")";
}

void printNode(std::FILE* out, const Selected& node) {
  const tqUserData* const attributes = static_cast<const tqTreeNode*>(node.node)->userData();
  if (!attributes || attributes->count() == 0)
    fmt::print(out, "  {:>5}  {:<14}  (none)\n", node.model->number(), node.name);
  for (int i = 0; attributes && i < attributes->count(); ++i) {
    const char* const name = attributes->name(i);
    fmt::print(out, "  {:>5}  {:<14}  {:<12}  {}{}\n", node.model->number(), node.name, name,
               textOf(*attributes, name), referencesOf(*attributes, name));
  }
}

}  // namespace

std::string printAttributes(std::FILE* out, const Structure& structure,
                            const std::string& selection,
                            const std::vector<std::string>& settings) {
  Selection selected;
  std::string fault = selected.parse(selection);
  if (!fault.empty()) return fault;
  const std::vector<Selected> nodes = nodesOf(structure, selected);
  if (nodes.empty()) return fmt::format("nothing matches {}", selection);

  for (const std::string& setting : settings) {
    const std::size_t equals = setting.find('=');
    if (equals == 0 || equals == std::string::npos)
      return fmt::format("\"{}\" is not of the form NAME=VALUE", setting);
    for (const Selected& node : nodes)
      node.node->userData()->addUserDataString(setting.substr(0, equals).c_str(),
                                               setting.c_str() + equals + 1);
  }
  fmt::print(out, "  model  {:<14}  {:<12}  value\n", selected.ofResidues ? "residue" : "atom",
             "attribute");
  for (const Selected& node : nodes) printNode(out, node);
  return {};
}

}  // namespace molreport
