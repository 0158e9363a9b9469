#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "desktop_look.h"

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

/// Asks the desktop portal for light or dark and hears of changes. A desktop without one leaves all as it is.
class PortalLook : public QObject {
  Q_OBJECT

 public:
  explicit PortalLook(QObject* parent) : QObject(parent) {
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

  Q_SLOT void OnChange(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == kGroup && key == kKey) UseLook(SchemeOf(value.variant()) == kPrefersDark);
  }
};

}  // namespace

void FollowDesktopLook(QApplication& app) { new PortalLook(&app); }

}  // namespace quillmate::ui

#include "desktop_look_posix.moc"
