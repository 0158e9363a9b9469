#include <algorithm>
#include <memory>

#include "site_lists_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"
#include "site_trees_p.h"

namespace quillmate::output {
namespace {

/// After so many nodes each routine is unfolded only once.
constexpr std::size_t kFullNodes = 20'000;
/// After so many nodes of a tree what calls others is in trees of its own.
constexpr std::size_t kTreeNodes = 1'000;

enum class Fold : std::uint8_t { kOpen, kLeaf, kCycle, kElsewhere, kDeep };

struct Node {
  int routine;
  int depth;
  Fold fold;
};

/// The nodes of all trees, each before those below it.
class Forest {
 public:
  explicit Forest(const SiteContents& site)
      : site_(site), first_(site.model.routines.size(), -1), tree_(first_.size(), -1), above_(first_.size(), false) {
    const int count = static_cast<int>(first_.size());
    for (int i = 0; i < count; ++i) {
      if (IsRoot(i)) Grow(i);
    }
    // What only calls itself in a circle, or was too deep below all roots.
    for (int i = 0; i < count; ++i) {
      if (!Calls(i).empty() && first_[Position(i)] < 0) Grow(i);
    }
  }

  std::vector<Node> nodes;
  std::vector<std::size_t> roots;  ///< positions of the trees' first nodes

  /// The node at which a routine is unfolded first.
  std::size_t FirstNode(int routine) const { return static_cast<std::size_t>(first_[Position(routine)]); }

 private:
  static std::size_t Position(int routine) { return static_cast<std::size_t>(routine); }
  const std::vector<int>& Calls(int routine) const { return site_.calls.Callees(routine); }

  bool IsRoot(int routine) const {
    const std::vector<int>& callers = site_.calls.Callers(routine);
    return !Calls(routine).empty() && std::ranges::all_of(callers, [&](int caller) { return caller == routine; });
  }

  void Grow(int root) {
    const int tree = static_cast<int>(roots.size());
    roots.push_back(nodes.size());
    std::vector<Node> open{{root, 0, Fold::kLeaf}};
    std::vector<int> path;
    while (!open.empty()) {
      Node node = open.back();
      open.pop_back();
      for (; static_cast<int>(path.size()) > node.depth; path.pop_back()) above_[Position(path.back())] = false;
      node.fold = FoldOf(node, tree);
      nodes.push_back(node);
      if (node.fold != Fold::kOpen) continue;
      if (first_[Position(node.routine)] < 0) first_[Position(node.routine)] = static_cast<int>(nodes.size()) - 1;
      tree_[Position(node.routine)] = tree;
      above_[Position(node.routine)] = true;
      path.push_back(node.routine);
      const std::vector<int>& calls = Calls(node.routine);
      for (auto called = calls.rbegin(); called != calls.rend(); ++called) {
        open.push_back({*called, node.depth + 1, Fold::kLeaf});
      }
    }
    for (const int routine : path) above_[Position(routine)] = false;
  }

  Fold FoldOf(const Node& node, int tree) const {
    if (above_[Position(node.routine)]) return Fold::kCycle;
    if (Calls(node.routine).empty()) return Fold::kLeaf;
    if (tree_[Position(node.routine)] == tree) return Fold::kElsewhere;
    if (nodes.size() > kFullNodes && first_[Position(node.routine)] >= 0) return Fold::kElsewhere;
    const bool isLong = nodes.size() - roots.back() >= kTreeNodes;
    return node.depth >= kDeepest || isLong ? Fold::kDeep : Fold::kOpen;
  }

  const SiteContents& site_;
  std::vector<int> first_;  ///< by routine: node at which it is unfolded first
  std::vector<int> tree_;   ///< by routine: the last tree that unfolds it
  std::vector<bool> above_;
};

class TreeList {
 public:
  explicit TreeList(const SiteContents& site) : model_(site.model), forest_(site) {
    constexpr std::size_t kNode = 150;
    std::vector<std::size_t> sizes;
    for (std::size_t root = 0; root < forest_.roots.size(); ++root) sizes.push_back(kNode * (End(root) - First(root)));
    pages_ = DivideList("aufrufe", "Aufrufbäume", sizes, {});
  }

  std::size_t PageCount() const { return pages_.size(); }
  const std::string& File(std::size_t page) const { return pages_[page].file; }

