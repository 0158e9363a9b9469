#include "icons.h"

#include <QFile>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kSizes[] = {16, 20, 24, 32, 48, 64, 128, 256};

}  // namespace

QIcon LoadIcon(const QString& key) {
  QIcon icon;
  for (const int size : kSizes) {
    const QString file = QStringLiteral(":/icons/%1_%2.png").arg(key).arg(size);
    if (!QFile::exists(file)) continue;
    icon.addFile(file, QSize(size, size));
    // In a selected row it stays as it is: tinted, a blue sign on blue could not be made out.
    icon.addFile(file, QSize(size, size), QIcon::Selected);
  }
  return icon;
}

const QIcon& IconSet::Of(std::string_view key) {
  const QString name = FromUtf8(key);
  auto found = icons_.find(name);
  if (found == icons_.end()) found = icons_.insert(name, LoadIcon(name));
  return *found;
}

}  // namespace quillmate::ui
