#include "option_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <system_error>
#include <utility>

#include <quillmate/checks/checks.h>
#include <quillmate/office/code_pages.h>
#include <quillmate/settings/options.h>
#include <quillmate/startup/edition.h>
#include <quillmate/symbols/compare.h>
#include <quillmate/symbols/kinds.h>
#include <quillmate/text/operations.h>

#include "messages.h"

namespace quillmate::cli {
namespace {

constexpr std::array kEditions{startup::kExcel, startup::kWord, startup::kAccess, startup::kPowerPoint,
                               startup::kVisualBasic};

void TakeSetting(Invocation& invocation, std::string_view value) {
  const std::size_t equals = value.find('=');
  if (equals == std::string_view::npos) {
    throw UsageError("--option erwartet SCHLÜSSEL=WERT statt " + Quoted(value));
  }
  std::string key(value.substr(0, equals));
  settings::Options probe;
  if (!settings::SetOption(probe, key, value.substr(equals + 1))) {
    throw UsageError("Unbekannter Schlüssel " + Quoted(key) + " in --option");
  }
  invocation.settings.emplace_back(std::move(key), value.substr(equals + 1));
}

void TakeEdition(Invocation& invocation, std::string_view value) {
  for (const int edition : kEditions) {
    if (text::EqualsIgnoreCase(startup::EditionOf(edition).hostName, value)) {
      invocation.edition = edition;
      return;
    }
  }
  throw UsageError("Unbekannte Edition " + Quoted(value));
}

void TakeOutput(Invocation& invocation, std::string_view value) {
  if (value.empty()) {
    throw UsageError("Das Ziel hinter -o ist leer");
  }
  invocation.output = value;
}

constexpr std::string_view kClassWords = "sicher host text möglich selbst inaktiv geschrieben";

/// A class is stored by its German word.
void TakeClass(std::vector<std::string>& classes, std::string_view value) {
  const std::optional<symbols::Grade> grade = symbols::GradeFromWord(value);
  if (!grade) throw UsageError("Unbekannte Klasse " + Quoted(value));
  classes.emplace_back(symbols::GermanWord(*grade));
}

/// So many letters have to be put in, left out or changed to make one text of the other.
std::size_t LettersBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t corner = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = corner + (a[i - 1] == b[j - 1] ? 0 : 1);
      corner = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

/// The id that may have been meant; nothing where none is near.
std::string_view NearestCheck(std::string_view given) {
  constexpr std::size_t kLongest = 64;
  if (given.size() > kLongest) return {};
  std::string lower(given);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  std::string_view nearest;
  std::size_t least = std::max<std::size_t>(lower.size() / 3, 2) + 1;
  for (const checks::Check& check : checks::AllChecks()) {
    const bool within = lower.size() > 3 && check.id.find(lower) != std::string_view::npos;
    const std::size_t letters = within ? 1 : LettersBetween(lower, check.id);
    if (letters >= least) continue;
    least = letters;
    nearest = check.id;
  }
  return nearest;
}

void TakeCheck(std::vector<std::string>& ids, std::string_view id) {
  if (!checks::FindCheck(id)) {
    const std::string_view nearest = NearestCheck(id);
    throw UsageError("Unbekannte Prüfung " + Quoted(id) +
                     (nearest.empty() ? "" : ", gemeint ist vielleicht " + std::string(nearest)) +
                     "; check --list zeigt alle");
  }
  ids.emplace_back(id);
}

/// "zeiger-als-long,api-signatur", blanks around them are allowed.
void TakeChecks(std::vector<std::string>& ids, std::string_view value) {
  for (std::string_view rest = value;;) {
    const std::string_view part = text::TextBefore(rest, ",");
    const std::size_t first = std::min(part.find_first_not_of(' '), part.size());
    TakeCheck(ids, part.substr(first, part.find_last_not_of(' ') + 1 - first));
    if (part.size() == rest.size()) return;
    rest.remove_prefix(part.size() + 1);
  }
}

void TakeSeverity(Invocation& invocation, std::string_view value) {
  for (const auto known : {checks::Severity::kError, checks::Severity::kWarning, checks::Severity::kNote}) {
    if (checks::Word(known) != value) continue;
    invocation.failOn.assign(1, std::string(value));
    return;
  }
  throw UsageError("Unbekannte Stufe " + Quoted(value));
}

void TakeCodePage(Invocation& invocation, std::string_view value) {
  const std::optional<int> number = office::FindCodePage(value);
  if (!number) throw UsageError("Unbekannter Zeichensatz " + Quoted(value));
  invocation.codePage = *number;
}

/// A number from 1 on.
std::uint32_t PositiveNumber(std::string_view option, std::string_view value) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size() || number == 0) {
    throw UsageError(std::string(option) + " erwartet eine Zahl ab 1 statt " + Quoted(value));
  }
  return number;
}

