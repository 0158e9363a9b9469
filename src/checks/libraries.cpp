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

const Library* Find(std::string_view name) {
  for (const Library& library : kLibraries) {
    if (name.size() < library.start.size()) continue;
    const bool whole = name.size() == library.start.size() || name[library.start.size()] == '.';
    if (whole && text::EqualsIgnoreCase(std::string(name.substr(0, library.start.size())), library.start))
      return &library;
  }
  return nullptr;
}

std::string Advice(const Library& library) { return "Nehmen Sie stattdessen " + std::string(library.instead) + "."; }

}  // namespace

void CheckLibraries(ModuleView& view) {
  if (view.vb6) return;
  const language::Module& code = view.code;
  for (const language::StringUse& string : code.strings) {
    if (string.inactive || string.length < 2) continue;
    std::string_view text = code.text.substr(string.offset + 1, string.length - 2);
    for (const std::string_view key : {"Provider=", "provider=", "PROVIDER=", "Provider = "}) {
      const std::size_t at = text.find(key);
      if (at == std::string_view::npos) continue;
      text.remove_prefix(at + key.size());
      text = text.substr(0, text.find(';'));
      break;
    }
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
