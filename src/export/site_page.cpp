#include "site_page_p.h"
#include "site_style_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

struct NavigationLink {
  const char* file;
  std::string_view text;
};

constexpr NavigationLink kNavigation[] = {
    {kStartFile, "Module"},
    {kRoutinesFile, "Routinen von A bis Z"},
    {kDeclarationsFile, "Deklarationen"},
    {kUnusedFile, "Ohne Aufruf"},
    {kDependenciesFile, "Abhängigkeiten"},
    {kTreesFile, "Aufrufbäume"},
    {kFindingsFile, "Befunde"},
    {kMetricsFile, "Kennzahlen"},
    {kSearchFile, "Suche"},
};

void AppendNavigation(std::string& html, std::string_view current, bool isPart) {
  html += "<nav aria-label=\"Seiten\">\n<ul>\n";
  for (const NavigationLink& link : kNavigation) {
    html.append("<li><a href=\"").append(link.file).append("\"");
    if (current == link.file) html += isPart ? " aria-current=\"true\"" : " aria-current=\"page\"";
    html.append(">").append(link.text).append("</a></li>\n");
  }
  html += "</ul>\n</nav>\n";
}

/// Leads to the page of the search with what was typed.
constexpr std::string_view kSearchForm =
    "<form action=\"suche.html\" role=\"search\"><label><span>Suche</span> <input type=\"search\" name=\"q\"></label> "
    "<button type=\"submit\">Suchen</button></form>\n";

}  // namespace

std::string PageHead(const SiteModel& model, std::string_view title, std::string_view file, bool isPart) {
  const std::string project = EscapeUtf8(model.project.title);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
  html.append(title);
  if (title != project) html.append(" – ").append(project);
  html.append("</title>\n<link rel=\"stylesheet\" href=\"").append(kStyleFile).append("\">\n</head>\n<body>\n");
  html += "<a class=\"skip\" href=\"#inhalt\">Zum Inhalt</a>\n";
  html.append("<header>\n<p>").append(project).append("</p>\n");
  if (file != kSearchFile) html += kSearchForm;
  AppendNavigation(html, file, isPart);
  return html.append("</header>\n<main id=\"inhalt\">\n<h1>").append(title).append("</h1>\n");
}

}  // namespace quillmate::output
