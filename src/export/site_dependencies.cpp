#include <algorithm>
#include <map>
#include <utility>

#include <quillmate/symbols/calls.h>

#include "site_dependencies_p.h"
#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

/// Strongly connected parts, by the order in which a depth-first walk leaves them.
class CycleFinder {
 public:
  CycleFinder(std::size_t modules, const std::vector<SiteDependency>& dependencies)
      : first_(modules + 1, 0), edges_(dependencies), number_(modules, -1), lowest_(modules, 0), part_(modules, -1) {
    for (const SiteDependency& edge : edges_) ++first_[static_cast<std::size_t>(edge.from) + 1];
    for (std::size_t i = 0; i < modules; ++i) first_[i + 1] += first_[i];
  }

  std::vector<int> Run() {
    for (std::size_t module = 0; module < number_.size(); ++module) {
      if (number_[module] < 0) Walk(module);
    }
    return part_;
  }

 private:
  struct Step {
    std::size_t module;
    std::size_t edge;
  };

  void Enter(std::size_t module) {
    number_[module] = lowest_[module] = next_++;
    open_.push_back(module);
    path_.push_back({module, first_[module]});
  }

  void Walk(std::size_t start) {
    Enter(start);
    while (!path_.empty()) {
      Step& step = path_.back();
      if (step.edge == first_[step.module + 1]) {
        Leave();
        continue;
      }
      const auto target = static_cast<std::size_t>(edges_[step.edge++].to);
      if (number_[target] < 0) {
        Enter(target);
      } else if (part_[target] < 0) {
        lowest_[step.module] = std::min(lowest_[step.module], number_[target]);
      }
    }
  }

  void Leave() {
    const std::size_t module = path_.back().module;
    path_.pop_back();
    if (!path_.empty()) {
      int& above = lowest_[path_.back().module];
      above = std::min(above, lowest_[module]);
    }
    if (lowest_[module] != number_[module]) return;
    for (std::size_t member = module + 1; member != module;) {
      member = open_.back();
      open_.pop_back();
      part_[member] = parts_;
    }
    ++parts_;
  }

  std::vector<std::size_t> first_;
  const std::vector<SiteDependency>& edges_;
  std::vector<int> number_, lowest_, part_;
  std::vector<std::size_t> open_;
  std::vector<Step> path_;
  int next_ = 0, parts_ = 0;
};

class DependenciesWriter {
 public:
  explicit DependenciesWriter(const SiteModel& model)
      : model_(model), edges_(DependenciesOf(model)), cycles_(CyclesOf(model.modules.size(), edges_)) {}

  std::string Write() {
    html_ = PageHead(model_, "Abhängigkeiten", kDependenciesFile);
    if (edges_.empty()) {
      return html_.append("<p>Kein Modul ruft Routinen eines anderen auf.</p>\n").append(kPageEnd);
    }
    Cycles();
    if (model_.modules.size() <= kMatrixModules) Matrix();
    List();
    return html_.append(kPageEnd);
  }

 private:
  void ModuleLink(int module) {
    AppendLink(html_, model_.Module(module).page, EscapeCode(model_.Module(module).record->name));
  }

  bool InCycle(const SiteDependency& edge) const {
    const int cycle = cycles_[static_cast<std::size_t>(edge.from)];
    return cycle >= 0 && cycle == cycles_[static_cast<std::size_t>(edge.to)];
  }

  void Cycles() {
    const int count = *std::max_element(cycles_.begin(), cycles_.end()) + 1;
    if (count == 0) {
      html_ += "<p>Es gibt keine Zyklen.</p>\n";
      return;
    }
    std::vector<std::vector<int>> members(static_cast<std::size_t>(count));
    for (std::size_t module = 0; module < cycles_.size(); ++module) {
      if (cycles_[module] >= 0) members[static_cast<std::size_t>(cycles_[module])].push_back(static_cast<int>(module));
    }
    html_ += "<h2>Zyklen</h2>\n<p>Diese Module brauchen einander, unmittelbar oder über andere:</p>\n<ul>\n";
    for (const std::vector<int>& cycle : members) {
      html_ += "<li>";
      for (std::size_t i = 0; i < cycle.size(); ++i) {
        if (i > 0) html_ += ", ";
        ModuleLink(cycle[i]);
      }
      html_ += "</li>\n";
    }
    html_ += "</ul>\n";
  }

