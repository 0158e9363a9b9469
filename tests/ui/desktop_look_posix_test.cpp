#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include <gtest/gtest.h>

#include "desktop_look.h"
#include "portal_look.h"

namespace quillmate::ui {
namespace {

QDBusVariant Variant(const QVariant& value) { return QDBusVariant(value); }

bool IsDark() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

/// A portal of our own, which prefers what it is told to.
class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(uint scheme) : scheme_(scheme) {
    QObject::connect(&server_, &QDBusServer::newConnection, this, [this](QDBusConnection peer) {
      peer.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
    });
  }

  QDBusConnection Connect() const {
    return QDBusConnection::connectToPeer(server_.address(), QStringLiteral("portal"));
  }
  static void Disconnect() { QDBusConnection::disconnectFromPeer(QStringLiteral("portal")); }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("Read")) return false;
    asked = message.arguments();
    return connection.send(message.createReply(QVariant::fromValue(Variant(QVariant::fromValue(Variant(scheme_))))));
  }

  QVariantList asked;

 private:
  QDBusServer server_;
  uint scheme_;
};

TEST(PortalLook, AsksAtTheStart) {
  for (const uint scheme : {1U, 0U, 2U}) {
    UseLook(false);
    Portal portal(scheme);
    PortalLook look(portal.Connect(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !portal.asked.isEmpty(); }, 60'000));
    EXPECT_EQ(portal.asked,
              (QVariantList{QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")}));
    const auto* const call = look.findChild<QObject*>();
    if (scheme == 1) {
      EXPECT_TRUE(QTest::qWaitFor(IsDark, 60'000));
    } else {
      ASSERT_NE(call, nullptr);
      EXPECT_TRUE(QTest::qWaitFor([&] { return look.findChild<QObject*>() == nullptr; }, 60'000));
      EXPECT_FALSE(IsDark()) << "no preference, or light";
    }
    Portal::Disconnect();
  }
  UseLook(false);
}

TEST(PortalLook, FollowsTheSchemeAndNothingElse) {
  PortalLook look(QDBusConnection(QString()), nullptr);
  const QString group = QStringLiteral("org.freedesktop.appearance");
  const QString scheme = QStringLiteral("color-scheme");
  const struct {
    QString key;
    QDBusVariant value;
    bool isDark;
  } kChanges[] = {
      {QStringLiteral("contrast"), Variant(1U), false},
      {scheme, Variant(1U), true},
      {scheme, Variant(2U), false},
      {scheme, Variant(QVariant::fromValue(Variant(1U))), true},
      {scheme, Variant(0U), false},
  };
  for (const auto& change : kChanges) {
    look.OnChange(group, change.key, change.value);
    EXPECT_EQ(IsDark(), change.isDark);
  }
}

}  // namespace
}  // namespace quillmate::ui
