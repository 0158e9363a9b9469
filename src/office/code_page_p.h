#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <quillmate/files/source_text.h>

namespace quillmate::office {

/// The encoding of a project's names and texts, by its Windows number. One that is not known counts as Windows-1252.
class CodePage {
 public:
  explicit CodePage(int number);

  bool IsKnown() const noexcept { return isOurOwn_ || converter_ != nullptr; }

  /// Windows-1252, with "?" for what it lacks and for bytes that mean nothing in the code page. Line breaks stay.
  files::DecodedText Decode(std::string_view bytes) const;
  std::string Utf8From(std::string_view bytes) const;

 private:
  /// What the system converts with.
  struct Converter;
  struct Close {
    void operator()(Converter* converter) const noexcept;
  };

  static Converter* Open(int number);
  /// U+FFFD for bytes that mean nothing.
  std::u16string Utf16From(std::string_view bytes) const;

  bool isUtf8_;
  bool isOurOwn_;
  /// Nothing for UTF-8 and for Windows-1252 itself.
  std::unique_ptr<Converter, Close> converter_;
};

}  // namespace quillmate::office
