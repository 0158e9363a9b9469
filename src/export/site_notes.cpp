#include <algorithm>
#include <string_view>

#include "site_notes_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {

void AppendNotes(std::string& html, const SiteModel& model, int module) {
  const codedb::ModuleNumber number = model.Module(module).record->number;
  const auto first = std::ranges::lower_bound(model.project.notes, number, {}, &SiteNote::module);
  const auto last = std::ranges::upper_bound(model.project.notes, number, {}, &SiteNote::module);
  if (first == last) return;
  html +=
      "<h2 id=\"notizen\">Notizen</h2>\n<table class=\"declared\">\n<thead>\n<tr><th scope=\"col\">Zeile</th>"
      "<th scope=\"col\">Notiz</th></tr>\n</thead>\n<tbody>\n";
  for (auto note = first; note != last; ++note) {
    const std::string line = std::to_string(note->line.value);
    html += "<tr><td>";
    AppendLink(html, "#z" + line, "Zeile " + line);
    html += "</td><td>";
    std::string_view text = note->text;
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n')) {
      html.append(EscapeUtf8(text.substr(0, end))).append("<br>");
      text.remove_prefix(end + 1);
    }
    html.append(EscapeUtf8(text)).append("</td></tr>\n");
  }
  html += "</tbody>\n</table>\n";
}

}  // namespace quillmate::output
