#include "commands.h"

#include <algorithm>
#include <array>
#include <string>

#include <quillmate/text/operations.h>

#include "messages.h"
#include "option_table.h"

namespace quillmate::cli {
namespace {

constexpr std::array kCommands{
    Command{"index", "-o ORDNER [--force] [--partial] EINGABE...",
            "schreibt einen Projektordner, den das Fenster öffnet",
            kTakesOutput | kTakesForce | kTakesPartial | kTakesHost, 0, 1, RunIndex},
    Command{"modules", "[--exact] [--json] [-o DATEI] EINGABE...", "Module und Routinen mit allen Feldern des Index",
            kTakesJson | kTakesExact | kTakesOutput | kTakesHost, 0, 1, RunModules},
    Command{"outline", "[--exact] [-o DATEI] EINGABE...", "die Struktur: jedes Modul mit seinen Routinen",
            kTakesExact | kTakesOutput | kTakesHost, 0, 1, RunOutline},
    Command{"text", "[--module NAME] [-o DATEI] EINGABE...", "der Code eines Moduls oder des Projekts",
            kTakesModule | kTakesOutput | kTakesTextconv | kTakesHost, 0, 1, RunText},
    Command{"rtf", "[--module NAME] [-o DATEI] EINGABE...", "ein Modul oder das Projekt als RTF",
            kTakesModule | kTakesOutput | kTakesHost, 0, 1, RunRtf},
    Command{"html", "[--module NAME] [--credit] [-o DATEI] EINGABE...", "ein Modul oder das Projekt als HTML",
            kTakesModule | kTakesCredit | kTakesOutput | kTakesHost, 0, 1, RunHtml},
    Command{"clip", "[--credit] [-o DATEI] [DATEI]", "Code aus der Datei oder der Standardeingabe als HTML",
            kTakesCredit | kTakesOutput, 0, 0, RunClip},
    Command{"site", "-o ORDNER [--title TEXT] [--force] EINGABE...", "schreibt die HTML-Dokumentation des Projekts",
            kTakesOutput | kTakesTitle | kTakesForce | kTakesHost, 0, 1, RunSite},
    Command{"unused",
            "[--exact] [--only KLASSE] [--fail-on KLASSE] [--baseline DATEI] [--write-baseline DATEI] [--json] [-o "
            "DATEI] EINGABE...",
            "Routinen, die nichts aufruft, mit ihrer Klasse",
            kTakesClasses | kTakesExact | kTakesBaseline | kTakesJson | kTakesOutput | kTakesHost, 0, 1, RunUnused},
    Command{"callers", "--module NAME --routine NAME [--json] [-o DATEI] EINGABE...", "die Aufrufer einer Routine",
            kTakesModule | kTakesRoutine | kTakesJson | kTakesOutput | kTakesHost, 0, 1, RunCallers},
    Command{"definition", "--module NAME --name NAME [--json] [-o DATEI] EINGABE...",
            "wo ein Bezeichner definiert ist, vom Modul aus gesehen",
            kTakesModule | kTakesName | kTakesJson | kTakesOutput | kTakesHost, 0, 1, RunDefinition},
    Command{"search", "[--whole-word] [--regex] [--json] [--format FORM] [-o DATEI] TEXT EINGABE...",
            "alle Fundstellen eines Textes im Code",
            kTakesWholeWord | kTakesRegex | kTakesEditorFormat | kTakesJson | kTakesOutput | kTakesHost, 1, 1,
            RunSearch},
    Command{"symbols", "[--json] [--count] [-o DATEI] EINGABE...",
            "alles, was der Code deklariert, mit jeder Verwendung",
            kTakesJson | kTakesCount | kTakesOutput | kTakesHost, 0, 1, RunSymbols},
    Command{"references",
            "--module NAME (--line N --column N | --name NAME) [--json] [--format FORM] [-o DATEI] EINGABE...",
            "was ein Name dort bedeutet und wo er verwendet wird",
            kTakesModule | kTakesPlace | kTakesName | kTakesEditorFormat | kTakesJson | kTakesOutput | kTakesHost, 0, 1,
            RunReferences},
    Command{"calls", "--module NAME --routine NAME [--down] [--depth N] [--json | --dot] [-o DATEI] EINGABE...",
            "wer eine Routine aufruft, über alle Stufen, mit den Zeilen",
            kTakesModule | kTakesRoutine | kTakesDepth | kTakesJson | kTakesOutput | kTakesHost, 0, 1, RunCalls},
    Command{"compare", "[--json | --md | --stat] [--html DATEI] [--ignore ART] [-o DATEI] ALT NEU",
            "was sich zwischen zwei Ständen geändert hat, Routine für Routine",
            kTakesJson | kTakesOutput | kTakesCompare, 0, 1, RunCompare, kExitNotCompared},
    Command{"tags", "[--format FORM] [-o DATEI] EINGABE...",
            "eine Tag-Datei, mit der Editoren zu Deklarationen springen", kTakesTagFormat | kTakesOutput | kTakesHost,
            0, 1, RunTags},
    Command{"check",
            "[--list] [--all] [--only ID] [--except ID] [--fail-on STUFE] [--baseline DATEI] [--write-baseline DATEI] "
            "[--json | --csv | --sarif] [-o DATEI] EINGABE...",
            "Befunde: Stellen, die falsch, riskant oder wissenswert sind, und was zu tun ist",
            kTakesChecks | kTakesBaseline | kTakesJson | kTakesCsv | kTakesOutput | kTakesHost, 0, 1, RunCheck},
    Command{"digest", "[--title TEXT] [--limit KB] [-o DATEI] EINGABE...",
            "alles Wissenswerte in einer Markdown-Datei, für Menschen und Assistenten",
            kTakesTitle | kTakesLimit | kTakesOutput | kTakesHost, 0, 1, RunDigest},
    Command{"metrics", "[--json | --csv] [-o DATEI] EINGABE...",
            "Größe, Komplexität und Aufrufe jeder Routine und jedes Moduls, mit den Definitionen der Zahlen",
            kTakesJson | kTakesCsv | kTakesOutput | kTakesHost, 0, 1, RunMetrics},
    Command{"inventory",
            "scan -o BESTAND [--shard TEIL/TEILE] [--exclude MUSTER] WURZEL... | merge -o BESTAND TEIL... | report "
            "[--json | --csv] [--xlsx DATEI] [--html DATEI] [--since LAUF] BESTAND",
            "der Bestand ganzer Ablagen in einer Datenbank: lesen, Teile zusammenführen, berichten",
            kTakesInventory | kTakesJson | kTakesCsv | kTakesOutput, 1, 1, RunInventory},
};

constexpr std::size_t kTextColumn = 28;

std::size_t CharactersIn(std::string_view utf8) {
  const auto starts = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return static_cast<std::size_t>(std::ranges::count_if(utf8, starts));
}

/// "  name   text", with the texts of a list below each other.
std::string ListLine(const std::string& name, std::string_view text) {
  std::string line = "  " + name + "  ";
  const std::size_t width = CharactersIn(line);
  line.append(width < kTextColumn ? kTextColumn - width : 0, ' ');
  return line.append(text) + "\n";
}

std::string CommandList() {
  std::string text = "\nBefehle:\n";
  for (const Command& command : kCommands) {
    text += ListLine(std::string(command.name), command.summary);
  }
  return text;
}

std::string OptionList(std::uint64_t allowed) {
  std::string text = "\nOptionen:\n";
  for (const OptionSpec& option : AllOptions()) {
    if ((option.bit & allowed) != 0) {
      const std::string value = option.value.empty() ? "" : " " + std::string(option.value);
      std::string help(option.help);
      if (!option.words.empty()) help += " (" + text::ReplaceAll(option.words, " ", ", ") + ")";
      text += ListLine(std::string(option.name) + value, help);
    }
  }
  return text;
}

constexpr std::string_view kInputHelp =
    "\nEINGABE ist ein gespeicherter Projektordner (mit der Datei Quillmate.mdb) oder beliebig viele\n"
    "Quellen, die in der angegebenen Reihenfolge gelesen werden: Moduldateien (.bas, .cls, .frm, ...),\n"
    "Ordner mit Moduldateien, VB-Projektdateien, Office-Dateien. Module mit höchstens zwei Zeilen werden\n"
    "nicht gelesen. Mit --host kann EINGABE fehlen; gelesen wird das Programm der Edition (nur unter Windows).\n"
    "Die Quelle - ist die Standardeingabe. NAME eines Moduls ist Modul oder, wo mehrere so heißen, Projekt.Modul.\n";

constexpr std::string_view kCompareHelp =
    "\nALT und NEU sind je eine Office-Datei, Moduldatei oder VB-Projektdatei, ein Ordner, ein gespeicherter\n"
    "Projektordner oder git:REV:PFAD, eine Datei oder ein Ordner in einer Revision eines Repositorys (REV leer:\n"
    "was vorgemerkt ist; PFAD ab dem Repository, mit ./ ab dem aktuellen Ordner).\n"
    "\nRückgabewert: 0 gleich, 1 verschieden, 2 falscher Aufruf, 3 eine Seite ist nicht oder nicht ganz lesbar.\n"
    "Was eine Seite nicht hergibt, wird genannt und gilt nie als entfallen.\n";

constexpr std::string_view kInventoryHelp =
    "\nscan liest alles unter den WURZELn, was Makros enthalten kann, in die Datenbank BESTAND; der nächste Lauf\n"
    "liest nur, was sich geändert hat. merge führt Teile zusammen, die mit --shard entstanden sind, in beliebiger\n"
    "Reihenfolge und beliebig oft. report sagt, was im Bestand steht; ohne Option als Übersicht.\n"
    "\nRückgabewert: 0 erledigt, 1 eine Wurzel fehlt, ein Ordner ist nicht lesbar oder der Lauf wurde abgebrochen,\n"
    "2 falscher Aufruf. Dateien, die sich nicht lesen lassen, stehen mit dem Grund im Bestand.\n";

constexpr std::string_view kEncodingHelp =
    "\ntext, rtf, html und clip schreiben Windows-1252, alles andere ist UTF-8; ein Terminal bekommt immer\n"
    "UTF-8, Steuerzeichen als \\u001b.\n"
    "\nRückgabewert: 0 erledigt, 1 genannte Eingabe nicht lesbar, Ausgabe nicht schreibbar oder Gesuchtes\n"
    "nicht gefunden, 2 falscher Aufruf.\n";

}  // namespace

std::span<const Command> AllCommands() { return kCommands; }

const Command* FindCommand(std::string_view name) {
  const auto* const found = std::ranges::find(kCommands, name, &Command::name);
  return found == kCommands.end() ? nullptr : found;
}

std::string UsageLine(const Command* command) {
  std::string line = "Aufruf: " + std::string(kProgramName) + " ";
  if (command == nullptr) {
    return line + "BEFEHL [Optionen] EINGABE...";
  }
  return line.append(command->name).append(" ").append(command->arguments);
}

std::string HelpText(const Command* command) {
  std::string text = UsageLine(command) + "\n";
  if (command != nullptr) {
    text.append("\n").append(command->name).append(": ").append(command->summary).append("\n");
    text += OptionList(command->options | kAnyCommand);
    if (command->run == RunCompare) return text.append(kCompareHelp);
    if (command->run == RunInventory) return text.append(kInventoryHelp);
    return command->minInputs > 0 ? text.append(kInputHelp) : text;
  }
  text += "\nDokumentiert den Makrocode von Office-Dateien und VB-Projekten ohne Fenster.\n";
  return text.append(CommandList()).append(OptionList(~std::uint64_t{0})).append(kInputHelp).append(kEncodingHelp);
}

}  // namespace quillmate::cli
