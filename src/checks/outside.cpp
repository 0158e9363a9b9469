#include <algorithm>
#include <array>
#include <string>

#include <quillmate/text/operations.h>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::NameUse;
using language::Statement;
using language::StatementKind;

/// Where a name has to be to mean what it says.
enum class Place : std::uint8_t {
  kGlobal,  ///< on its own or after its library
  kMember,  ///< after "." of something that the sources don't declare
};

struct NameRow {
  Known name;
  Place place;
  CheckId check;
  std::string_view does;  ///< after the name
};
constexpr std::array kNames{
    NameRow{Known::kShell, Place::kGlobal, CheckId::kProgram, " startet ein Programm."},
    NameRow{Known::kSendKeys, Place::kGlobal, CheckId::kKeys, " schickt Tasten an das gerade aktive Fenster."},
    NameRow{Known::kGetSetting, Place::kGlobal, CheckId::kRegistry, " liest aus der Registrierung."},
    NameRow{Known::kGetAllSettings, Place::kGlobal, CheckId::kRegistry, " liest aus der Registrierung."},
    NameRow{Known::kSaveSetting, Place::kGlobal, CheckId::kRegistry, " schreibt in die Registrierung."},
    NameRow{Known::kDeleteSetting, Place::kGlobal, CheckId::kRegistry, " löscht in der Registrierung."},
    NameRow{Known::kRegRead, Place::kMember, CheckId::kRegistry, " liest aus der Registrierung."},
    NameRow{Known::kRegWrite, Place::kMember, CheckId::kRegistry, " schreibt in die Registrierung."},
    NameRow{Known::kRegDelete, Place::kMember, CheckId::kRegistry, " löscht in der Registrierung."},
    NameRow{Known::kKill, Place::kGlobal, CheckId::kFile, " löscht Dateien."},
    NameRow{Known::kFileCopy, Place::kGlobal, CheckId::kFile, " kopiert eine Datei."},
    NameRow{Known::kMkDir, Place::kGlobal, CheckId::kFile, " legt einen Ordner an."},
    NameRow{Known::kRmDir, Place::kGlobal, CheckId::kFile, " löscht einen Ordner."},
    NameRow{Known::kSetAttr, Place::kGlobal, CheckId::kFile, " ändert die Attribute einer Datei."},
    NameRow{Known::kCreateTextFile, Place::kMember, CheckId::kFile, " legt eine Datei an."},
    NameRow{Known::kOpenTextFile, Place::kMember, CheckId::kFile, " öffnet eine Datei."},
    NameRow{Known::kCopyFile, Place::kMember, CheckId::kFile, " kopiert eine Datei."},
    NameRow{Known::kMoveFile, Place::kMember, CheckId::kFile, " verschiebt eine Datei."},
    NameRow{Known::kDeleteFile, Place::kMember, CheckId::kFile, " löscht eine Datei."},
    NameRow{Known::kCopyFolder, Place::kMember, CheckId::kFile, " kopiert einen Ordner."},
    NameRow{Known::kDeleteFolder, Place::kMember, CheckId::kFile, " löscht einen Ordner."},
    NameRow{Known::kCreateFolder, Place::kMember, CheckId::kFile, " legt einen Ordner an."},
    NameRow{Known::kSaveAs, Place::kMember, CheckId::kFile, " speichert eine Datei."},
    NameRow{Known::kSaveCopyAs, Place::kMember, CheckId::kFile, " speichert eine Kopie."},
    NameRow{Known::kExportAsFixedFormat, Place::kMember, CheckId::kFile, " schreibt ein PDF."},
    NameRow{Known::kOpenRecordset, Place::kMember, CheckId::kDatabase, " liest aus einer Datenbank."},
    NameRow{Known::kOpenDatabase, Place::kMember, CheckId::kDatabase, " öffnet eine Datenbank."},
    NameRow{Known::kRunSQL, Place::kMember, CheckId::kDatabase, " führt SQL aus."},
    NameRow{Known::kTransferDatabase, Place::kMember, CheckId::kDatabase, " überträgt Daten zwischen Datenbanken."},
    NameRow{Known::kTransferSpreadsheet, Place::kMember, CheckId::kFile, " überträgt Daten in oder aus einer Tabelle."},
    NameRow{Known::kTransferText, Place::kMember, CheckId::kFile, " überträgt Daten in oder aus einer Textdatei."},
    NameRow{Known::kSendMail, Place::kMember, CheckId::kMail, " verschickt die Mappe per E-Mail."},
    NameRow{Known::kSendObject, Place::kMember, CheckId::kMail, " verschickt ein Objekt per E-Mail."},
    NameRow{Known::kSendForReview, Place::kMember, CheckId::kMail, " verschickt die Datei per E-Mail."},
    NameRow{Known::kFollowHyperlink, Place::kMember, CheckId::kNetwork, " öffnet eine Adresse."},
    NameRow{Known::kVBProject, Place::kMember, CheckId::kCodeAccess, " greift auf Makrocode zu."},
    NameRow{Known::kVBComponents, Place::kMember, CheckId::kCodeAccess, " greift auf Makrocode zu."},
    NameRow{Known::kVBE, Place::kMember, CheckId::kCodeAccess, " greift auf den Editor der Makros zu."},
    NameRow{Known::kLinkSources, Place::kMember, CheckId::kExternalLink, " liest Verknüpfungen zu anderen Mappen."},
    NameRow{Known::kUpdateLink, Place::kMember, CheckId::kExternalLink,
            " aktualisiert Verknüpfungen zu anderen Mappen."},
    NameRow{Known::kChangeLink, Place::kMember, CheckId::kExternalLink, " ändert Verknüpfungen zu anderen Mappen."},
    NameRow{Known::kBreakLink, Place::kMember, CheckId::kExternalLink, " löst Verknüpfungen zu anderen Mappen."},
};

