#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

/// Names on the way into files, anchors and links.
namespace quillmate::output {

/// What a name without any letter is called.
inline constexpr std::string_view kNameless = "ohne-Namen";

/// ASCII letters, digits, "-" and "_" for a name in Windows-1252: umlauts are spelled out ("ä" as "ae").
std::string AsciiName(std::string_view name);

/// Makes names for files and anchors: ASCII letters, digits, "-" and "_", at most 80 of a name's characters, unique
/// regardless of case. Umlauts are spelled out ("ä" as "ae"), the second of two equal names gets "-2" after it.
class FileNames {
 public:
  /// `name` is Windows-1252.
  std::string Make(std::string_view name);

 private:
  /// Lower-case names that are taken, and the number that the next equal name begins to try with.
  std::unordered_map<std::string, int> taken_;
};

}  // namespace quillmate::output
