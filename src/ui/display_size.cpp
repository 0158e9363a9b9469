#include "display_size.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <optional>

#include <quillmate/settings/display_size.h>

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

void StoreDisplaySize(const QWidget& window, Interaction& interaction, settings::Options& options,
                      settings::SettingsStore& store) {
  if (interaction.Show("Aktuelle Anzeigegrösse als Standard festlegen ?", MessageIcon::kQuestion, Buttons::kYesNo) !=
      Answer::kYes) {
    return;
  }
  options.bis = settings::FormatDisplaySize(SizeOf(window));
  store.WriteSetting(settings::kOptionsSection, "bis", options.bis);
}

void ApplyStoredDisplaySize(QWidget& window, Interaction& interaction, const settings::Options& options) {
  if (!Apply(window, settings::ParseDisplaySize(options.bis))) interaction.Show("Falsche Bildschirmdaten");
}

}  // namespace quillmate::ui