/// Classes by the beginning of their ProgID or of the library and class after As and New.
struct ClassRow {
  std::string_view start;
  CheckId check;
  std::string_view what;
};
constexpr std::array kClasses{
    ClassRow{"Outlook.", CheckId::kMail, "Outlook"},
    ClassRow{"CDO.", CheckId::kMail, "E-Mail über CDO"},
    ClassRow{"MAPI.", CheckId::kMail, "E-Mail über MAPI"},
    ClassRow{"Redemption.", CheckId::kMail, "Outlook"},
    ClassRow{"Notes.", CheckId::kMail, "Notes"},
    ClassRow{"Lotus.", CheckId::kMail, "Notes"},
    ClassRow{"Word.", CheckId::kOfficeProgram, "Word"},
    ClassRow{"Excel.", CheckId::kOfficeProgram, "Excel"},
    ClassRow{"Access.", CheckId::kOfficeProgram, "Access"},
    ClassRow{"PowerPoint.", CheckId::kOfficeProgram, "PowerPoint"},
    ClassRow{"Publisher.", CheckId::kOfficeProgram, "Publisher"},
    ClassRow{"Visio.", CheckId::kOfficeProgram, "Visio"},
    ClassRow{"MSProject.", CheckId::kOfficeProgram, "Project"},
    ClassRow{"OneNote.", CheckId::kOfficeProgram, "OneNote"},
    ClassRow{"ADODB.", CheckId::kDatabase, "eine Datenbank (ADO)"},
    ClassRow{"ADOX.", CheckId::kDatabase, "eine Datenbank (ADOX)"},
    ClassRow{"DAO.", CheckId::kDatabase, "eine Datenbank (DAO)"},
    ClassRow{"JRO.", CheckId::kDatabase, "eine Datenbank (JRO)"},
    ClassRow{"MSXML2.XMLHTTP", CheckId::kNetwork, "das Netz"},
    ClassRow{"MSXML2.ServerXMLHTTP", CheckId::kNetwork, "das Netz"},
    ClassRow{"Microsoft.XMLHTTP", CheckId::kNetwork, "das Netz"},
    ClassRow{"WinHttp.", CheckId::kNetwork, "das Netz"},
    ClassRow{"InternetExplorer.", CheckId::kNetwork, "einen Browser"},
    ClassRow{"SHDocVw.", CheckId::kNetwork, "einen Browser"},
    ClassRow{"WScript.Shell", CheckId::kProgram, "die Befehlsumgebung von Windows"},
    ClassRow{"Shell.Application", CheckId::kProgram, "die Shell von Windows"},
    ClassRow{"IWshRuntimeLibrary.", CheckId::kProgram, "die Befehlsumgebung von Windows"},
    ClassRow{"Scripting.FileSystemObject", CheckId::kFile, "das Dateisystem"},
};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && text::EqualsIgnoreCase(text.substr(0, start.size()), start);
}

