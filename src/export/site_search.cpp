#include <quillmate/text/windows1252.h>

#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_search_p.h"

namespace quillmate::output {
namespace {

/// Words of an entry's comment that can be found and shown.
constexpr std::size_t kLongest = 300;

/// Finds entries that hold every word, regardless of case: names that begin with the first one go before names that
/// hold it, these before comments. What is shown is set as text, never as markup.
constexpr std::string_view kScript = R"js(
(function () {
  var field = document.getElementById("suchfeld");
  var list = document.getElementById("treffer");
  var state = document.getElementById("anzahl");
  var shown = 200;
  var names = entries.map(function (e) { return e[0].toLowerCase(); });
  var texts = entries.map(function (e) { return (e[0] + " " + e[1] + " " + e[3]).toLowerCase(); });
  function rank(i, words) {
    for (var w = 0; w < words.length; ++w) {
      if (texts[i].indexOf(words[w]) < 0) return -1;
    }
    var at = names[i].indexOf(words[0]);
    return at === 0 ? 0 : at > 0 ? 1 : 2;
  }
  function item(entry) {
    var row = document.createElement("li");
    var link = document.createElement("a");
    link.href = entry[2];
    link.textContent = entry[0];
    var about = document.createElement("small");
    about.textContent = " " + entry[1] + (entry[3] ? ": " + entry[3] : "");
    row.appendChild(link);
    row.appendChild(about);
    return row;
  }
  function search() {
    var words = field.value.toLowerCase().split(/\s+/).filter(function (word) { return word; });
    var found = [[], [], []];
    if (words.length) {
      for (var i = 0; i < entries.length; ++i) {
        var r = rank(i, words);
        if (r >= 0) found[r].push(i);
      }
    }
    var all = found[0].concat(found[1], found[2]);
    var rows = document.createDocumentFragment();
    all.slice(0, shown).forEach(function (i) { rows.appendChild(item(entries[i])); });
    list.replaceChildren(rows);
    state.textContent = !words.length ? "" : all.length === 1 ? "1 Treffer"
      : all.length + " Treffer" + (all.length > shown ? ", die ersten " + shown : "");
  }
  field.addEventListener("input", search);
  search();
}());
)js";

/// The beginning of a description, on one line; cut between words.
std::string Beginning(std::string plain) {
  for (char& c : plain) c = c == '\n' ? ' ' : c;
  if (plain.size() <= kLongest) return plain;
  const std::size_t blank = plain.find_last_of(' ', kLongest);
  return plain.substr(0, blank == std::string::npos ? 0 : blank) + " …";
}

/// A string of the script; nothing in it ends the script or its line.
void AppendString(std::string& script, std::string_view utf8) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  script += '"';
  for (const char c : utf8) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      (script += '\\') += c;
    } else if (code < 0x20 || c == '<') {
      ((script += "\\u00") += kDigits[code >> 4U]) += kDigits[code & 0xFU];
    } else {
      script += c;
    }
  }
  script += '"';
}

void AppendEntry(std::string& script, std::string_view name, std::string_view about, std::string_view address,
                 const std::string& comment) {
  script += script.back() == '[' ? "\n[" : ",\n[";
  AppendString(script, name);
  for (const std::string_view part : {about, address, std::string_view(comment)}) {
    script += ',';
    AppendString(script, part);
  }
  script += ']';
}

}  // namespace

std::string SearchPage(const SiteModel& model) {
  std::string html = PageHead(model, "Suche", kSearchFile);
  html +=
      "<p><label for=\"suchfeld\">Namen und Wörter aus Kommentaren:</label> "
      "<input type=\"search\" id=\"suchfeld\" name=\"suchfeld\" autocomplete=\"off\"></p>\n"
      "<p id=\"anzahl\" role=\"status\"></p>\n<ul class=\"names\" id=\"treffer\"></ul>\n"
      "<noscript><p>Die Suche braucht ein Skript. Ohne Skripte hilft die Liste ";
  AppendLink(html, kRoutinesFile, "Routinen von A bis Z");
  html.append(".</p></noscript>\n<script src=\"").append(kSearchScript).append("\"></script>\n");
  return html.append(kPageEnd);
}

std::string SearchScript(const SiteModel& model, const std::vector<std::string>& comments) {
  std::string script = "\"use strict\";\nvar entries = [";
  for (const SiteModule& module : model.modules) {
    AppendEntry(script, text::Utf8FromCode(module.record->name), ModuleKindText(module.record->kind), module.page,
                Beginning(module.description.text));
  }
  for (std::size_t i = 0; i < model.routines.size(); ++i) {
    const SiteRoutine& routine = model.routines[i];
    const std::string about = std::string(RoutineKindText(routine.record->kind)) + " in " +
                              text::Utf8FromCode(model.ModuleOf(routine).record->name);
    AppendEntry(script, text::Utf8FromCode(routine.record->name), about, RoutineAddress(model, routine),
                i < comments.size() ? Beginning(comments[i]) : std::string());
  }
  return script.append("\n];").append(kScript);
}

}  // namespace quillmate::output
