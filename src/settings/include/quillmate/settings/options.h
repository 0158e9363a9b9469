#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillmate/settings/settings_store.h>
#include <quillmate/text/code_options.h>

namespace quillmate::settings {

/// The in-memory copies of the settings of section "optionen", under the names of their keys. A new object holds the
/// defaults. Colours are red + 256 * green + 65536 * blue.
struct Options {
  Options();

  std::int32_t fkey = 0;      // colour of keywords
  std::int32_t fkom = 0;      // colour of comments
  std::int32_t fstr = 0;      // colour of string literals
  bool rouf = false;          // header and end lines of routines in bold
  bool aufk = false;          // the project tree shows all entries expanded
  bool leer = false;          // empty lines are dropped when modules are read
  bool vor = false;           // HTML is shown in the browser
  bool rer = false;           // routine bodies are indented when modules are read
  bool rle = false;           // an empty line goes before every routine when modules are read
  bool meld = false;          // a message after copying to the clipboard
  bool einr = false;          // code blocks are indented anew when modules are read
  bool stapro = false;        // projects always go to the standard folder
  std::int16_t tab = 0;       // distance of the tab stops of code, millimetres
  std::string fontName;       // of code, UTF-8; "font" together with the size
  std::int16_t fontSize = 0;  // points
  bool usb = false;           // the stored display size applies at the start
  std::string bis;            // the stored display size (display_size.h)
};

inline constexpr std::string_view kOptionsSection = "optionen";
inline constexpr std::string_view kProjectSection = "proj";
inline constexpr std::string_view kRecentSection = "recent";
inline constexpr std::string_view kSourcesSection = "quellen";

/// Takes over every key that has a text; the others keep their value. A text without a leading number counts as 0
/// (flags false); halves round to the even neighbour; a number beyond its type's range leaves the value as it is.
/// `font` without a comma: name and size are both taken from the whole text.
void LoadOptions(const SettingsStore& store, Options& options);
/// Writes section "optionen", all but `bis`: numbers in decimal, flags as "-1" and "0", the font as name,size.
void SaveOptions(SettingsStore& store, const Options& options);

/// Sets one key from its text form as LoadOptions does. False when there is no such key.
bool SetOption(Options& options, std::string_view key, std::string_view text);

/// What the options say about code.
text::CodeLook LookOf(const Options& options);
text::CodeLayout LayoutOf(const Options& options);

}  // namespace quillmate::settings
