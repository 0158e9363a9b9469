#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "desktop_look.h"
#include "portal_look.h"

namespace quillmate::ui {
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

PortalLook::PortalLook(QDBusConnection bus, QObject* parent) : QObject(parent) {
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

void FollowDesktopLook(QApplication& app) { new PortalLook(QDBusConnection::sessionBus(), &app); }

}  // namespace quillmate::ui
