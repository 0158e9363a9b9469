#include <array>
#include <string>

#include <quillmate/text/operations.h>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

/// Components that exist for 32 bit only: the beginning of a ProgID, of a provider's name or of a library's name.
struct Library {
  std::string_view start;
  std::string_view instead;
};
constexpr std::array kLibraries{
    Library{"Microsoft.Jet.OLEDB", "„Microsoft.ACE.OLEDB.12.0“ oder neuer"},
    Library{"DAO.DBEngine.35", "„DAO.DBEngine.120“"},
    Library{"DAO.DBEngine.36", "„DAO.DBEngine.120“"},
    Library{"MSScriptControl", "Code ohne Skriptmotor"},
    Library{"ScriptControl", "Code ohne Skriptmotor"},
    Library{"MSComDlg", "Application.FileDialog"},
    Library{"MSWinsock", "Funktionen von Windows (ws2_32)"},
    Library{"MSCommLib", "Funktionen von Windows (CreateFile)"},
    Library{"MSFlexGrid", "ein Listenfeld oder ein eigenes Formular"},
    Library{"MSHierarchicalFlexGridLib", "ein Listenfeld oder ein eigenes Formular"},
    Library{"MSACAL", "ein eigenes Kalenderformular"},
    Library{"MSCAL", "ein eigenes Kalenderformular"},
    Library{"TabDlg", "MultiPage"},
    Library{"RichTextLib", "ein Textfeld"},
};

/// Drivers whose names have changed with 64 bit, as connection strings write them.
constexpr std::array kDrivers{
    Library{"Microsoft Access Driver (*.mdb)", "„{Microsoft Access Driver (*.mdb, *.accdb)}“"},
    Library{"Microsoft Excel Driver (*.xls)", "„{Microsoft Excel Driver (*.xls, *.xlsx, *.xlsm, *.xlsb)}“"},
    Library{"Microsoft Text Driver (*.txt; *.csv)", "„{Microsoft Access Text Driver (*.txt, *.csv)}“"},
    Library{"Microsoft dBase Driver (*.dbf)", "„{Microsoft Access dBASE Driver (*.dbf, *.ndx, *.mdx)}“"},
};

std::string_view Trimmed(std::string_view text, std::string_view what) {
  const std::size_t first = text.find_first_not_of(what);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(what) + 1 - first);
}

const Library* Find(std::string_view name) {
  const auto isDriver = [=](const Library& driver) { return text::EqualsIgnoreCase(std::string(name), driver.start); };
  if (const auto* const driver = std::ranges::find_if(kDrivers, isDriver); driver != kDrivers.end()) return driver;
  if (name.find(' ') != std::string_view::npos) return nullptr;
  for (const Library& library : kLibraries) {
    if (name.size() < library.start.size()) continue;
    const bool whole = name.size() == library.start.size() || name[library.start.size()] == '.';
    if (whole && text::EqualsIgnoreCase(std::string(name.substr(0, library.start.size())), library.start))
      return &library;
  }
  return nullptr;
}

/// The value of a key of a connection string: "Provider='Microsoft.Jet.OLEDB.4.0';Data Source=..."; without such a key
/// the whole text.
std::string_view NameIn(std::string_view text) {
  constexpr std::string_view kKeys[] = {"provider", "driver"};
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    const std::string_view part = rest.substr(0, end);
    const std::size_t equals = part.find('=');
    if (equals != std::string_view::npos) {
      const std::string_view key = Trimmed(part.substr(0, equals), " ");
      const bool found =
          std::ranges::any_of(kKeys, [=](std::string_view k) { return text::EqualsIgnoreCase(std::string(key), k); });
      // A driver's name may hold a semicolon within its braces.
      const std::string_view value = rest.substr(equals + 1);
      const std::size_t brace = value.starts_with('{') ? value.find('}') : std::string_view::npos;
      if (found) return Trimmed(brace != value.npos ? value.substr(0, brace) : part.substr(equals + 1), " '{}");
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return text;
}

std::string Advice(const Library& library) { return "Nehmen Sie stattdessen " + std::string(library.instead) + "."; }

}  // namespace

void CheckLibraries(ModuleView& view) {
  if (view.vb6) return;
  const language::Module& code = view.code;
  for (const language::StringUse& string : code.strings) {
    if (string.inactive || string.length < 2) continue;
    const std::string_view text = NameIn(code.text.substr(string.offset + 1, string.length - 2));
    const Library* const library = Find(text);
    if (library == nullptr) continue;
    view.Report(CheckId::kLibrary32, string.line, string.column, string.routine, text,
                InQuotes(text) + " gibt es nur für 32 Bit.", Advice(*library));
  }
  for (Index use = 0; use < code.uses.size(); ++use) {
    const language::NameUse& type = code.uses[use];
    if (type.role != Role::kType && type.role != Role::kNew) continue;
    if ((type.flags & use_flag::kQualifier) == 0 || !view.IsActive(type) || view.bound[use].target != kNone) continue;
    const Library* const library = Find(code.Spelling(type));
    if (library == nullptr) continue;
    view.ReportUse(CheckId::kLibrary32, use, "Die Bibliothek " + view.Named(type) + " gibt es nur für 32 Bit.",
                   Advice(*library));
  }
  // References belong to the project: told once, at its first module.
  if (view.module != 0 && view.index.Modules()[view.module - 1].project == view.Info().project) return;
  for (const std::string& reference : view.Project().libraries) {
    const Library* const library = Find(reference);
    if (library == nullptr) continue;
    view.Report(CheckId::kLibrary32, 0, 0, kNone, reference,
                "Das Projekt verweist auf " + InQuotes(reference) + "; diese Bibliothek gibt es nur für 32 Bit.",
                Advice(*library));
  }
}

}  // namespace quillmate::checks
