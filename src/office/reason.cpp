#include <array>
#include <cstddef>
#include <string>

#include <quillmate/office/reason.h>

namespace quillmate::office {
namespace {

struct Words {
  Reason reason;
  Cause cause;
  const char* text;
};

/// In the order of the codes.
constexpr std::array kWords{
    Words{Reason::kNone, Cause::kNone, ""},
    Words{Reason::kMissing, Cause::kUnreadable, "Datei existiert nicht"},
    Words{Reason::kDeadLink, Cause::kUnreadable, "Verknüpfung führt ins Leere"},
    Words{Reason::kIsFolder, Cause::kUnreadable, "Ist ein Ordner, keine Datei"},
    Words{Reason::kInUse, Cause::kUnreadable, "Datei ist von einem anderen Programm gesperrt"},
    Words{Reason::kNoAccess, Cause::kUnreadable,
          "Kein Zugriff auf die Datei: die Rechte fehlen, oder ein anderes Programm hat sie gesperrt"},
    Words{Reason::kUnreadable, Cause::kUnreadable, "Datei kann nicht gelesen werden"},
    Words{Reason::kFolderUnreadable, Cause::kUnreadable, "Ordner kann nicht gelesen werden"},
    Words{Reason::kEmpty, Cause::kDamaged, "Datei ist leer"},
    Words{Reason::kNoText, Cause::kDamaged, "Datei enthält keinen Text"},
    Words{Reason::kNotOffice, Cause::kNone, "Datei ist keine Office-Datei"},
    Words{Reason::kUnknownKind, Cause::kNone, "Diese Dateiart kann nicht eingelesen werden"},
    Words{Reason::kNoMacros, Cause::kNone, "Datei enthält keine Makros"},
    Words{Reason::kNoVba, Cause::kNone, "Datei enthält keinen VBA-Code"},
    Words{Reason::kNoModules, Cause::kNone, "Ordner enthält keine Module"},
    Words{Reason::kNamesNoModules, Cause::kNone, "Projektdatei nennt keine Module"},
    Words{Reason::kEncrypted, Cause::kEncrypted, "Datei ist mit einem Kennwort verschlüsselt"},
    Words{Reason::kCompiled, Cause::kCompiled, "Datei ist kompiliert und enthält keinen Quelltext"},
    Words{Reason::kOfExcel95, Cause::kUnsupported, "Makros im Format von Excel 5.0 und 95 lassen sich nicht lesen"},
    Words{Reason::kProjectTooLarge, Cause::kUnsupported, "Makroprojekt ist zu groß (mehr als 128 MB)"},
    Words{Reason::kModuleTooLarge, Cause::kUnsupported, "Datei ist zu groß für ein Modul"},
    Words{Reason::kBrokenZip, Cause::kDamaged, "Datei ist beschädigt: das Verzeichnis der Zip-Datei ist nicht lesbar"},
    Words{Reason::kBrokenCompound, Cause::kDamaged, "Datei ist beschädigt: ihr Verzeichnis ist nicht lesbar"},
    Words{Reason::kPartOfDirectory, Cause::kDamaged, "Datei ist beschädigt: ein Teil ihres Verzeichnisses fehlt"},
    Words{Reason::kBrokenDatabase, Cause::kDamaged,
          "Datei ist beschädigt: das Verzeichnis der Datenbank ist nicht lesbar"},
    Words{Reason::kBrokenPresentation, Cause::kDamaged, "Datei ist beschädigt: die Präsentation ist nicht lesbar"},
    Words{Reason::kBrokenEntry, Cause::kDamaged, "Datei ist beschädigt: das Makroprojekt lässt sich nicht entpacken"},
    Words{Reason::kBrokenProject, Cause::kDamaged, "Datei ist beschädigt: das Makroprojekt ist nicht lesbar"},
};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < kWords.size(); ++i) {
    if (static_cast<std::size_t>(kWords[i].reason) != i) return false;
  }
  return true;
}
static_assert(IsInOrder() && kWords.size() == static_cast<std::size_t>(Reason::kBrokenProject) + 1);

class Category final : public std::error_category {
 public:
  const char* name() const noexcept override { return "office"; }
  std::string message(int code) const override { return ReasonText(static_cast<Reason>(code)); }
};

}  // namespace

Cause CauseOf(Reason reason) noexcept { return kWords[static_cast<std::size_t>(reason)].cause; }

const char* ReasonText(Reason reason) noexcept { return kWords[static_cast<std::size_t>(reason)].text; }

std::error_code make_error_code(Reason reason) noexcept {
  static const Category category;
  return {static_cast<int>(reason), category};
}

}  // namespace quillmate::office
