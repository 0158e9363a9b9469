#include <algorithm>
#include <memory>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/windows1252.h>

#include "site_lists_p.h"
#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_sources_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using symbols::Grade;

/// Positions of the modules as the project's tree shows them: by kind, then by name.
std::vector<int> InTreeOrder(const SiteModel& model) {
  std::vector<std::string> names;
  std::vector<int> order;
  for (const SiteModule& module : model.modules) {
    order.push_back(static_cast<int>(names.size()));
    names.push_back(text::Utf8FromCode(module.record->name));
  }
  const auto kindOf = [&](int i) { return model.Module(i).record->kind; };
  const auto nameOf = [&](int i) -> const std::string& { return names[static_cast<std::size_t>(i)]; };
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return kindOf(a) != kindOf(b) ? kindOf(a) < kindOf(b) : codedb::CompareText(nameOf(a), nameOf(b)) < 0;
  });
  return order;
}

/// The first paragraph, or as many words of it as fit.
std::string Shortened(std::string_view description) {
  constexpr std::size_t kLongest = 240;
  description = description.substr(0, description.find("\n\n"));
  if (description.size() <= kLongest) return EscapeLines(description);
  const std::size_t end = description.find_last_of(" \n", kLongest);
  return EscapeLines(description.substr(0, end == std::string_view::npos ? 0 : end)) + " …";
}

void AppendModuleRow(std::string& html, const SiteModel& model, const SiteModule& module) {
  html.append("<tr>").append(ProjectCell(model, module)).append("<th scope=\"row\">");
  AppendLink(html, module.page, EscapeCode(module.record->name));
  html.append("</th><td class=\"kind\">").append(ModuleKindText(module.record->kind));
  html.append("</td><td class=\"number\">").append(GroupedNumber(module.record->lines));
  html.append("</td><td class=\"number\">").append(GroupedNumber(module.last - module.first));
  html.append("</td><td>").append(Shortened(module.description.text)).append("</td></tr>\n");
}

std::int64_t CountLines(const SiteModel& model) {
  std::int64_t lines = 0;
  for (const SiteModule& module : model.modules) lines += module.record->lines;
  return lines;
}

/// The letter under which a name is listed; umlauts are listed with their vowels, all that is no letter under "#".
char LetterOf(const SiteRoutine& routine) {
  const char first = routine.anchor.front();
  const bool spelledOut = routine.record->name.empty() || routine.anchor == kNameless;
  const char upper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 32) : first;
  return upper >= 'A' && upper <= 'Z' && !spelledOut ? upper : '#';
}

/// All routines by letter and name; of equal names in the order of the model.
std::vector<int> ByName(const SiteModel& model) {
  std::vector<std::string> names;
  std::vector<int> order;
  for (const SiteRoutine& routine : model.routines) {
    order.push_back(static_cast<int>(names.size()));
    names.push_back(text::Utf8FromCode(routine.record->name));
  }
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    const char letterA = LetterOf(model.Routine(a)), letterB = LetterOf(model.Routine(b));
    if (letterA != letterB) return letterA < letterB;
    return codedb::CompareText(names[static_cast<std::size_t>(a)], names[static_cast<std::size_t>(b)]) < 0;
  });
  return order;
}

std::string LetterTitle(char letter) { return letter == '#' ? "Andere" : std::string(1, letter); }
std::string LetterFile(char letter) {
  return letter == '#' ? "andere" : std::string(1, static_cast<char>(letter + 32));
}

/// Routines from A to Z, divided into pages where there are many.
struct RoutineList {
  explicit RoutineList(const SiteModel& siteModel) : model(siteModel), order(ByName(siteModel)) {
    constexpr std::size_t kEntry = 150;
    for (const int i : order) letters.push_back(LetterOf(model.Routine(i)));
    pages =
        DivideList("routinen", "Routinen von A bis Z", std::vector<std::size_t>(order.size(), kEntry), {{[&](auto i) {
                     return ListKey{"-" + LetterFile(letters[i]), LetterTitle(letters[i])};
                   }}});
  }

