#include "desktop_look.h"

#include <QApplication>
#include <QColor>
#ifdef Q_OS_WIN
#include <QSettings>
#else
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "portal_look.h"
#endif

namespace quillmate::ui {
namespace {

struct DarkColour {
  QPalette::ColorRole role;
  QRgb colour;
};

constexpr DarkColour kDark[] = {
    {QPalette::Window, 0xff2b2b2b},
    {QPalette::WindowText, 0xffe6e6e6},
    {QPalette::Base, 0xff1e1e1e},
    {QPalette::AlternateBase, 0xff262626},
    {QPalette::Text, 0xffe6e6e6},
    {QPalette::Button, 0xff363636},
    {QPalette::ButtonText, 0xffe6e6e6},
    {QPalette::BrightText, 0xffffffff},
    {QPalette::ToolTipBase, 0xff3c3c3c},
    {QPalette::ToolTipText, 0xffe6e6e6},
    {QPalette::Light, 0xff505050},
    {QPalette::Midlight, 0xff444444},
    {QPalette::Mid, 0xff242424},
    {QPalette::Dark, 0xff1a1a1a},
    {QPalette::Shadow, 0xff101010},
    {QPalette::Highlight, 0xff2f65a8},
    {QPalette::HighlightedText, 0xffffffff},
    {QPalette::Link, 0xff7ab7ff},
    {QPalette::LinkVisited, 0xffc3a2ff},
    {QPalette::PlaceholderText, 0xff9a9a9a},
};

constexpr QRgb kDisabledText = 0xff808080;

/// The style makes the frame of a check box from the window's colour, darkened: on dark ground it would vanish.
constexpr QRgb kBoxFrame = 0xffa8a8a8;

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

}  // namespace

QPalette DarkPalette() {
  QPalette palette;
  for (const DarkColour& entry : kDark) palette.setColor(entry.role, QColor::fromRgb(entry.colour));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor::fromRgb(kDisabledText));
  }
  return palette;
}

void UseLook(bool dark) {
  static const QPalette start = QApplication::palette();
  if (dark == IsDark(QApplication::palette())) return;
  // The desktop's own style may paint parts in its light colours.
  if (dark) QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setPalette(dark ? DarkPalette() : start);
  QPalette boxes = QApplication::palette();
  if (dark) boxes.setColor(QPalette::Window, QColor::fromRgb(kBoxFrame));
  QApplication::setPalette(boxes, "QCheckBox");
}

#ifdef Q_OS_WIN

void FollowDesktopLook(QApplication&) {
  const QSettings user(
      QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"),
      QSettings::NativeFormat);
  UseLook(user.value(QStringLiteral("AppsUseLightTheme"), 1).toInt() == 0);
}

#else

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

/// The portal's word for dark; 0 stands for no preference, 2 for light.
constexpr uint kPrefersDark = 1;

/// The answer to a question comes wrapped once more than a change does.
uint SchemeOf(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt();
}

}  // namespace

PortalLook::PortalLook(QObject* parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
              SLOT(OnChange(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
  question << kGroup << kKey;
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [](QDBusPendingCallWatcher* call) {
    const QDBusPendingReply<QDBusVariant> reply = *call;
    if (!reply.isError() && SchemeOf(reply.value().variant()) == kPrefersDark) UseLook(true);
    call->deleteLater();
  });
}

void PortalLook::OnChange(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == kGroup && key == kKey) UseLook(SchemeOf(value.variant()) == kPrefersDark);
}

void FollowDesktopLook(QApplication& app) { new PortalLook(&app); }

#endif

}  // namespace quillmate::ui