const ClassRow* FindClass(std::string_view name) {
  const auto* const row = std::ranges::find_if(kClasses, [&](const ClassRow& r) { return StartsWith(name, r.start); });
  return row == kClasses.end() ? nullptr : row;
}

bool IsWithin(const ModuleView& view, const ClassRow& row) {
  using symbols::Host;
  if (row.check != CheckId::kOfficeProgram || view.Project().hostAssumed) return false;
  const Host host = view.Project().host;
  return (row.what == "Word" && host == Host::kWord) || (row.what == "Excel" && host == Host::kExcel) ||
         (row.what == "Access" && host == Host::kAccess) || (row.what == "PowerPoint" && host == Host::kPowerPoint);
}

/// CreateObject, GetObject with a literal.
void CheckCreation(ModuleView& view) {
  const language::Module& code = view.code;
  for (const language::StringUse& string : code.strings) {
    if (string.inactive || string.owner == kNone || string.assigned || !string.whole) continue;
    const Known owner = view.GlobalName(string.owner);
    if (owner != Known::kCreateObject && owner != Known::kGetObject) continue;
    if (string.position != (owner == Known::kCreateObject ? 1 : 2)) continue;
    const std::string_view progId = code.text.substr(string.offset + 1, string.length - 2);
    const ClassRow* const row = FindClass(progId);
    view.Report(row == nullptr ? CheckId::kObject : row->check, string.line, string.column, string.routine, progId,
                row == nullptr ? "Der Code holt sich ein Objekt von außen: " + InQuotes(progId) + "."
                               : InQuotes(progId) + " öffnet " + std::string(row->what) + ".");
  }
}

void CheckUse(ModuleView& view, Index use) {
  const language::Module& code = view.code;
  const NameUse& name = code.uses[use];
  const Known known = view.LibraryName(use);
  if (known == Known::kNone_ || name.role == Role::kNamedArgument || name.routine == kNone) return;
  if (known == Known::kCreateObject && view.GlobalName(use) == known) {
    // With a literal the literal is the finding.
    const auto string = std::ranges::lower_bound(code.strings, name.offset, {}, &language::StringUse::offset);
    if (string == code.strings.end() || string->owner != use || !string->whole) {
      view.ReportUse(CheckId::kObject, use, "CreateObject holt ein Objekt, dessen Name erst zur Laufzeit feststeht.");
    }
    return;
  }
  if (known == Known::kCurrentDb && view.GlobalName(use) == known && name.access == Access::kSimple) {
    return view.ReportUse(CheckId::kDatabase, use, "„CurrentDb“ greift auf die Datenbank zu.");
  }
  for (const NameRow& row : kNames) {
    if (row.name != known) continue;
    const bool member = name.access == Access::kMember || name.access == Access::kWith;
    if (row.place == Place::kMember ? !member : view.GlobalName(use) != known) return;
    if (name.role == Role::kType || name.role == Role::kNew) return;
    // VBE and its kin as a step of a chain: once is enough.
    if (row.check == CheckId::kCodeAccess && name.previous != kNone) {
      const Known before = view.KnownName(code.uses[name.previous]);
      if (before == Known::kVBProject || before == Known::kVBE) return;
    }
    return view.ReportUse(row.check, use, view.Named(name) + std::string(row.does));
  }
}

/// `New ADODB.Connection`: the qualified name after New.
void CheckNew(ModuleView& view, Index use) {
  const language::Module& code = view.code;
  const NameUse& name = code.uses[use];
  if (name.role != Role::kNew || name.access != Access::kMember || name.previous == kNone) return;
  if (view.bound[use].target != kNone || (name.flags & use_flag::kQualifier) != 0) return;
  const std::string full =
      std::string(code.Spelling(code.uses[name.previous])) + "." + std::string(code.Spelling(name));
  const ClassRow* const row = FindClass(full);
  if (row == nullptr || IsWithin(view, *row)) return;
  view.Report(row->check, name.line, code.uses[name.previous].column, name.routine, full,
              InQuotes(full) + " öffnet " + std::string(row->what) + ".");
}