  void Matrix() {
    html_ +=
        "<h2>Matrix</h2>\n<div class=\"wide\">\n<table class=\"matrix\">\n<caption>Das Modul der Zeile ruft so oft "
        "Routinen des Moduls der Spalte auf; ↻ gehört zu einem Zyklus</caption>\n<thead>\n<tr><th "
        "scope=\"col\">Modul</th>";
    for (std::size_t i = 0; i < model_.modules.size(); ++i) {
      html_.append("<th scope=\"col\"><abbr title=\"").append(EscapeCode(model_.modules[i].record->name));
      html_.append("\">").append(std::to_string(i + 1)).append("</abbr></th>");
    }
    html_ += "</tr>\n</thead>\n<tbody>\n";
    auto edge = edges_.begin();
    for (int row = 0; row < static_cast<int>(model_.modules.size()); ++row) {
      html_.append("<tr><th scope=\"row\">").append(std::to_string(row + 1)).append(" ");
      ModuleLink(row);
      html_ += "</th>";
      for (int column = 0; column < static_cast<int>(model_.modules.size()); ++column) {
        if (edge != edges_.end() && edge->from == row && edge->to == column) {
          Cell(*edge++);
        } else {
          html_ += row == column ? "<td>–</td>" : "<td></td>";
        }
      }
      html_ += "</tr>\n";
    }
    html_ += "</tbody>\n</table>\n</div>\n";
  }

  void Cell(const SiteDependency& edge) {
    const bool cycle = InCycle(edge);
    html_.append(cycle ? "<td class=\"cycle\">" : "<td>").append(GroupedNumber(edge.count));
    html_.append(cycle ? " ↻</td>" : "</td>");
  }

  void List() {
    std::vector<SiteDependency> back = edges_;
    std::sort(back.begin(), back.end(),
              [](const auto& a, const auto& b) { return std::pair(a.to, a.from) < std::pair(b.to, b.from); });
    html_ +=
        "<h2>Nach Modulen</h2>\n<table>\n<caption>Was ein Modul braucht und wer es braucht</caption>\n<thead>\n<tr><th "
        "scope=\"col\">Modul</th><th scope=\"col\">ruft auf in</th><th scope=\"col\">wird aufgerufen "
        "aus</th></tr>\n</thead>\n<tbody>\n";
    auto needs = edges_.begin();
    auto needed = back.begin();
    for (int module = 0; module < static_cast<int>(model_.modules.size()); ++module) {
      html_ += "<tr><th scope=\"row\">";
      ModuleLink(module);
      html_ += "</th><td>";
      for (bool next = false; needs != edges_.end() && needs->from == module; ++needs, next = true) {
        Entry(next, needs->to, *needs);
      }
      html_ += "</td><td>";
      for (bool next = false; needed != back.end() && needed->to == module; ++needed, next = true) {
        Entry(next, needed->from, *needed);
      }
      html_ += "</td></tr>\n";
    }
    html_ += "</tbody>\n</table>\n";
  }

  void Entry(bool next, int module, const SiteDependency& edge) {
    if (next) html_ += ", ";
    ModuleLink(module);
    html_.append(" (").append(GroupedNumber(edge.count)).append(InCycle(edge) ? ", ↻)" : ")");
  }

  const SiteModel& model_;
  std::vector<SiteDependency> edges_;
  std::vector<int> cycles_;
  std::string html_;
};

}  // namespace

std::vector<SiteDependency> DependenciesOf(const SiteModel& model) {
  std::map<std::pair<int, int>, int> counts;
  for (const SiteRoutine& routine : model.routines) {
    if (routine.symbol == symbols::kNone) continue;
    symbols::SymbolId last = symbols::kNone;
    for (const symbols::CallEdge& edge : symbols::CalleesOf(model.known, routine.symbol)) {
      if (edge.certainty != symbols::Certainty::kSure || std::exchange(last, edge.routine) == edge.routine) continue;
      const int called = model.RoutineOf(edge.routine);
      const int target = called == kNoRoutine ? routine.module : model.Routine(called).module;
      if (target != routine.module) ++counts[{routine.module, target}];
    }
  }
  std::vector<SiteDependency> dependencies;
  dependencies.reserve(counts.size());
  for (const auto& [pair, count] : counts) dependencies.push_back({pair.first, pair.second, count});
  return dependencies;
}

std::vector<int> CyclesOf(std::size_t modules, const std::vector<SiteDependency>& dependencies) {
  const std::vector<int> parts = CycleFinder(modules, dependencies).Run();
  std::map<int, int> sizes, numbers;
  for (const int part : parts) ++sizes[part];
  std::vector<int> cycles(modules, -1);
  for (std::size_t module = 0; module < modules; ++module) {
    if (sizes[parts[module]] < 2) continue;
    cycles[module] = numbers.try_emplace(parts[module], static_cast<int>(numbers.size())).first->second;
  }
  return cycles;
}

std::string DependenciesPage(const SiteModel& model) { return DependenciesWriter(model).Write(); }

}  // namespace quillmate::output
