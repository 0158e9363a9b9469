#include <algorithm>
#include <map>
#include <utility>

#include <quillmate/codedb/collation.h>
#include <quillmate/project/declaration_tree.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::project {
namespace {

using symbols::SymbolId;
using symbols::SymbolKind;

/// In the order of the tree.
constexpr SymbolKind kShown[] = {SymbolKind::kConstant, SymbolKind::kVariable, SymbolKind::kType,
                                 SymbolKind::kEnum,     SymbolKind::kEvent,    SymbolKind::kControl};

bool IsMember(SymbolKind kind) { return kind == SymbolKind::kTypeMember || kind == SymbolKind::kEnumMember; }

class Maker {
 public:
  Maker(const Understanding& understanding, const navigation::ProjectTree& base, const std::vector<codedb::Line>& lines)
      : known_(understanding), index_(understanding.Index()), base_(base), baseLines_(lines) {}

  DeclarationTree Make() {
    AddModules();
    AddRoutines();
    for (int node = 0, end = Size(); node < end; ++node) {
      if (made_.tree.IsModule(node)) AddDeclarations(node);
    }
    return std::move(made_);
  }

 private:
  int Size() const { return static_cast<int>(made_.tree.nodes.size()); }

  void Fill(codedb::Line line, SymbolId declaration) {
    made_.lines.resize(made_.tree.nodes.size(), line);
    made_.declarations.resize(made_.tree.nodes.size(), declaration);
  }

  symbols::Index ModuleOf(const navigation::TreeNode& node) const {
    return known_.ModuleOf(codedb::ViewOf(node.module));
  }

  /// Modules below their projects where there are several; those that nothing is known of come at the top.
  void AddModules() {
    const bool several = index_.Projects().size() > 1;
    std::map<symbols::Index, int> projects;
    for (const navigation::TreeNode& node : base_.nodes) {
      const symbols::Index module = node.parent < 0 && several ? ModuleOf(node) : symbols::kNone;
      if (module != symbols::kNone) projects.emplace(index_.Modules()[module].project, -1);
    }
    for (auto& [project, node] : projects) {
      const std::string name = text::CodeFromUtf8(index_.Projects()[project].name);
      node = made_.tree.AddPlain({{}, {}, name, "Fahne", -1});
    }
    for (const navigation::TreeNode& node : base_.nodes) {
      if (node.parent >= 0) continue;
      const symbols::Index module = several ? ModuleOf(node) : symbols::kNone;
      navigation::TreeNode copy = node;
      copy.parent = module == symbols::kNone ? -1 : projects.at(index_.Modules()[module].project);
      made_.tree.Add(std::move(copy));
    }
    Fill({}, symbols::kNone);
  }

  void AddRoutines() {
    for (std::size_t i = 0; i < base_.nodes.size(); ++i) {
      const navigation::TreeNode& node = base_.nodes[i];
      if (node.parent < 0) continue;
      navigation::TreeNode copy = node;
      copy.parent = made_.tree.Find(node.module);
      made_.tree.Add(std::move(copy));
      Fill(i < baseLines_.size() ? baseLines_[i] : codedb::Line{}, symbols::kNone);
    }
  }

  int AddDeclaration(SymbolId symbol, codedb::ModuleNumber module, int parent) {
    const symbols::Symbol& of = index_.SymbolAt(symbol);
    std::string name = text::CodeFromUtf8(std::string(index_.Name(symbol)));
    const int node = made_.tree.AddPlain({module, {}, std::move(name), {}, parent});
    Fill({static_cast<std::int32_t>(of.line == 0 ? 0 : known_.ShownLine(of.module, of.line))}, symbol);
    return node;
  }

  void AddDeclarations(int parent) {
    const codedb::ModuleNumber number = made_.tree.nodes[static_cast<std::size_t>(parent)].module;
    const symbols::Index module = known_.ModuleOf(codedb::ViewOf(number));
    if (module == symbols::kNone) return;
    std::vector<std::pair<const SymbolKind*, SymbolId>> shown;
    std::vector<SymbolId> members;
    const symbols::ModuleInfo& info = index_.Modules()[module];
    for (SymbolId symbol = info.symbol + 1; symbol < info.endSymbol; ++symbol) {
      const symbols::Symbol& of = index_.SymbolAt(symbol);
      const SymbolKind* kind = std::ranges::find(kShown, of.kind);
      if (of.parent == symbols::kNone && kind != std::end(kShown)) shown.emplace_back(kind, symbol);
      if (IsMember(of.kind)) members.push_back(symbol);
    }
    std::ranges::stable_sort(shown, [this](const auto& a, const auto& b) {
      if (a.first != b.first) return a.first < b.first;
      return codedb::CompareText(index_.Name(a.second), index_.Name(b.second)) < 0;
    });
    std::map<SymbolId, int> nodes;
    for (const auto& [kind, symbol] : shown) nodes[symbol] = AddDeclaration(symbol, number, parent);
    // Members stay in the order of the source: it is what they mean, more often than not.
    for (const SymbolId member : members) {
      const auto owner = nodes.find(index_.SymbolAt(member).parent);
      if (owner != nodes.end()) AddDeclaration(member, number, owner->second);
    }
  }

  const Understanding& known_;
  const symbols::ReferenceIndex& index_;
  const navigation::ProjectTree& base_;
  const std::vector<codedb::Line>& baseLines_;
  DeclarationTree made_;
};

}  // namespace

DeclarationTree MakeDeclarationTree(const Understanding& understanding, const navigation::ProjectTree& base,
                                    const std::vector<codedb::Line>& lines) {
  return Maker(understanding, base, lines).Make();
}

}  // namespace quillmate::project
