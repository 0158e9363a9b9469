#include <algorithm>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/windows1252.h>

#include "site_dependencies_p.h"
#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_search_p.h"
#include "site_style_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using symbols::Grade;

struct NavigationLink {
  const char* file;
  std::string_view text;
};

constexpr NavigationLink kNavigation[] = {
    {kStartFile, "Module"},       {kRoutinesFile, "Routinen von A bis Z"},
    {kUnusedFile, "Ohne Aufruf"}, {kDependenciesFile, "Abhängigkeiten"},
    {kSearchFile, "Suche"},
};

void AppendNavigation(std::string& html, std::string_view current) {
  html += "<nav aria-label=\"Seiten\">\n<ul>\n";
  for (const NavigationLink& link : kNavigation) {
    html.append("<li><a href=\"").append(link.file).append("\"");
    if (current == link.file) html += " aria-current=\"page\"";
    html.append(">").append(link.text).append("</a></li>\n");
  }
  html += "</ul>\n</nav>\n";
}

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
  if (description.size() <= kLongest) return std::string(description);
  const std::size_t end = description.find_last_of(" \n", kLongest);
  return std::string(description.substr(0, end == std::string_view::npos ? 0 : end)) + " …";
}

void AppendModuleRow(std::string& html, const SiteModule& module) {
  html += "<tr><th scope=\"row\">";
  AppendLink(html, module.page, EscapeCode(module.record->name));
  html.append("</th><td class=\"kind\">").append(ModuleKindText(module.record->kind));
  html.append("</td><td class=\"number\">").append(GroupedNumber(module.record->lines));
  html.append("</td><td class=\"number\">").append(GroupedNumber(module.last - module.first));
  html.append("</td><td>").append(Shortened(module.description)).append("</td></tr>\n");
}

std::int64_t CountLines(const SiteModel& model) {
  std::int64_t lines = 0;
  for (const SiteModule& module : model.modules) lines += module.record->lines;
  return lines;
}

/// All routines by name; of equal names in the order of the model.
std::vector<int> ByName(const SiteModel& model) {
  std::vector<std::string> names;
  std::vector<int> order;
  for (const SiteRoutine& routine : model.routines) {
    order.push_back(static_cast<int>(names.size()));
    names.push_back(text::Utf8FromCode(routine.record->name));
  }
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return codedb::CompareText(names[static_cast<std::size_t>(a)], names[static_cast<std::size_t>(b)]) < 0;
  });
  return order;
}

/// The letter under which a name stands; umlauts stand with their vowels, all that is no letter under "#".
char LetterOf(const SiteRoutine& routine) {
  const char first = routine.anchor.front();
  const bool spelledOut = routine.record->name.empty() || routine.anchor == "ohne-Namen";
  const char upper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 32) : first;
  return upper >= 'A' && upper <= 'Z' && !spelledOut ? upper : '#';
}

struct LetterGroup {
  char letter;
  std::vector<int> routines;

  std::string Title() const { return letter == '#' ? "Andere" : std::string(1, letter); }
};

std::vector<LetterGroup> GroupByLetter(const SiteModel& model) {
  std::vector<LetterGroup> groups;
  for (const int i : ByName(model)) {
    const char letter = LetterOf(model.Routine(i));
    auto group = std::find_if(groups.begin(), groups.end(), [&](const LetterGroup& g) { return g.letter == letter; });
    if (group == groups.end()) group = groups.insert(group, {letter, {}});
    group->routines.push_back(i);
  }
  return groups;
}

void AppendLetter(std::string& html, const SiteModel& model, const LetterGroup& group) {
  const std::string title = group.Title();
  html.append("<h2 id=\"").append(title).append("\">").append(title).append("</h2>\n<ul class=\"names\">\n");
  for (const int i : group.routines) {
    const SiteRoutine& routine = model.Routine(i);
    html += "<li>";
    AppendLink(html, RoutineAddress(model, routine), EscapeCode(routine.record->name));
    html.append(" <small>").append(RoutineKindText(routine.record->kind)).append(", ");
    AppendCode(html, model.ModuleOf(routine).record->name);
    html += "</small></li>\n";
  }
  html += "</ul>\n";
}

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

}  // namespace