/// Statements of the language: Open, Name ... As.
void CheckStatements(ModuleView& view) {
  for (const Statement& statement : view.code.statements) {
    if (statement.kind != StatementKind::kFile || statement.activity != language::Activity::kActive) continue;
    const auto tokens = view.Tokens(statement);
    if (tokens.empty()) continue;
    if (tokens.front().name == language::kWordOpen) {
      bool writes = true;
      for (const language::Token& token : tokens) writes = writes && token.name != language::kWordInput;
      view.ReportStatement(CheckId::kFile, statement,
                           writes ? "„Open“ öffnet eine Datei, auch zum Schreiben." : "„Open“ liest eine Datei.");
    } else if (tokens.front().name == language::kWordName) {
      view.ReportStatement(CheckId::kFile, statement, "„Name“ benennt eine Datei um.");
    }
  }
}

/// Procedures that the host starts by itself when a file opens, closes or is sent.
constexpr std::array<std::string_view, 22> kAutoRun{"auto_open",
                                                    "auto_close",
                                                    "auto_activate",
                                                    "auto_deactivate",
                                                    "autoexec",
                                                    "autonew",
                                                    "autoopen",
                                                    "autoclose",
                                                    "autoexit",
                                                    "workbook_open",
                                                    "workbook_activate",
                                                    "workbook_beforeclose",
                                                    "workbook_beforesave",
                                                    "workbook_deactivate",
                                                    "document_open",
                                                    "document_new",
                                                    "document_close",
                                                    "document_beforesave",
                                                    "app_documentopen",
                                                    "onslideshowpagechange",
                                                    "presentation_open",
                                                    "workbook_windowactivate"};

void CheckAutoRun(ModuleView& view) {
  for (const language::Routine& routine : view.code.routines) {
    if (routine.activity != language::Activity::kActive || routine.kind != language::DeclarationKind::kSub) continue;
    const language::Declaration& declared = view.code.declarations[routine.declaration];
    std::string name(view.code.Spelling(declared));
    for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (std::ranges::find(kAutoRun, name) == kAutoRun.end()) continue;
    // Events need the document's own module, start macros a standard one.
    const bool event = name.starts_with("workbook_") || name.starts_with("document_");
    const bool standard = view.Info().kind == language::ModuleKind::kStandard;
    if (event == standard ||
        (!event && declared.visibility == language::Visibility::kPrivate && !name.starts_with("auto_"))) {
      continue;
    }
    view.ReportDeclaration(CheckId::kAutoRun, declared,
                           view.Named(declared) + " läuft von selbst, ohne dass jemand ein Makro startet.");
  }
}

}  // namespace

void CheckOutsideNames(ModuleView& view) {
  for (Index use = 0; use < view.code.uses.size(); ++use) {
    if (!view.IsActive(view.code.uses[use])) continue;
    CheckNew(view, use);
    CheckUse(view, use);
  }
  CheckCreation(view);
  CheckStatements(view);
  if (!view.vb6) CheckAutoRun(view);
}

// ------------------------------------------------------------------------------------------------------------- texts

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// `C:\Daten`, `\\server\freigabe`
bool IsFixedPath(std::string_view text) {
  const bool drive = text.size() > 3 && IsLetter(text[0]) && text[1] == ':' && text[2] == '\\' && text[3] != '\\';
  const bool share =
      text.size() > 4 && text.starts_with("\\\\") && IsLetter(text[2]) && text.find('\\', 2) != std::string_view::npos;
  return (drive || share) && text.find('\n') == std::string_view::npos;
}

bool IsAddress(std::string_view text) {
  for (const std::string_view start : {"http://", "https://", "ftp://"}) {
    if (StartsWith(text, start) && text.size() > start.size()) return true;
  }
  return false;
}

/// Names of formats that look like addresses and that nobody opens.
bool IsNamespace(std::string_view text) {
  return text.find("schemas.") != std::string_view::npos || text.find("www.w3.org/") != std::string_view::npos ||
         text.find("purl.org/") != std::string_view::npos;
}

/// The words of a text's beginning, brackets and commas apart.
std::vector<std::string_view> FirstWords(std::string_view text, std::size_t count) {
  std::vector<std::string_view> words;
  while (words.size() < count && !text.empty()) {
    const std::size_t length = text.find_first_of(" ,(\t");
    if (length == 0) {
      if (text.front() == ',' || text.front() == '(') words.push_back(text.substr(0, 1));
      text.remove_prefix(1);
      continue;
    }
    words.push_back(text.substr(0, length));
    text.remove_prefix(std::min(length, text.size()));
  }
  return words;
}

