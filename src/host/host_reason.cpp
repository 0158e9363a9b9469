#include <array>

#include <quillmate/host/host_reason.h>

namespace quillmate::host {
namespace {

using enum HostReason;
using Words = files::ReasonWords<HostReason>;

constexpr std::array kWords{
    Words{kNotRunning, "%1 ist nicht geöffnet"},
    Words{kEnded, "%1 ist nicht mehr geöffnet"},
    Words{kBusy, "%1 ist beschäftigt: Vielleicht wird gerade eine Zelle bearbeitet, oder ein Dialog ist offen"},
    Words{kNoAnswer, "%1 antwortet nicht mehr"},
    Words{kRefused, "%c%1"},
    Words{kNotAsked, "%1 lässt sich nicht abfragen"},
    Words{kNoVersion, "%1 sagt seine Version nicht"},
    Words{kNoAccess, "%1 verweigert den Zugriff auf seine Projekte"},
    Words{kProjectClosed, "Das Projekt %1 [%2] ist nicht mehr geöffnet"},
    Words{kProjectGone, "Das Projekt ist nicht mehr vorhanden"},
    Words{kProjectLocked, "Das Projekt ist gesperrt"},
    Words{kModulesWithheld, "Das Projekt gibt seine Module nicht heraus"},
    Words{kModuleGone, "Das Modul ist nicht mehr vorhanden"},
    Words{kCodeWithheld, "Das Modul %1 gibt seinen Code nicht heraus"},
    Words{kModuleChanged, "Das Modul wurde geändert, während es gelesen wurde"},
    Words{kOtherModule, "Datei enthält jetzt ein anderes Modul"},
    Words{kNotInFile, "Modul ist nicht mehr in der Datei"},
    Words{kNoFile, "Modul liegt nicht in einer Datei"},
    Words{kNoCode, "%1"},
    Words{kNothingRead, "%1"},
};
static_assert(files::IsComplete(kWords, kNothingRead));

}  // namespace

std::error_code make_error_code(HostReason reason) noexcept {
  static const files::ReasonCategory category("host", kWords);
  return {static_cast<int>(reason), category};
}

}  // namespace quillmate::host
