#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <quillmate/checks/metrics.h>

#include "site_lists_p.h"
#include "site_metrics_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using checks::RoutineNumbers;

/// So many routines are told of that stand out.
constexpr std::size_t kMostRoutines = 25;

std::array<std::uint32_t, 9> NumbersOf(const RoutineNumbers& routine) {
  return {routine.lines,   routine.code,       routine.comment, routine.statements, routine.complexity,
          routine.nesting, routine.parameters, routine.fanIn,   routine.fanOut};
}

std::array<std::uint32_t, 4> NumbersOf(const checks::ModuleNumbers& module) {
  return {module.lines, module.code, module.comment, module.blank};
}

template <std::size_t Size>
void AppendHeads(std::string& html, const checks::MetricDefinition (&definitions)[Size]) {
  for (const checks::MetricDefinition& definition : definitions) {
    html.append("<th scope=\"col\" class=\"number\"><abbr title=\"").append(EscapeUtf8(definition.definition));
    html.append("\">").append(definition.name).append("</abbr></th>");
  }
}

template <std::size_t Size>
void AppendNumbers(std::string& html, const std::array<std::uint32_t, Size>& numbers) {
  for (const std::uint32_t number : numbers) {
    html.append("<td class=\"number\">").append(GroupedNumber(number)).append("</td>");
  }
}

void AppendRoutineRow(std::string& html, const SiteModel& model, const RoutineNumbers& routine, int fromModule) {
  const symbols::SymbolId symbol = model.known.RoutineSymbol(routine.module, routine.routine);
  const int position = symbol == symbols::kNone ? kNoRoutine : model.RoutineOf(symbol);
  const language::Module& code = model.known.Code(routine.module);
  std::string name =
      EscapeUtf8(symbol == symbols::kNone ? code.Spelling(code.declarations[code.routines[routine.routine].declaration])
                                          : model.known.Name(symbol));
  if (fromModule < 0) name = EscapeUtf8(model.known.Modules()[routine.module].name) + "." + name;
  html += "<tr><th scope=\"row\">";
  if (position == kNoRoutine) {
    html += name;
  } else {
    const SiteRoutine& found = model.Routine(position);
    AppendLink(html, RoutineAddress(model, found, fromModule), name.append(PartText(found.record->kind)));
  }
  html += "</th>";
  AppendNumbers(html, NumbersOf(routine));
  html += "</tr>\n";
}

void AppendRoutineTable(std::string& html, const SiteModel& model, const std::vector<const RoutineNumbers*>& routines,
                        std::string_view caption, int fromModule) {
  html.append("<div class=\"wide\">\n<table class=\"numbers\">\n<caption>").append(caption).append("</caption>\n");
  html += "<thead>\n<tr><th scope=\"col\">Routine</th>";
  AppendHeads(html, checks::kRoutineDefinitions);
  html += "</tr>\n</thead>\n<tbody>\n";
  for (const RoutineNumbers* routine : routines) AppendRoutineRow(html, model, *routine, fromModule);
  html += "</tbody>\n</table>\n</div>\n";
}

/// The first ones by a number, the greatest first; of equal ones in the order of the code.
std::vector<const RoutineNumbers*> Greatest(const checks::Metrics& metrics, std::uint32_t RoutineNumbers::*number) {
  std::vector<const RoutineNumbers*> routines;
  for (const RoutineNumbers& routine : metrics.routines) routines.push_back(&routine);
  const auto before = [&](const RoutineNumbers* a, const RoutineNumbers* b) {
    return a->*number != b->*number ? a->*number > b->*number : a < b;
  };
  const auto end = routines.begin() + static_cast<std::ptrdiff_t>(std::min(kMostRoutines, routines.size()));
  std::partial_sort(routines.begin(), end, routines.end(), before);
  routines.erase(end, routines.end());
  return routines;
}

template <std::size_t Size>
void AppendDefinitions(std::string& html, const checks::MetricDefinition (&definitions)[Size]) {
  html += "<dl class=\"pairs\">\n";
  for (const checks::MetricDefinition& definition : definitions) {
    html.append("<dt>").append(definition.name).append("</dt>\n<dd>").append(EscapeUtf8(definition.definition));
    html += "</dd>\n";
  }
  html += "</dl>\n";
}