  std::string Page(std::size_t page) const {
    const ListPage& part = pages_[page];
    std::string html = PageHead(model_, part.title, kTreesFile, page > 0);
    if (forest_.roots.empty()) return html.append("<p>Keine Routine ruft eine andere auf.</p>\n").append(kPageEnd);
    AppendListNavigation(html, pages_, page, kTreesFile, "Anfang der Liste");
    html +=
        "<p class=\"note\">Was von jeder Routine aus läuft, die keine andere aufruft, mit allem, was sicher ist. ↻ "
        "ruft "
        "eine Routine auf, in der sie gerade läuft; ↗ steht an anderer Stelle aufgeklappt.</p>\n";
    int module = -1;
    for (std::size_t root = part.first; root < part.last; ++root) {
      const SiteRoutine& routine = model_.Routine(forest_.nodes[First(root)].routine);
      if (routine.module != module) {
        if (module >= 0) html += "</ul>\n";
        module = routine.module;
        html += "<h2>";
        AppendLink(html, model_.Module(module).page, EscapeCode(model_.Module(module).record->name));
        html += "</h2>\n<ul class=\"tree\">\n";
      }
      AppendTree(html, root);
    }
    return html.append("</ul>\n").append(kPageEnd);
  }

 private:
  std::size_t First(std::size_t root) const { return forest_.roots[root]; }
  std::size_t End(std::size_t root) const {
    return root + 1 < forest_.roots.size() ? forest_.roots[root + 1] : forest_.nodes.size();
  }

  void AppendTree(std::string& html, std::size_t root) const {
    int open = 0;
    for (std::size_t i = First(root); i < End(root); ++i) {
      const Node& node = forest_.nodes[i];
      for (; open > node.depth; --open) html += "</ul></details></li>\n";
      AppendNode(html, i, forest_.nodes[First(root)].routine);
      if (node.fold == Fold::kOpen) ++open;
    }
    for (; open > 0; --open) html += "</ul></details></li>\n";
  }

  void AppendNode(std::string& html, std::size_t number, int root) const {
    const Node& node = forest_.nodes[number];
    if (node.fold == Fold::kOpen) {
      html += "<li";
      if (forest_.FirstNode(node.routine) == number) html.append(" id=\"").append(Anchor(node.routine)).append("\"");
      html += node.depth == 0 ? "><details open><summary>" : "><details><summary>";
      AppendName(html, node.routine, root);
      html += "</summary><ul>\n";
      return;
    }
    html += "<li>";
    AppendName(html, node.routine, root);
    if (node.fold == Fold::kCycle) html += " <small title=\"im Kreis\">↻</small>";
    if (node.fold == Fold::kElsewhere || node.fold == Fold::kDeep) {
      html += " <small>";
      AppendLink(html, FileOfNode(forest_.FirstNode(node.routine)) + "#" + Anchor(node.routine), "↗ dort aufgeklappt");
      html += "</small>";
    }
    html += "</li>\n";
  }

  void AppendName(std::string& html, int position, int root) const {
    const SiteRoutine& routine = model_.Routine(position);
    std::string name = EscapeCode(routine.record->name).append(PartText(routine.record->kind));
    if (routine.module != model_.Routine(root).module) {
      name = EscapeCode(model_.ModuleOf(routine).record->name) + "." + name;
    }
    AppendLink(html, RoutineAddress(model_, routine), name);
  }

  std::string Anchor(int position) const {
    const SiteRoutine& routine = model_.Routine(position);
    const std::string& page = model_.ModuleOf(routine).page;
    return "t-" + page.substr(0, page.rfind('.')) + "." + routine.anchor;
  }

  const std::string& FileOfNode(std::size_t node) const {
    const auto next = std::upper_bound(forest_.roots.begin(), forest_.roots.end(), node);
    return pages_[PageOfItem(pages_, static_cast<std::size_t>(next - forest_.roots.begin()) - 1)].file;
  }

  const SiteModel& model_;
  Forest forest_;
  std::vector<ListPage> pages_;
};

/// One picture: rows of names on both sides of the routine's own.
class NeighbourPicture {
 public:
  NeighbourPicture(std::string& html, const SiteModel& model, int routine)
      : html_(html), model_(model), module_(model.Routine(routine).module), routine_(routine) {}

