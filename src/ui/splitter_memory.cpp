#include "splitter_memory.h"

#include <QSplitter>
#include <string>

#include "qt_text.h"
#include "shell.h"
#include "splitter.h"
#include "twips.h"

namespace quillmate::ui {
namespace {

constexpr std::string_view kSection = "ansicht";
constexpr std::string_view kKey = "teiler";

QSplitter& SplitterOf(Shell& shell) { return *shell.window.findChild<QSplitter*>(QStringLiteral("fraContainer")); }

}  // namespace

void LoadSplitterPlace(Shell& shell) {
  QSplitter& splitter = SplitterOf(shell);
  const double dpi = shell.window.logicalDpiX();
  const int width = shell.window.width();
  const double left = FromUtf8(shell.around.settings.ReadSetting(kSection, kKey)).toDouble();
  if (!MayStandAt(left, ToTwips(width, dpi), ToTwips(splitter.handleWidth(), dpi))) return;
  const int tree = qRound(ToPixels(left, dpi));
  splitter.setSizes({tree, width - tree - splitter.handleWidth()});
}

void SaveSplitterPlace(Shell& shell) {
  const QList<int> sizes = SplitterOf(shell).sizes();
  const int twips = qRound(ToTwips(sizes.value(0), shell.window.logicalDpiX()));
  // A window that was never shown knows no sizes.
  if (twips > 0) shell.around.settings.WriteSetting(kSection, kKey, std::to_string(twips));
}

}  // namespace quillmate::ui
