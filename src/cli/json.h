#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Pieces of JSON, UTF-8, appended to a text. The form is compact but fit for line-wise comparison: one record a line.
namespace quillmate::cli {

/// A JSON string of UTF-8 text.
void AppendJsonUtf8(std::string& json, std::string_view utf8);
/// A JSON string of Windows-1252 text.
void AppendJsonString(std::string& json, std::string_view code);

/// One object on one line, members in the order of the calls. The text must outlive it.
class JsonObject {
 public:
  explicit JsonObject(std::string& json) : json_(json) { json_ += '{'; }

  JsonObject& Number(std::string_view key, std::int64_t value);
  /// null when there is no value.
  JsonObject& Number(std::string_view key, std::optional<std::int64_t> value);
  JsonObject& Text(std::string_view key, std::string_view code);
  JsonObject& True(std::string_view key);
  /// Begins a member whose value the caller appends.
  JsonObject& Key(std::string_view key);
  void End() { json_ += '}'; }

 private:
  std::string& json_;
  bool first_ = true;
};

/// An array with each element on a line of its own; "[]" when there is none. The text must outlive it.
class JsonLines {
 public:
  explicit JsonLines(std::string& json) : json_(json) { json_ += '['; }
  /// To be called before each element.
  void Next();
  void End();

 private:
  std::string& json_;
  bool first_ = true;
};

}  // namespace quillmate::cli
