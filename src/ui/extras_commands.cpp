#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <optional>

#include <quillmate/export/outline.h>
#include <quillmate/settings/display_size.h>

#include "commands.h"
#include "qt_text.h"
#include "shell.h"
#include "twips.h"

namespace quillmate::ui {
namespace {

settings::DisplaySize SizeOf(const QWidget& window) {
  const double dpi = window.logicalDpiX();
  settings::DisplaySize size;
  size.maximized = window.isMaximized();
  size.place = {ToTwips(window.x(), dpi), ToTwips(window.y(), dpi), ToTwips(window.width(), dpi),
                ToTwips(window.height(), dpi)};
  return size;
}

std::optional<QRect> PixelPlace(const settings::WindowPlace& place, double dpi) {
  const double parts[] = {place.left, place.top, place.width, place.height};
  constexpr double kFarthest = 1e6;
  if (std::any_of(std::begin(parts), std::end(parts),
                  [](double part) { return !(part > -kFarthest && part < kFarthest); }))
    return std::nullopt;
  return QRect(qRound(ToPixels(place.left, dpi)), qRound(ToPixels(place.top, dpi)), qRound(ToPixels(place.width, dpi)),
               qRound(ToPixels(place.height, dpi)));
}

/// A window that no screen shows could never be found again.
bool IsUsable(const QRect& place) {
  if (place.width() < 1 || place.height() < 1) return false;
  const QList<QScreen*> screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&place](const QScreen* screen) { return screen->geometry().intersects(place); });
}

bool Apply(QWidget& window, const std::optional<settings::DisplaySize>& size) {
  if (!size.has_value()) return false;
  if (size->maximized) {
    window.setWindowState(window.windowState() | Qt::WindowMaximized);
    return true;
  }
  const std::optional<QRect> place = PixelPlace(size->place, window.logicalDpiX());
  if (!place.has_value() || !IsUsable(*place)) return false;
  window.setWindowState(window.windowState() & ~Qt::WindowMaximized & ~Qt::WindowMinimized);
  window.move(place->topLeft());
  window.resize(place->size());
  return true;
}

}  // namespace

void CopyOutline(Shell& shell) {
  std::vector<output::OutlineNode> nodes;
  for (const navigation::TreeNode& node : shell.projectModel->Tree().nodes) nodes.push_back({node.text, node.parent});
  shell.around.platform.ClearClipboard();
  shell.around.platform.SetClipboard({FromCode(output::BuildOutline(nodes)), {}, {}});
  if (shell.Globals().Options.meld) shell.Show("Struktur in der Zwischenablage erstellt");
}

void StoreDisplaySize(Shell& shell) {
  if (shell.Show("Aktuelle Anzeigegrösse als Standard festlegen ?", MessageIcon::kQuestion, Buttons::kYesNo) !=
      Answer::kYes) {
    return;
  }
  std::string& bis = shell.Globals().Options.bis;
  bis = settings::FormatDisplaySize(SizeOf(shell.window));
  shell.around.settings.WriteSetting(settings::kOptionsSection, "bis", bis);
}

void ApplyStoredDisplaySize(Shell& shell) {
  if (!Apply(shell.window, settings::ParseDisplaySize(shell.Globals().Options.bis)))
    shell.Show("Falsche Bildschirmdaten");
}

void ClearClipboard(Shell& shell) { shell.around.platform.ClearClipboard(); }

}  // namespace quillmate::ui