void AppendModules(std::string& html, const SiteContents& site, const ListPage& page) {
  const SiteModel& model = site.model;
  html += "<div class=\"wide\">\n<table class=\"numbers\">\n<thead>\n<tr><th scope=\"col\">Modul</th>";
  AppendHeads(html, checks::kModuleDefinitions);
  html += "<th scope=\"col\" class=\"number\">Routinen</th></tr>\n</thead>\n<tbody>\n";
  for (std::size_t i = page.first; i < page.last; ++i) {
    const SiteModule& module = model.modules[i];
    html += "<tr><th scope=\"row\">";
    AppendLink(html, module.page, EscapeCode(module.record->name));
    html += "</th>";
    if (module.number == symbols::kNone) {
      html += "<td></td><td></td><td></td><td></td>";
    } else {
      AppendNumbers(html, NumbersOf(site.metrics.modules[module.number]));
    }
    html.append("<td class=\"number\">").append(GroupedNumber(module.last - module.first)).append("</td></tr>\n");
  }
  html += "</tbody>\n</table>\n</div>\n";
}

std::string Overview(const SiteContents& site, const std::vector<ListPage>& pages) {
  std::string html = PageHead(site.model, "Kennzahlen", kMetricsFile);
  if (!site.metrics.routines.empty()) {
    html += "<h2>Auffällige Routinen</h2>\n";
    AppendRoutineTable(html, site.model, Greatest(site.metrics, &RoutineNumbers::complexity),
                       "Die Routinen mit der größten Komplexität", -1);
    AppendRoutineTable(html, site.model, Greatest(site.metrics, &RoutineNumbers::lines), "Die längsten Routinen", -1);
    AppendRoutineTable(html, site.model, Greatest(site.metrics, &RoutineNumbers::fanIn),
                       "Die Routinen mit den meisten Aufrufern", -1);
  }
  html += "<h2>Module</h2>\n";
  if (pages.size() > 1) {
    html += "<ul class=\"letters\">\n";
    for (std::size_t page = 1; page < pages.size(); ++page) {
      html += "<li>";
      AppendLink(html, pages[page].file, "weiter ab " + EscapeCode(site.model.modules[pages[page].first].record->name));
      html += "</li>\n";
    }
    html += "</ul>\n";
  }
  AppendModules(html, site, pages.front());
  html += "<h2>Was die Zahlen bedeuten</h2>\n<h3>Module</h3>\n";
  AppendDefinitions(html, checks::kModuleDefinitions);
  html += "<h3>Routinen</h3>\n";
  AppendDefinitions(html, checks::kRoutineDefinitions);
  return html.append(kPageEnd);
}

}  // namespace

std::vector<SitePage> MetricPages(const SiteContents& site) {
  constexpr std::size_t kEntry = 220;
  const auto list = std::make_shared<std::vector<ListPage>>(
      DivideList("kennzahlen", "Kennzahlen", std::vector<std::size_t>(site.model.modules.size(), kEntry), {}));
  std::vector<SitePage> pages{{kMetricsFile, [&site, list] { return Overview(site, *list); }}};
  for (std::size_t page = 1; page < list->size(); ++page) {
    pages.push_back({(*list)[page].file, [&site, list, page] {
                       std::string html = PageHead(site.model, (*list)[page].title, kMetricsFile, true);
                       AppendListNavigation(html, *list, page, kMetricsFile, "Kennzahlen");
                       AppendModules(html, site, (*list)[page]);
                       return html.append(kPageEnd);
                     }});
  }
  return pages;
}

void AppendMetrics(std::string& html, const SiteContents& site, int module) {
  const symbols::Index number = site.model.Module(module).number;
  if (number == symbols::kNone) return;
  std::vector<const RoutineNumbers*> routines;
  const auto first = std::ranges::lower_bound(site.metrics.routines, number, {}, &RoutineNumbers::module);
  const auto last = std::ranges::upper_bound(site.metrics.routines, number, {}, &RoutineNumbers::module);
  for (auto routine = first; routine != last; ++routine) routines.push_back(&*routine);
  if (routines.empty()) return;
  html += "<h2 id=\"kennzahlen\">Kennzahlen</h2>\n";
  std::string caption = "Zeilen zählen wie im Editor; ";
  AppendLink(caption, kMetricsFile, "was die Zahlen bedeuten");
  AppendRoutineTable(html, site.model, routines, caption, module);
}

}  // namespace quillmate::output
