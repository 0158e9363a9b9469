#include "help.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kHelpName = "Quillmate";

/// The forms of the manual, the one that suits the system first. It is beside the template.
#ifdef Q_OS_WIN
constexpr std::array kEndings = {".chm", ".html"};
#else
constexpr std::array kEndings = {".html", ".chm"};
#endif

bool IsFile(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored);
}

std::vector<fs::path> HelpFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const char* ending : kEndings) {
    fs::path file = folder / (std::string(kHelpName) + ending);
    if (IsFile(file)) files.push_back(std::move(file));
  }
  return files;
}

struct HelpPage {
  const char* control;
  const char* page;
};

/// Page of the manual for a part of the window; what is in such a part has the same page.
constexpr std::array kHelpPages = {
    HelpPage{"treApp", "quellen.html"},
    HelpPage{"fraStart", "erste-schritte.html"},
    HelpPage{"treProjekt", "code-lesen.html"},
    HelpPage{"txtFilter", "code-lesen.html"},
    HelpPage{"rtbHaupt", "code-lesen.html"},
    HelpPage{"rtbZoom", "code-lesen.html"},
    HelpPage{"treRoutSuche", "definition.html"},
    HelpPage{"txtSuche", "suche.html"},
    HelpPage{"fraVerwendungen", "definition.html"},
    HelpPage{"fraHierarchie", "definition.html"},
    HelpPage{"frmUnbenutztes", "berichte.html"},
    HelpPage{"frmBefunde", "berichte.html"},
    HelpPage{"frmKennzahlen", "berichte.html"},
    HelpPage{"frmGeheZu", "definition.html"},
    HelpPage{"fraTreffer", "suche.html"},
    HelpPage{"frmUnbenutzt", "berichte.html"},
    HelpPage{"frmVergleich", "vergleichen.html"},
    HelpPage{"frmVergleichWahl", "vergleichen.html"},
};

/// The manual's page for the part of the window that has the focus; empty when there is none.
std::string PageOfFocus() {
  for (const QWidget* part = QApplication::focusWidget(); part != nullptr; part = part->parentWidget()) {
    for (const HelpPage& page : kHelpPages) {
      if (part->objectName() == QLatin1String(page.control)) return std::string("hilfe/") + page.page;
    }
  }
  return {};
}

/// Opens one form of the manual where the focus is.
bool OpenManual(Platform& platform, const fs::path& file) {
  const std::string page = PageOfFocus();
  if (file.extension() == ".chm") return platform.OpenHelp(FromPath(file), FromUtf8(page));
  const fs::path pageFile = file.parent_path() / fs::path(page).make_preferred();
  return platform.OpenInBrowser(FromPath(!page.empty() && IsFile(pageFile) ? pageFile : file));
}

std::string MissingHelpMessage(const startup::AppGlobals& globals, const fs::path& folder) {
  const std::string name(kHelpName);
  return "Die Hilfsdatei:\r\n" + name + ".chm\r\nkonnte nicht gefunden werden. \r\n" +
         "Diese muss im selben Verzeichnis wie\r\n" + globals.EditionCode + "_XT.exe\r\ninstalliert werden.\r\n" +
         "Bitte kopieren Sie also \r\n" + name + ".chm nach:\r\n" + files::PathText(folder);
}

}  // namespace

void ShowHelp(Interaction& interaction, const startup::AppGlobals& globals) {
  const fs::path folder = globals.TemplatePath.parent_path();
  const std::vector<fs::path> files = HelpFiles(folder);
  if (files.empty()) {
    interaction.Show(MissingHelpMessage(globals, folder));
    return;
  }
  const bool shown = std::any_of(files.begin(), files.end(), [&interaction](const fs::path& file) {
    return OpenManual(interaction.Desktop(), file);
  });
  if (!shown) {
    interaction.Show("Die Hilfe kann nicht angezeigt werden:\r\n" + files::PathText(files.front()),
                     MessageIcon::kExclamation);
  }
}

}  // namespace quillmate::ui
