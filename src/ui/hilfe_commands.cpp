#include <QApplication>
#include <array>
#include <string>

#include <quillmate/codedb/index_files.h>

#include "about_box.h"
#include "commands.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kHelpName = "Quillmate";

/// The manual lies beside the template; as a page where there is no viewer for the other form.
fs::path FindHelp(const fs::path& folder) {
#ifdef Q_OS_WIN
  constexpr std::array kEndings = {".chm", ".html"};
#else
  constexpr std::array kEndings = {".html", ".chm"};
#endif
  for (const char* ending : kEndings) {
    fs::path file = folder / (std::string(kHelpName) + ending);
    std::error_code ignored;
    if (fs::is_regular_file(file, ignored)) return file;
  }
  return {};
}

struct HelpPage {
  const char* control;
  const char* page;
};

/// Page of the manual for a part of the window; what lies in such a part has the same page.
constexpr std::array kHelpPages = {
    HelpPage{"treApp", "quellen.html"},          HelpPage{"fraStart", "erste-schritte.html"},
    HelpPage{"treProjekt", "code-lesen.html"},   HelpPage{"txtFilter", "code-lesen.html"},
    HelpPage{"rtbHaupt", "code-lesen.html"},     HelpPage{"rtbZoom", "code-lesen.html"},
    HelpPage{"treRoutSuche", "definition.html"}, HelpPage{"txtSuche", "suche.html"},
    HelpPage{"fraTreffer", "suche.html"},        HelpPage{"frmUnbenutzt", "berichte.html"},
};

/// The manual's page for the part of the window that has the focus; empty when there is none.
fs::path PageOfFocus(const fs::path& folder) {
  for (const QWidget* part = QApplication::focusWidget(); part != nullptr; part = part->parentWidget()) {
    for (const HelpPage& page : kHelpPages) {
      if (part->objectName() != QLatin1String(page.control)) continue;
      fs::path file = folder / "hilfe" / page.page;
      std::error_code ignored;
      return fs::is_regular_file(file, ignored) ? file : fs::path();
    }
  }
  return {};
}

std::string MissingHelpMessage(const startup::AppGlobals& globals, const fs::path& folder) {
  const std::string name(kHelpName);
  return "Die Hilfsdatei:\r\n" + name + ".chm\r\nkonnte nicht gefunden werden. \r\n" +
         "Diese muss im selben Verzeichnis wie\r\n" + globals.EditionCode + "_XT.exe\r\ninstalliert werden.\r\n" +
         "Bitte kopieren Sie also \r\n" + name + ".chm nach:\r\n" + codedb::PathText(folder);
}

}  // namespace

void ShowHelp(Shell& shell) {
  const fs::path folder = shell.Globals().TemplatePath.parent_path();
  fs::path file = FindHelp(folder);
  if (file.extension() == ".html") {
    const fs::path page = PageOfFocus(folder);
    if (!page.empty()) file = page;
  }
  if (file.empty()) {
    shell.Show(MissingHelpMessage(shell.Globals(), folder));
  } else if (!shell.around.platform.OpenInBrowser(FromPath(file))) {
    shell.Show("Die Hilfe kann nicht angezeigt werden:\r\n" + codedb::PathText(file), MessageIcon::kExclamation);
  }
}

void ShowAbout(Shell& shell) {
  auto* box = new AboutBox(shell);
  box->open();
}

}  // namespace quillmate::ui
