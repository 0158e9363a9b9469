#include <algorithm>
#include <map>
#include <utility>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/cycles.h>

#include "site_dependencies_p.h"
#include "site_page_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

class DependenciesWriter {
 public:
  explicit DependenciesWriter(const SiteContents& site)
      : model_(site.model),
        edges_(DependenciesOf(site.model, site.calls)),
        cycles_(CyclesOf(model_.modules.size(), edges_)) {}

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
    const symbols::Index cycle = cycles_[static_cast<std::size_t>(edge.from)];
    return cycle != symbols::kNone && cycle == cycles_[static_cast<std::size_t>(edge.to)];
  }

  void Cycles() {
    std::vector<std::vector<int>> members;
    for (std::size_t module = 0; module < cycles_.size(); ++module) {
      if (cycles_[module] == symbols::kNone) continue;
      // Numbered in the order of their first modules.
      if (cycles_[module] == members.size()) members.emplace_back();
      members[cycles_[module]].push_back(static_cast<int>(module));
    }
    if (members.empty()) {
      html_ += "<p>Es gibt keine Zyklen.</p>\n";
      return;
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
  std::vector<symbols::Index> cycles_;
  std::string html_;
};

}  // namespace

std::vector<SiteDependency> DependenciesOf(const SiteModel& model, const SiteCalls& calls) {
  std::map<std::pair<int, int>, int> counts;
  for (int caller = 0; caller < static_cast<int>(model.routines.size()); ++caller) {
    const int module = model.Routine(caller).module;
    for (const int called : calls.Callees(caller)) {
      const int target = model.Routine(called).module;
      if (target != module) ++counts[{module, target}];
    }
  }
  std::vector<SiteDependency> dependencies;
  dependencies.reserve(counts.size());
  for (const auto& [pair, count] : counts) dependencies.push_back({pair.first, pair.second, count});
  return dependencies;
}

std::vector<symbols::Index> CyclesOf(std::size_t modules, const std::vector<SiteDependency>& dependencies) {
  std::vector<symbols::Arc> arcs;
  arcs.reserve(dependencies.size());
  for (const SiteDependency& edge : dependencies) {
    arcs.push_back({static_cast<symbols::Index>(edge.from), static_cast<symbols::Index>(edge.to)});
  }
  return symbols::CyclesOf(modules, arcs);
}

std::string DependenciesPage(const SiteContents& site) { return DependenciesWriter(site).Write(); }

}  // namespace quillmate::output
