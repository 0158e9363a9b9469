#include "json.h"

#include <quillmate/text/windows1252.h>

namespace quillmate::cli {
namespace {

void AppendEscaped(std::string& json, char c) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(c);
  switch (c) {
    case '"':
    case '\\':
      (json += '\\') += c;
      break;
    case '\t':
      json += "\\t";
      break;
    case '\n':
      json += "\\n";
      break;
    case '\r':
      json += "\\r";
      break;
    default:
      if (code < 0x20) {
        ((json += "\\u00") += kDigits[code >> 4U]) += kDigits[code & 0xFU];
      } else {
        json += c;
      }
  }
}

}  // namespace

void AppendJsonUtf8(std::string& json, std::string_view utf8) {
  json += '"';
  for (const char c : utf8) {
    AppendEscaped(json, c);
  }
  json += '"';
}

void AppendJsonString(std::string& json, std::string_view code) { AppendJsonUtf8(json, text::Utf8FromCode(code)); }

JsonObject& JsonObject::Key(std::string_view key) {
  if (!first_) {
    json_ += ',';
  }
  first_ = false;
  json_.append(1, '"').append(key).append("\":");
  return *this;
}

JsonObject& JsonObject::Number(std::string_view key, std::int64_t value) {
  Key(key);
  json_ += std::to_string(value);
  return *this;
}

JsonObject& JsonObject::Number(std::string_view key, std::optional<std::int64_t> value) {
  Key(key);
  json_ += value ? std::to_string(*value) : "null";
  return *this;
}

JsonObject& JsonObject::Text(std::string_view key, std::string_view code) {
  Key(key);
  AppendJsonString(json_, code);
  return *this;
}

JsonObject& JsonObject::True(std::string_view key) {
  Key(key);
  json_ += "true";
  return *this;
}

void JsonLines::Next() {
  json_ += first_ ? "\n" : ",\n";
  first_ = false;
}

void JsonLines::End() { json_ += first_ ? "]" : "\n]"; }

}  // namespace quillmate::cli