  void Draw(const std::vector<int>& callers, const std::vector<int>& callees) {
    const int rows = static_cast<int>(std::max(Rows(callers), Rows(callees)));
    const int height = rows * kRow + kRow / 2;
    const std::string name = EscapeCode(model_.Routine(routine_).record->name);
    html_.append("<svg class=\"calls\" viewBox=\"0 0 900 ").append(std::to_string(height)).append("\" width=\"900\"");
    html_.append(" height=\"")
        .append(std::to_string(height))
        .append("\" role=\"group\" aria-label=\"Bild: wer ")
        .append(name);
    html_.append(" aufruft und was die Routine aufruft\">\n");
    Lines(callers, height, 290, 340);
    Lines(callees, height, 610, 560);
    html_.append("<rect x=\"340\" y=\"")
        .append(std::to_string(height / 2 - 13))
        .append("\" width=\"220\" height=\"26\"/>");
    html_.append("<text class=\"me\" x=\"450\" y=\"").append(std::to_string(height / 2 + 5)).append("\">");
    html_.append(Cut(model_.Routine(routine_).record->name, kLongestOwn)).append("</text>\n<g class=\"in\">");
    Names(callers, height, 284);
    html_ += "</g>\n<g>";
    Names(callees, height, 616);
    html_ += "</g>\n</svg>\n";
  }

 private:
  static constexpr int kRow = 22;
  static constexpr std::size_t kMostRows = 8;
  static constexpr std::size_t kLongest = 34, kLongestOwn = 26;

  static std::size_t Rows(const std::vector<int>& routines) {
    return std::clamp<std::size_t>(routines.size(), 1, kMostRows);
  }

  /// The middle of a row.
  static int Y(std::size_t row, std::size_t rows, int height) {
    return (height - static_cast<int>(rows) * kRow) / 2 + static_cast<int>(row) * kRow + kRow / 2;
  }

  /// From the names, at `from`, to the box, at `to`.
  void Lines(const std::vector<int>& routines, int height, int from, int to) {
    if (routines.empty()) return;
    html_ += "<path d=\"";
    const std::string middle = std::to_string((from + to) / 2);
    for (std::size_t row = 0; row < Rows(routines); ++row) {
      const std::string y = std::to_string(Y(row, Rows(routines), height));
      html_.append("M").append(std::to_string(from)).append(" ").append(y).append("C").append(middle).append(" ");
      html_.append(y).append(" ").append(middle).append(" ").append(std::to_string(height / 2)).append(" ");
      html_.append(std::to_string(to)).append(" ").append(std::to_string(height / 2));
    }
    html_ += "\"/>\n";
  }

  /// The last row counts what finds no room.
  void Names(const std::vector<int>& routines, int height, int x) {
    const std::size_t rows = Rows(routines);
    for (std::size_t row = 0; row < rows && row < routines.size(); ++row) {
      const std::string place =
          "<text x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(Y(row, rows, height) + 4) + "\">";
      if (row + 1 == kMostRows && routines.size() > kMostRows) {
        html_.append("<text class=\"more\"")
            .append(place.substr(5))
            .append("und ")
            .append(std::to_string(routines.size() - row))
            .append(" weitere</text>");
        continue;
      }
      const SiteRoutine& routine = model_.Routine(routines[row]);
      std::string name = routine.record->name;
      if (routine.module != module_) name = model_.ModuleOf(routine).record->name + "." + name;
      AppendLink(html_, RoutineAddress(model_, routine, module_), place + Cut(name) + "</text>");
    }
  }

  static std::string Cut(const std::string& name, std::size_t longest = kLongest) {
    return name.size() <= longest ? EscapeCode(name) : EscapeCode(name.substr(0, longest - 1)) + "…";
  }

  std::string& html_;
  const SiteModel& model_;
  int module_;
  int routine_;
};

}  // namespace

std::vector<SitePage> TreePages(const SiteContents& site) {
  const auto list = std::make_shared<TreeList>(site);
  std::vector<SitePage> pages;
  for (std::size_t page = 0; page < list->PageCount(); ++page) {
    pages.push_back({list->File(page), [list, page] { return list->Page(page); }});
  }
  return pages;
}

void AppendNeighbours(std::string& html, const SiteContents& site, int routine) {
  const std::vector<int>& callers = site.calls.Callers(routine);
  const std::vector<int>& callees = site.calls.Callees(routine);
  if (callers.empty() && callees.empty()) return;
  NeighbourPicture(html, site.model, routine).Draw(callers, callees);
}

}  // namespace quillmate::output
