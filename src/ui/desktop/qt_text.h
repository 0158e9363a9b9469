#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

/// Between the program's texts and Qt's.
namespace quillmate::ui {

/// Windows-1252, the encoding of code and of names found in code.
QString FromCode(std::string_view code);
/// The way back; a character without a code becomes "?".
std::string ToCode(const QString& text);
/// UTF-8, the encoding of messages, settings and paths.
QString FromUtf8(std::string_view utf8);
std::string ToUtf8(const QString& text);

QString FromPath(const std::filesystem::path& path);
/// With the system's own separators, whichever the text has.
std::filesystem::path ToPath(const QString& text);

}  // namespace quillmate::ui