/// Each command that takes a form has one beside its usual one.
template <std::uint64_t set>
void TakeFormat(Invocation& invocation, std::string_view value) {
  constexpr std::string_view kOnly = set == kTakesTagFormat ? "emacs" : "vimgrep";
  if (value != kOnly) throw UsageError("Unbekannte Form " + Quoted(value));
  invocation.format = value;
}

constexpr std::string_view kTrivialWords = "layout comment case";

/// "layout,comment"
void TakeIgnored(Invocation& invocation, std::string_view value) {
  for (std::string_view rest = value;;) {
    const std::string_view word = text::TextBefore(rest, ",");
    if (word == "layout") {
      invocation.ignore |= symbols::trivial::kLayout;
    } else if (word == "comment") {
      invocation.ignore |= symbols::trivial::kComment;
    } else if (word == "case") {
      invocation.ignore |= symbols::trivial::kCase;
    } else {
      throw UsageError("Unbekannte Art " + Quoted(word) + " hinter --ignore");
    }
    if (word.size() == rest.size()) return;
    rest.remove_prefix(word.size() + 1);
  }
}

/// "3/16"
void TakeShard(Invocation& invocation, std::string_view value) {
  const std::string_view part = text::TextBefore(value, "/");
  if (part.size() == value.size()) throw UsageError("--shard erwartet TEIL/TEILE statt " + Quoted(value));
  invocation.shard = PositiveNumber("--shard", part);
  invocation.shards = PositiveNumber("--shard", value.substr(part.size() + 1));
  if (invocation.shard > invocation.shards) throw UsageError("So viele Teile gibt es nicht: --shard " + Quoted(value));
}

