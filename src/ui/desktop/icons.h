#pragma once

#include <QHash>
#include <QIcon>
#include <QString>
#include <string_view>

namespace quillmate::ui {

/// The picture of an image key ("M1", "R1O2", "doit", "4A") in all its sizes. An unknown key gives an empty icon.
QIcon LoadIcon(const QString& key);

/// The icons of a tree, each loaded at its first use.
class IconSet {
 public:
  const QIcon& Of(std::string_view key);

 private:
  QHash<QString, QIcon> icons_;
};

}  // namespace quillmate::ui
