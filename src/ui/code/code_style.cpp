#include "code_style.h"

#include <QFontDatabase>

#include <quillmate/text/windows1252.h>

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

output::RtfOptions RtfOptionsOf(const settings::Options& options) {
  output::RtfOptions rtf;
  rtf.keywordColour = options.fkey;
  rtf.commentColour = options.fkom;
  rtf.stringColour = options.fstr;
  rtf.fontName = text::CodeFromUtf8(options.fontName);
  rtf.fontSize = options.fontSize;
  rtf.tabWidth = options.tab;
  rtf.boldRoutines = options.rouf;
  return rtf;
}

}  // namespace

QColor FromColourValue(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return QColor(static_cast<int>(bits & 0xFF), static_cast<int>((bits >> 8) & 0xFF),
                static_cast<int>((bits >> 16) & 0xFF));
}

CodeStyle StyleOf(const settings::Options& options, double dpi) {
  CodeStyle style;
  style.font = CodeFont(FromUtf8(options.fontName), options.fontSize);
  style.tabStop = TabStop(options.tab, dpi);
  style.keyword = FromColourValue(options.fkey);
  style.comment = FromColourValue(options.fkom);
  style.string = FromColourValue(options.fstr);
  style.boldRoutines = options.rouf;
  style.rtf = RtfOptionsOf(options);
  return style;
}

}  // namespace quillmate::ui
