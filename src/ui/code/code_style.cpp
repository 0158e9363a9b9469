#include "code_style.h"

#include <QFontDatabase>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

QFont CodeFont(const QString& face, int size) {
  QFont font = QFontDatabase::hasFamily(face) ? QFont(face) : QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setStyleHint(QFont::TypeWriter);
  if (size > 0) font.setPointSize(size);
  return font;
}

/// The first tab stop of the RTF in pixels: millimetres as whole twips. A width of 0 means the default of half an inch.
double TabStop(int millimetres, double dpi) {
  const int twips = static_cast<int>(millimetres / 10.0 * 567);
  return (twips > 0 ? twips : 720) * dpi / 1440.0;
}

}  // namespace

QColor FromColourValue(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return QColor(static_cast<int>(bits & 0xFF), static_cast<int>((bits >> 8) & 0xFF),
                static_cast<int>((bits >> 16) & 0xFF));
}

CodeStyle StyleOf(const settings::Options& options, double dpi, bool dark) {
  CodeStyle style;
  style.font = CodeFont(FromUtf8(options.fontName), options.fontSize);
  style.tabStop = TabStop(options.tab, dpi);
  style.keyword = FromColourValue(options.fkey);
  style.comment = FromColourValue(options.fkom);
  style.string = FromColourValue(options.fstr);
  style.screen = dark ? DarkColours() : LightColours(style.keyword, style.comment, style.string);
  style.look = settings::LookOf(options);
  return style;
}

}  // namespace quillmate::ui
