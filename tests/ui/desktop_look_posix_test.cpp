#include <QApplication>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include "desktop_look.h"
#include "portal_look.h"

namespace quillmate::ui {
namespace {

QDBusVariant Variant(const QVariant& value) { return QDBusVariant(value); }

TEST(PortalLook, FollowsTheSchemeAndNothingElse) {
  PortalLook look(nullptr);
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
    EXPECT_EQ(QApplication::palette().color(QPalette::Window).lightness() < 128, change.isDark);
  }
}

}  // namespace
}  // namespace quillmate::ui
