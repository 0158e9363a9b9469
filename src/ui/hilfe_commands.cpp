#include <QFileInfo>
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

std::string MissingHelpMessage(const startup::AppGlobals& globals, const fs::path& folder) {
  const std::string name(kHelpName);
  return "Die Hilfsdatei:\r\n" + name + ".chm\r\nkonnte nicht gefunden werden. \r\n" +
         "Diese muss im selben Verzeichnis wie\r\n" + globals.EditionCode + "_XT.exe\r\ninstalliert werden.\r\n" +
         "Bitte kopieren Sie also \r\n" + name + ".chm nach:\r\n" + codedb::PathText(folder);
}

}  // namespace

void ShowHelp(Shell& shell) {
  const fs::path folder = shell.Globals().TemplatePath.parent_path();
  const fs::path file = FindHelp(folder);
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
