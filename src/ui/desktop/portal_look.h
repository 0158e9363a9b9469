#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace quillmate::ui {

/// Asks the desktop portal for light or dark and hears of changes. A desktop without one leaves all as it is.
class PortalLook : public QObject {
  Q_OBJECT

 public:
  /// `bus` is the one that the portal is on: the session's.
  PortalLook(QDBusConnection bus, QObject* parent);

  Q_SLOT void OnChange(const QString& group, const QString& key, const QDBusVariant& value);
};

}  // namespace quillmate::ui