constexpr std::array kOptions{
    OptionSpec{"-o", "ZIEL", "schreibt in die Datei (index, site: in den Ordner); - ist die Standardausgabe",
               kTakesOutput, TakeOutput},
    OptionSpec{"--force", "",
               "überschreibt einen vorhandenen Projektordner; site: schreibt auch in einen fremden Ordner", kTakesForce,
               [](Invocation& i, std::string_view) { i.force = true; }},
    OptionSpec{"--partial", "", "ersetzt ein Projekt auch dann, wenn nicht alles gelesen werden konnte", kTakesPartial,
               [](Invocation& i, std::string_view) { i.partial = true; }},
    OptionSpec{"--module", "NAME", "nur dieses Modul; callers, definition: von diesem Modul aus", kTakesModule,
               [](Invocation& i, std::string_view value) { i.module = value; }},
    OptionSpec{"--routine", "NAME", "die Routine des Moduls, deren Aufrufer gesucht werden", kTakesRoutine,
               [](Invocation& i, std::string_view value) { i.routine = value; }},
    OptionSpec{"--name", "NAME", "der Bezeichner, dessen Definition gesucht wird", kTakesName,
               [](Invocation& i, std::string_view value) { i.name = value; }},
    OptionSpec{"--whole-word", "", "findet nur ganze Wörter", kTakesWholeWord,
               [](Invocation& i, std::string_view) { i.wholeWord = true; }},
    OptionSpec{"--regex", "", "der Suchtext ist ein regulärer Ausdruck (PCRE); ^ und $ sind die Grenzen einer Zeile",
               kTakesRegex, [](Invocation& i, std::string_view) { i.regex = true; }},
    OptionSpec{"--only", "KLASSE", "listet nur diese Klasse; mehrfach möglich", kTakesClasses,
               [](Invocation& i, std::string_view value) { TakeClass(i.only, value); }, kClassWords},
    OptionSpec{"--fail-on", "KLASSE", "Rückgabewert 1, wenn es eine Routine dieser Klasse gibt; mehrfach möglich",
               kTakesClasses, [](Invocation& i, std::string_view value) { TakeClass(i.failOn, value); }, kClassWords},
    OptionSpec{"--only", "ID", "nur diese Prüfung; mehrere mit Komma, auch mehrfach", kTakesChecks,
               [](Invocation& i, std::string_view value) { TakeChecks(i.only, value); }},
    OptionSpec{"--except", "ID", "ohne diese Prüfung; mehrere mit Komma, auch mehrfach", kTakesChecks,
               [](Invocation& i, std::string_view value) { TakeChecks(i.except, value); }},
    OptionSpec{"--fail-on", "STUFE", "Rückgabewert 1, wenn es einen Befund dieser oder einer schwereren Stufe gibt",
               kTakesChecks, TakeSeverity, "fehler warnung hinweis"},
    OptionSpec{"--list", "", "zeigt alle Prüfungen, ohne etwas zu lesen", kTakesChecks,
               [](Invocation& i, std::string_view) { i.list = true; }},
    OptionSpec{"--all", "", "auch die Prüfungen, die nur auf Verlangen laufen", kTakesChecks,
               [](Invocation& i, std::string_view) { i.all = true; }},
    OptionSpec{"--sarif", "", "SARIF 2.1.0 für Werkzeuge zur Codedurchsicht", kTakesChecks,
               [](Invocation& i, std::string_view) { i.sarif = true; }},
    OptionSpec{"--line", "N", "Zeile im Code des Moduls, wie der Editor sie zählt", kTakesPlace,
               [](Invocation& i, std::string_view value) { i.line = PositiveNumber("--line", value); }},
    OptionSpec{"--column", "N", "Spalte in dieser Zeile, in Zeichen ab 1", kTakesPlace,
               [](Invocation& i, std::string_view value) { i.column = PositiveNumber("--column", value); }},
    OptionSpec{"--down", "", "was die Routine aufruft, statt was sie aufruft", kTakesDepth,
               [](Invocation& i, std::string_view) { i.down = true; }},
    OptionSpec{"--depth", "N", "so viele Stufen; Vorgabe: alle", kTakesDepth,
               [](Invocation& i, std::string_view value) { i.depth = PositiveNumber("--depth", value); }},
    OptionSpec{"--limit", "KB", "so groß darf das Ergebnis werden, in 1000 Byte; Vorgabe: 500", kTakesLimit,
               [](Invocation& i, std::string_view value) { i.limit = PositiveNumber("--limit", value); }},
    OptionSpec{"--exact", "", "nach dem genauen Verständnis des Codes; unused: alles Unbenutzte jeder Art", kTakesExact,
               [](Invocation& i, std::string_view) { i.exact = true; }},
    OptionSpec{"--dot", "", "als Graph in der Sprache DOT", kTakesDepth,
               [](Invocation& i, std::string_view) { i.dot = true; }},
    OptionSpec{"--baseline", "DATEI", "nur, was nicht in dieser Liste steht; gibt es so etwas, ist der Rückgabewert 1",
               kTakesBaseline, [](Invocation& i, std::string_view value) { i.baseline = value; }},
    OptionSpec{"--write-baseline", "DATEI", "schreibt die Liste für --baseline", kTakesBaseline,
               [](Invocation& i, std::string_view value) { i.writeBaseline = value; }},
    OptionSpec{"--format", "FORM", "Zeilen, wie Editoren sie lesen", kTakesEditorFormat, TakeFormat<kTakesEditorFormat>,
               "vimgrep"},
    OptionSpec{"--format", "FORM", "in der Form eines anderen Editors", kTakesTagFormat, TakeFormat<kTakesTagFormat>,
               "emacs"},
    OptionSpec{"--count", "", "zählt nur, wie viele es von jeder Art sind", kTakesCount,
               [](Invocation& i, std::string_view) { i.count = true; }},
    OptionSpec{"--html", "DATEI", "schreibt einen Bericht, in dem beide Stände nebeneinander stehen", kTakesCompare,
               [](Invocation& i, std::string_view value) { i.htmlFile = value; }},
    OptionSpec{"--md", "", "Markdown für die Durchsicht", kTakesCompare,
               [](Invocation& i, std::string_view) { i.markdown = true; }},
    OptionSpec{"--stat", "", "nur wie viel sich in jedem Modul geändert hat", kTakesCompare,
               [](Invocation& i, std::string_view) { i.stat = true; }},
    OptionSpec{"--ignore", "ART", "Unterschiede dieser Art zählen nicht; mehrere mit Komma", kTakesCompare, TakeIgnored,
               kTrivialWords},
    OptionSpec{"--textconv", "", "für git diff: UTF-8, und eine Datei ohne lesbaren Code ist kein Fehler",
               kTakesTextconv, [](Invocation& i, std::string_view) { i.textconv = true; }},
    OptionSpec{"--title", "TEXT", "Titel der Dokumentation statt des Namens der Eingabe", kTakesTitle,
               [](Invocation& i, std::string_view value) { i.title = value; }},
    OptionSpec{"--credit", "", "hängt den Hinweis auf das Erstellungsprogramm an", kTakesCredit,
               [](Invocation& i, std::string_view) { i.credit = true; }},
    OptionSpec{"--json", "", "JSON statt einer Tabelle", kTakesJson,
               [](Invocation& i, std::string_view) { i.json = true; }},
    OptionSpec{"--csv", "", "CSV für Tabellenprogramme", kTakesCsv,
               [](Invocation& i, std::string_view) { i.csv = true; }},
    OptionSpec{"--strict", "", "Rückgabewert 1, wenn irgendetwas ausgelassen wurde", kTakesHost,
               [](Invocation& i, std::string_view) { i.strict = true; }},
    OptionSpec{"--files-from", "DATEI", "nimmt die Zeilen der Datei als weitere Eingaben; - ist die Standardeingabe",
               kTakesHost, [](Invocation& i, std::string_view value) { i.filesFrom = value; }},
    OptionSpec{"--codepage", "NAME", "Zeichensatz von Moduldateien, die keinen nennen, z.B. 1251, GBK, KOI8-R",
               kTakesHost, TakeCodePage},
    OptionSpec{"--host", "", "liest die geöffneten Projekte des laufenden Office-Programms, vor den Eingaben",
               kTakesHost, [](Invocation& i, std::string_view) { i.host = true; }},
    OptionSpec{"--excel4", "", "nimmt die Formeln von Excel-4-Makroblättern als Module, wo die Datei sie als Text hat",
               kTakesHost, [](Invocation& i, std::string_view) { i.excel4 = true; }},
    OptionSpec{"--files-from", "DATEI", "nimmt die Zeilen der Datei als weitere Wurzeln; - ist die Standardeingabe",
               kTakesInventory, [](Invocation& i, std::string_view value) { i.filesFrom = value; }},
    OptionSpec{"--exclude", "MUSTER",
               "lässt Dateien und Ordner aus, deren Name so lautet (mit / darin: deren Pfad); mehrfach möglich",
               kTakesInventory, [](Invocation& i, std::string_view value) { i.exclude.emplace_back(value); }},
    OptionSpec{"--shard", "TEIL/TEILE", "nur diesen von so vielen Teilen, z.B. 3/16", kTakesInventory, TakeShard},
    OptionSpec{"--jobs", "N", "so viele Dateien werden zugleich gelesen; Vorgabe: eine je Kern", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.jobs = PositiveNumber("--jobs", value); }},
    OptionSpec{"--time-limit", "S", "so viele Sekunden darf eine Datei brauchen; Vorgabe: 60", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.timeLimit = PositiveNumber("--time-limit", value); }},
    OptionSpec{"--memory-limit", "MB", "so viel Speicher darf ein Leser haben; Vorgabe: 2048", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.memoryLimit = PositiveNumber("--memory-limit", value); }},
    OptionSpec{"--retry", "", "liest auch noch einmal, was zu lange dauerte oder den Leser abstürzen ließ",
               kTakesInventory, [](Invocation& i, std::string_view) { i.retry = true; }},
    OptionSpec{"--since", "LAUF", "nur was seit diesem Lauf neu, geändert oder verschwunden ist", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.since = PositiveNumber("--since", value); }},
    OptionSpec{"--xlsx", "DATEI", "schreibt den Bericht als Arbeitsmappe", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.xlsxFile = value; }},
    OptionSpec{"--html", "DATEI", "schreibt den Bericht als eine Seite, die nichts weiter braucht", kTakesInventory,
               [](Invocation& i, std::string_view value) { i.htmlFile = value; }},
    OptionSpec{"--option", "SCHLÜSSEL=WERT", "setzt eine Einstellung, z.B. einr=-1; mehrfach möglich", kAnyCommand,
               TakeSetting, "fkey fkom fstr rouf aufk leer vor rer rle meld einr stapro tab font usb"},
    OptionSpec{"--user-settings", "", "geht von den gespeicherten Einstellungen aus", kAnyCommand,
               [](Invocation& i, std::string_view) { i.userSettings = true; }},
    OptionSpec{"--edition", "NAME", "Office-Programm, um das es geht; Vorgabe: excel", kAnyCommand, TakeEdition,
               "excel word access powerpoint visualbasic"},
    OptionSpec{"--help", "", "zeigt diese Hilfe, hinter einem Befehl die des Befehls", kAnyCommand,
               [](Invocation& i, std::string_view) { i.help = true; }},
    OptionSpec{"--version", "", "zeigt die Version", kAnyCommand,
               [](Invocation& i, std::string_view) { i.version = true; }},
};

}  // namespace

std::span<const OptionSpec> AllOptions() { return kOptions; }

}  // namespace quillmate::cli