std::string PageHead(const SiteModel& model, std::string_view title, std::string_view file) {
  const std::string project = EscapeUtf8(model.project.title);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
  html.append(title);
  if (title != project) html.append(" – ").append(project);
  html.append("</title>\n<link rel=\"stylesheet\" href=\"").append(kStyleFile).append("\">\n</head>\n<body>\n");
  html.append("<header>\n<p>").append(project).append("</p>\n");
  AppendNavigation(html, file);
  return html.append("</header>\n<main>\n<h1>").append(title).append("</h1>\n");
}

std::string StartPage(const SiteModel& model) {
  std::string html = PageHead(model, EscapeUtf8(model.project.title), kStartFile);
  html.append("<p class=\"facts\">")
      .append(Counted(static_cast<std::int64_t>(model.modules.size()), "Modul", "Module"));
  html.append(", ").append(Counted(CountLines(model), "Zeile", "Zeilen")).append(", ");
  html.append(Counted(static_cast<std::int64_t>(model.routines.size()), "Routine", "Routinen"))
      .append("; ohne Aufruf: ");
  AppendLink(html, kUnusedFile, model.unused.empty() ? "keine" : GradeCounts(model));
  html +=
      "</p>\n<table>\n<caption>Die Module des Projekts</caption>\n<thead>\n"
      "<tr><th scope=\"col\">Modul</th><th scope=\"col\">Art</th><th scope=\"col\" class=\"number\">Zeilen</th>"
      "<th scope=\"col\" class=\"number\">Routinen</th><th scope=\"col\">Beschreibung</th></tr>\n</thead>\n<tbody>\n";
  for (const int i : InTreeOrder(model)) AppendModuleRow(html, model.Module(i));
  html += "</tbody>\n<tfoot>\n<tr><th scope=\"row\">Summe</th><td></td><td class=\"number\">";
  html.append(GroupedNumber(CountLines(model))).append("</td><td class=\"number\">");
  html.append(GroupedNumber(static_cast<std::int64_t>(model.routines.size())));
  return html.append("</td><td></td></tr>\n</tfoot>\n</table>\n").append(kPageEnd);
}

std::string RoutinesPage(const SiteModel& model) {
  const std::vector<LetterGroup> groups = GroupByLetter(model);
  std::string html = PageHead(model, "Routinen von A bis Z", kRoutinesFile);
  if (groups.empty()) return html.append("<p>Das Projekt hat keine Routinen.</p>\n").append(kPageEnd);
  html += "<ul class=\"letters\">\n";
  for (const LetterGroup& group : groups) {
    const std::string title = group.Title();
    html += "<li>";
    AppendLink(html, "#" + title, title);
    html += "</li>\n";
  }
  html += "</ul>\n";
  for (const LetterGroup& group : groups) AppendLetter(html, model, group);
  return html.append(kPageEnd);
}

std::string UnusedPage(const SiteModel& model) {
  std::string html = PageHead(model, "Routinen ohne Aufruf", kUnusedFile);
  if (model.unused.empty()) return html.append("<p>Es gibt keine.</p>\n").append(kPageEnd);
  AppendGrades(html, model);
  html +=
      "<table>\n<caption>Nach Modulen</caption>\n<thead>\n<tr><th scope=\"col\">Routine</th><th "
      "scope=\"col\">Modul</th>"
      "<th scope=\"col\">Einstufung</th></tr>\n</thead>\n<tbody>\n";
  for (const int i : model.unused) {
    const SiteRoutine& routine = model.Routine(i);
    const SiteModule& module = model.ModuleOf(routine);
    html += "<tr><th scope=\"row\">";
    AppendLink(html, RoutineAddress(model, routine), EscapeCode(routine.record->name));
    html.append(" <small>").append(RoutineKindText(routine.record->kind)).append("</small></th><td>");
    AppendLink(html, module.page, EscapeCode(module.record->name));
    html.append("</td><td>").append(GradeWithReason(*routine.unused)).append("</td></tr>\n");
  }
  return html.append("</tbody>\n</table>\n").append(kPageEnd);
}

}  // namespace quillmate::output