  void AppendLetters(std::string& html) const {
    html += "<ul class=\"letters\">\n";
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i > 0 && letters[i] == letters[i - 1]) continue;
      const std::string title = LetterTitle(letters[i]);
      const std::string file = pages.size() == 1 ? std::string() : pages[PageOfItem(pages, i)].file;
      html += "<li>";
      AppendLink(html, file + "#" + title, title);
      html += "</li>\n";
    }
    html += "</ul>\n";
  }

  void AppendItems(std::string& html, const ListPage& page) const {
    for (std::size_t i = page.first; i < page.last; ++i) {
      if (i == page.first || letters[i] != letters[i - 1]) {
        const std::string title = LetterTitle(letters[i]);
        if (i != page.first) html += "</ul>\n";
        html.append("<h2 id=\"").append(title).append("\">").append(title).append("</h2>\n<ul class=\"names\">\n");
      }
      const SiteRoutine& routine = model.Routine(order[i]);
      html += "<li>";
      AppendLink(html, RoutineAddress(model, routine), EscapeCode(routine.record->name));
      html.append(" <small>").append(RoutineKindText(routine.record->kind)).append(", ");
      AppendCode(html, model.ModuleOf(routine).record->name);
      html += "</small></li>\n";
    }
    html += "</ul>\n";
  }

  const SiteModel& model;
  std::vector<int> order;
  std::vector<char> letters;
  std::vector<ListPage> pages;
};

/// The grades that routines have, the strongest statement first.
constexpr Grade kGrades[] = {Grade::kCertain,  Grade::kSelf, Grade::kInactive,
                             Grade::kPossible, Grade::kText, Grade::kHost};

std::int64_t CountGrade(const SiteModel& model, Grade grade) {
  return std::ranges::count_if(model.unused, [&](int i) { return model.Routine(i).unused->grade == grade; });
}

/// "1.057 sicher, 10.393 vom Host".
std::string GradeCounts(const SiteModel& model) {
  std::string text;
  for (const Grade grade : kGrades) {
    const std::int64_t count = CountGrade(model, grade);
    if (count == 0) continue;
    text.append(text.empty() ? "" : ", ").append(GroupedNumber(count)).append(" ").append(GradeText(grade));
  }
  return text;
}

void AppendGrades(std::string& html, const SiteModel& model) {
  html +=
      "<p class=\"note\">Keine andere Routine des Projekts ruft diese hier sicher auf. Was das heißt:</p>\n"
      "<dl class=\"pairs\">\n";
  for (const Grade grade : kGrades) {
    const std::int64_t count = CountGrade(model, grade);
    if (count == 0) continue;
    html.append("<dt>").append(GroupedNumber(count)).append(" ").append(GradeText(grade)).append("</dt>\n<dd>");
    html.append(GradeExplanation(grade)).append("</dd>\n");
  }
  html += "</dl>\n";
}

void AppendUnused(std::string& html, const SiteModel& model, const ListPage& page) {
  html +=
      "<table>\n<caption>Nach Modulen</caption>\n<thead>\n<tr><th scope=\"col\">Routine</th><th "
      "scope=\"col\">Modul</th>"
      "<th scope=\"col\">Einstufung</th></tr>\n</thead>\n<tbody>\n";
  for (std::size_t i = page.first; i < page.last; ++i) {
    const SiteRoutine& routine = model.Routine(model.unused[i]);
    const SiteModule& module = model.ModuleOf(routine);
    html += "<tr><th scope=\"row\">";
    AppendLink(html, RoutineAddress(model, routine), EscapeCode(routine.record->name));
    html.append(" <small>").append(RoutineKindText(routine.record->kind)).append("</small></th><td>");
    AppendLink(html, module.page, EscapeCode(module.record->name));
    html.append("</td><td>").append(GradeWithReason(*routine.unused)).append("</td></tr>\n");
  }
  html += "</tbody>\n</table>\n";
}

}  // namespace

