#include "qt_text.h"

#include <QDir>

#include <quillmate/files/paths.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::ui {

QString FromCode(std::string_view code) {
  QString text(static_cast<qsizetype>(code.size()), Qt::Uninitialized);
  QChar* out = text.data();
  for (const char c : code) *out++ = QChar(text::ToUnicode(static_cast<unsigned char>(c)));
  return text;
}

std::string ToCode(const QString& text) {
  return text::CodeFromUtf16({reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())});
}

QString FromUtf8(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

std::string ToUtf8(const QString& text) { return text.toStdString(); }

QString FromPath(const std::filesystem::path& path) { return FromUtf8(files::PathText(path)); }

std::filesystem::path ToPath(const QString& text) {
  return files::PathFromText(ToUtf8(QDir::toNativeSeparators(text)));
}

}  // namespace quillmate::ui