struct SqlForm {
  std::string_view first, second;     ///< words that it begins with; the second may be empty
  std::string_view capital;           ///< what follows where it is written in capitals; empty: anything
  std::vector<std::string_view> any;  ///< else one of these, as word number `place`
  std::size_t place;
};

/// Statements in capitals are SQL when their second word follows; in small letters they may be words of a message, so
/// that their form has to fit too.
bool IsSql(std::string_view text) {
  static const std::vector<SqlForm> kForms{
      {"SELECT", "", " FROM ", {"from", ",", "as"}, 2},
      {"UPDATE", "", " SET ", {"set"}, 2},
      {"INSERT", "INTO", "", {"(", "values", "select"}, 3},
      {"DELETE", "FROM", "", {"where"}, 3},
      {"DELETE", "*", "", {"from"}, 2},
      {"CREATE", "TABLE", "", {"("}, 3},
      {"DROP", "TABLE", "", {}, 0},
      {"ALTER", "TABLE", "", {"add", "alter", "drop"}, 3},
  };
  constexpr std::size_t kLooked = 4096;
  const std::vector<std::string_view> words = FirstWords(text.substr(0, kLooked), 4);
  if (words.size() < 2) return false;
  return std::ranges::any_of(kForms, [&](const SqlForm& form) {
    if (!text::EqualsIgnoreCase(words[0], form.first)) return false;
    if (!form.second.empty() && !text::EqualsIgnoreCase(words[1], form.second)) return false;
    if (words[0] == form.first && text.find(form.capital) != std::string_view::npos) return true;
    if (words[1] == "*" && form.second.empty()) return true;
    return words.size() > form.place && form.place > 0 && std::ranges::any_of(form.any, [&](std::string_view word) {
             return text::EqualsIgnoreCase(words[form.place], word);
           });
  });
}

/// The book of `[Mappe.xlsx]Blatt!A1`, empty if there is none.
std::string_view LinkedBook(std::string_view text) {
  const std::size_t extension = text.find(".xls");
  if (extension == std::string_view::npos) return {};
  const std::size_t close = text.find(']', extension), open = text.rfind('[', extension);
  if (close == std::string_view::npos || close > extension + 5 || open == std::string_view::npos) return {};
  return text.find('!', close) == std::string_view::npos ? std::string_view() : text.substr(open + 1, close - open - 1);
}

/// A formula, or a reference for somebody who takes one: elsewhere such a text is compared or shown.
bool IsReferenceFor(const ModuleView& view, const language::StringUse& string, std::string_view text) {
  if (text.starts_with('=')) return true;
  constexpr std::array kTakers{"range", "evaluate", "executeexcel4macro", "goto", "createpivottable"};
  return string.owner != kNone &&
         std::ranges::find(kTakers, view.code.NameText(view.code.uses[string.owner].name)) != kTakers.end();
}

bool IsOwnBook(const ModuleView& view, std::string_view book) {
  const std::string& file = view.Project().file;
  const std::size_t folder = file.find_last_of("/\\");
  return text::EqualsIgnoreCase(file.substr(folder == std::string::npos ? 0 : folder + 1), book);
}

}  // namespace

void CheckOutsideTexts(ModuleView& view) {
  for (const language::StringUse& string : view.code.strings) {
    if (string.inactive || string.length < 8) continue;
    std::string_view text = view.code.text.substr(string.offset + 1, string.length - 2);
    const auto report = [&](CheckId check, std::string what) {
      view.Report(check, string.line, string.column, string.routine, Shortened(text), std::move(what));
    };
    const std::string shown = InQuotes(Shortened(text));
    if (IsFixedPath(text)) {
      report(CheckId::kFixedPath, "Der Pfad " + shown + " steht fest im Code.");
    } else if (IsAddress(text)) {
      if (!IsNamespace(text)) report(CheckId::kNetwork, "Die Adresse " + shown + " steht im Code.");
    } else if (StartsWith(text, "mailto:")) {
      report(CheckId::kMail, "Der Code öffnet eine E-Mail: " + shown + ".");
    } else if (IsSql(text)) {
      report(CheckId::kDatabase, "SQL im Code: " + shown);
    } else if (const std::string_view book = LinkedBook(text);
               !book.empty() && IsReferenceFor(view, string, text) && !IsOwnBook(view, book)) {
      report(CheckId::kExternalLink, "Die Formel verweist auf eine andere Mappe: " + shown + ".");
    }
  }
}

}  // namespace quillmate::checks
