#include <algorithm>
#include <memory>
#include <utility>

#include <quillmate/checks/checks.h>

#include "site_findings_p.h"
#include "site_lists_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using checks::Finding;

constexpr std::string_view kTitle = "Befunde";

void AppendSeverity(std::string& html, checks::Severity severity) {
  constexpr std::string_view kClasses[] = {"error", "warning", "hint"};
  html.append("<span class=\"").append(kClasses[static_cast<std::size_t>(severity)]).append("\">");
  html.append(Word(severity)).append("</span>");
}

/// "Zeile 3" with its link; nothing where no line is shown.
void AppendFindingLine(std::string& html, const SiteModel& model, const Finding& finding, int fromModule) {
  const int page = model.ModuleOf(finding.module);
  const std::uint32_t line = page < 0 || finding.line == 0 ? 0 : model.ShownLine(finding.module, finding.line);
  if (line == 0) return;
  const std::string number = std::to_string(line);
  AppendLink(html, (page == fromModule ? std::string() : model.Module(page).page) + "#z" + number, "Zeile " + number);
}

/// The module, the routine and the line.
void AppendFindingPlace(std::string& html, const SiteModel& model, const Finding& finding) {
  const int page = model.ModuleOf(finding.module);
  const std::string name = EscapeUtf8(model.known.Modules()[finding.module].name);
  page < 0 ? void(html += name) : AppendLink(html, model.Module(page).page, name);
  if (finding.routine != symbols::kNone) {
    const symbols::SymbolId routine = model.known.RoutineSymbol(finding.module, finding.routine);
    if (routine != symbols::kNone) html.append(".").append(EscapeUtf8(model.known.Name(routine)));
  }
  std::string line;
  AppendFindingLine(line, model, finding, -1);
  if (!line.empty()) html.append(", ").append(line);
}

/// All findings by severity and check, in pages.
struct FindingList {
  explicit FindingList(const SiteContents& contents) : site(contents) {
    for (const Finding& finding : site.findings) order.push_back(&finding);
    std::ranges::stable_sort(order, {}, [](const Finding* finding) {
      return std::pair(checks::InfoOf(finding->check).severity, finding->check);
    });
    constexpr std::size_t kEntry = 200;
    std::vector<std::size_t> sizes;
    for (const Finding* finding : order) sizes.push_back(kEntry + finding->text.size() + finding->advice.size());
    pages = DivideList("befunde", "", sizes, {{[this](std::size_t i) {
                         const checks::Check& check = checks::InfoOf(order[i]->check);
                         return ListKey{"-" + std::string(check.id), EscapeUtf8(check.title)};
                       }}});
  }

  bool IsWhole() const { return pages.size() == 1 && pages.front().file == kFindingsFile; }

  std::string Overview() const {
    std::string html = PageHead(site.model, kTitle, kFindingsFile);
    if (order.empty()) return html.append("<p>Es gibt keine.</p>\n").append(kPageEnd);
    html +=
        "<p class=\"note\">Stellen, die falsch, gewagt oder wissenswert sind. Was eine Kennung prüft, steht im "
        "Handbuch.</p>\n<table>\n<caption>Nach Stufe</caption>\n<thead>\n<tr><th scope=\"col\">Stufe</th>"
        "<th scope=\"col\">Befund</th><th scope=\"col\">Kennung</th><th scope=\"col\">Gruppe</th>"
        "<th scope=\"col\" class=\"number\">Anzahl</th></tr>\n</thead>\n<tbody>\n";
    for (std::size_t first = 0, last = 0; first < order.size(); first = last) {
      while (last < order.size() && order[last]->check == order[first]->check) ++last;
      const checks::Check& check = checks::InfoOf(order[first]->check);
      html += "<tr><td>";
      AppendSeverity(html, check.severity);
      html += "</td><th scope=\"row\">";
      const std::string file = IsWhole() ? std::string() : pages[PageOfItem(pages, first)].file;
      AppendLink(html, file + "#b-" + std::string(check.id), EscapeUtf8(check.title));
      html.append("</th><td><code>").append(check.id).append("</code></td><td>").append(EscapeUtf8(Word(check.group)));
      html.append("</td><td class=\"number\">").append(GroupedNumber(static_cast<std::int64_t>(last - first)));
      html += "</td></tr>\n";
    }
    html += "</tbody>\n</table>\n";
    if (IsWhole()) AppendItems(html, pages.front());
    return html.append(kPageEnd);
  }

