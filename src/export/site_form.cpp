#include <algorithm>
#include <utility>
#include <vector>

#include <quillmate/language/parse.h>

#include "site_form_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using symbols::SymbolId;
using symbols::SymbolKind;

/// A routine of the module that is named like a handler: "cmdOk_Click".
struct Handler {
  std::string object;  ///< folded
  std::string_view event;
  SymbolId routine;
};

std::vector<Handler> HandlersOf(const symbols::ReferenceIndex& known, const symbols::ModuleInfo& info) {
  std::vector<Handler> handlers;
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    const std::string_view name = known.Name(symbol);
    const std::size_t line = name.rfind('_');
    if (known.SymbolAt(symbol).kind != SymbolKind::kSub || line == std::string_view::npos) continue;
    handlers.push_back({language::FoldName(name.substr(0, line)), name.substr(line + 1), symbol});
  }
  std::ranges::stable_sort(handlers, {}, &Handler::object);
  return handlers;
}

void AppendHandlers(std::string& html, const SiteModel& model, int module, const std::vector<Handler>& handlers,
                    const std::string& object) {
  std::string_view between;
  const auto last = std::ranges::upper_bound(handlers, object, {}, &Handler::object);
  for (auto at = std::ranges::lower_bound(handlers, object, {}, &Handler::object); at != last; ++at) {
    const Handler& handler = *at;
    html += std::exchange(between, ", ");
    const int routine = model.RoutineOf(handler.routine);
    const std::string event = EscapeUtf8(handler.event);
    routine == kNoRoutine ? void(html += event)
                          : AppendLink(html, RoutineAddress(model, model.Routine(routine), module), event);
  }
  if (between.empty()) html += "keine";
}

}  // namespace

void AppendControls(std::string& html, const SiteContents& site, int module) {
  const symbols::ReferenceIndex& known = site.model.known;
  const symbols::Index number = site.model.Module(module).number;
  if (number == symbols::kNone) return;
  const symbols::ModuleInfo& info = known.Modules()[number];
  std::vector<Handler> handlers;
  bool isFirst = true;
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    if (known.SymbolAt(symbol).kind != SymbolKind::kControl) continue;
    if (std::exchange(isFirst, false)) {
      handlers = HandlersOf(known, info);
      html +=
          "<h2 id=\"steuerelemente\">Steuerelemente</h2>\n<table class=\"declared\">\n<thead>\n<tr><th "
          "scope=\"col\">Name"
          "</th><th scope=\"col\">Art</th><th scope=\"col\">Beschriftung</th><th scope=\"col\">Behandelte "
          "Ereignisse</th>"
          "<th scope=\"col\">Verwendungen</th></tr>\n</thead>\n<tbody>\n";
    }
    html += "<tr><th scope=\"row\">";
    html.append(EscapeUtf8(known.Name(symbol))).append("</th><td>");
    html.append(EscapeUtf8(known.DeclaredType(symbol))).append("</td><td>");
    html.append(EscapeLines(site.Caption(number, known.Name(symbol)))).append("</td><td>");
    AppendHandlers(html, site.model, module, handlers, language::FoldName(known.Name(symbol)));
    html += "</td><td>";
    std::string address;
    site.declarations.AppendAddress(address, symbol);
    AppendLink(html, address, site.declarations.UseCount(symbol));
    html += "</td></tr>\n";
  }
  if (!isFirst) html += "</tbody>\n</table>\n";
}

}  // namespace quillmate::output