std::string StartPage(const SiteModel& model) {
  std::string html = PageHead(model, EscapeUtf8(model.project.title), kStartFile);
  html.append("<p class=\"facts\">")
      .append(Counted(static_cast<std::int64_t>(model.modules.size()), "Modul", "Module"));
  html.append(", ").append(Counted(CountLines(model), "Zeile", "Zeilen")).append(", ");
  html.append(Counted(static_cast<std::int64_t>(model.routines.size()), "Routine", "Routinen"))
      .append("; ohne Aufruf: ");
  AppendLink(html, kUnusedFile, model.unused.empty() ? "keine" : GradeCounts(model));
  html += "</p>\n<table>\n<caption>Die Module des Projekts</caption>\n<thead>\n<tr>";
  html += ProjectHead(model);
  html +=
      "<th scope=\"col\">Modul</th><th scope=\"col\">Art</th><th scope=\"col\" class=\"number\">Zeilen</th>"
      "<th scope=\"col\" class=\"number\">Routinen</th><th scope=\"col\">Beschreibung</th></tr>\n</thead>\n<tbody>\n";
  for (const int i : InTreeOrder(model)) AppendModuleRow(html, model, model.Module(i));
  html.append("</tbody>\n<tfoot>\n<tr><th scope=\"row\">Summe</th>")
      .append(ProjectHead(model).empty() ? "" : "<td></td>");
  html += "<td></td><td class=\"number\">";
  html.append(GroupedNumber(CountLines(model))).append("</td><td class=\"number\">");
  html.append(GroupedNumber(static_cast<std::int64_t>(model.routines.size())));
  html += "</td><td></td></tr>\n</tfoot>\n</table>\n";
  AppendSources(html, model);
  return html.append(kPageEnd);
}

std::vector<SitePage> RoutinePages(const SiteModel& model) {
  const auto list = std::make_shared<RoutineList>(model);
  std::vector<SitePage> pages;
  pages.push_back({kRoutinesFile, [list] {
                     std::string html = PageHead(list->model, "Routinen von A bis Z", kRoutinesFile);
                     if (list->order.empty()) {
                       return html.append("<p>Das Projekt hat keine Routinen.</p>\n").append(kPageEnd);
                     }
                     list->AppendLetters(html);
                     if (list->pages.size() == 1) list->AppendItems(html, list->pages.front());
                     return html.append(kPageEnd);
                   }});
  for (std::size_t page = 0; list->pages.size() > 1 && page < list->pages.size(); ++page) {
    pages.push_back({list->pages[page].file, [list, page] {
                       std::string html = PageHead(list->model, list->pages[page].title, kRoutinesFile, true);
                       AppendListNavigation(html, list->pages, page, kRoutinesFile, "Alle Buchstaben");
                       list->AppendItems(html, list->pages[page]);
                       return html.append(kPageEnd);
                     }});
  }
  return pages;
}

std::vector<SitePage> UnusedPages(const SiteModel& model) {
  constexpr std::size_t kEntry = 280;
  const auto list = std::make_shared<std::vector<ListPage>>(
      DivideList("unbenutzt", "Routinen ohne Aufruf", std::vector<std::size_t>(model.unused.size(), kEntry), {}));
  std::vector<SitePage> pages;
  for (std::size_t page = 0; page < list->size(); ++page) {
    pages.push_back({(*list)[page].file, [&model, list, page] {
                       const ListPage& part = (*list)[page];
                       std::string html = PageHead(model, part.title, kUnusedFile, page > 0);
                       if (model.unused.empty()) return html.append("<p>Es gibt keine.</p>\n").append(kPageEnd);
                       AppendListNavigation(html, *list, page, kUnusedFile, "Anfang der Liste");
                       if (page == 0) AppendGrades(html, model);
                       AppendUnused(html, model, part);
                       return html.append(kPageEnd);
                     }});
  }
  return pages;
}

}  // namespace quillmate::output