  std::string Part(std::size_t page) const {
    std::string html = PageHead(site.model, std::string(kTitle) + ": " + pages[page].title, kFindingsFile, true);
    AppendListNavigation(html, pages, page, kFindingsFile, "Alle Befunde");
    AppendItems(html, pages[page]);
    return html.append(kPageEnd);
  }

  void AppendItems(std::string& html, const ListPage& page) const {
    for (std::size_t i = page.first; i < page.last; ++i) {
      const Finding& finding = *order[i];
      if (i == page.first || order[i - 1]->check != finding.check) {
        const checks::Check& check = checks::InfoOf(finding.check);
        if (i > page.first) html += "</tbody>\n</table>\n";
        html.append("<h2 id=\"b-").append(check.id).append("\">").append(EscapeUtf8(check.title)).append("</h2>\n");
        html.append("<p class=\"note\">").append(EscapeUtf8(check.advice)).append("</p>\n");
        html +=
            "<table class=\"declared\">\n<thead>\n<tr><th scope=\"col\">Ort</th><th scope=\"col\">Befund</th></tr>\n"
            "</thead>\n<tbody>\n";
      }
      html += "<tr><td>";
      AppendFindingPlace(html, site.model, finding);
      html.append("</td><td>").append(EscapeUtf8(finding.text));
      if (finding.advice != checks::InfoOf(finding.check).advice) {
        html.append(" <small>").append(EscapeUtf8(finding.advice)).append("</small>");
      }
      html += "</td></tr>\n";
    }
    html += "</tbody>\n</table>\n";
  }

  const SiteContents& site;
  std::vector<const Finding*> order;
  std::vector<ListPage> pages;
};

}  // namespace

std::vector<SitePage> FindingPages(const SiteContents& site) {
  const auto list = std::make_shared<FindingList>(site);
  std::vector<SitePage> pages{{kFindingsFile, [list] { return list->Overview(); }}};
  for (std::size_t page = 0; !list->IsWhole() && page < list->pages.size(); ++page) {
    pages.push_back({list->pages[page].file, [list, page] { return list->Part(page); }});
  }
  return pages;
}

void AppendFindings(std::string& html, const SiteContents& site, int module) {
  const symbols::Index number = site.model.Module(module).number;
  if (number == symbols::kNone) return;
  const auto first = std::ranges::lower_bound(site.findings, number, {}, &Finding::module);
  const auto last = std::ranges::upper_bound(site.findings, number, {}, &Finding::module);
  if (first == last) return;
  html +=
      "<h2 id=\"befunde\">Befunde</h2>\n<table class=\"declared\">\n<thead>\n<tr><th scope=\"col\">Zeile</th>"
      "<th scope=\"col\">Stufe</th><th scope=\"col\">Befund</th></tr>\n</thead>\n<tbody>\n";
  for (auto finding = first; finding != last; ++finding) {
    const checks::Check& check = checks::InfoOf(finding->check);
    html += "<tr><td>";
    AppendFindingLine(html, site.model, *finding, module);
    html += "</td><td>";
    AppendSeverity(html, check.severity);
    html.append("</td><td>").append(EscapeUtf8(finding->text)).append(" <small><code>").append(check.id);
    html += "</code></small></td></tr>\n";
  }
  html += "</tbody>\n</table>\n";
}

}  // namespace quillmate::output
