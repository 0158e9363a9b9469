#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillmate/settings/settings_store.h>

namespace quillmate::settings {

/// The in-memory copies of the settings of section "optionen", with their defaults. Colours are
/// red + 256 * green + 65536 * blue.
struct Options {
  std::int32_t fkey = 8388608;
  std::int32_t fkom = 32768;
  std::int32_t fstr = 128;
  bool rouf = true;
  bool aufk = false;
  bool leer = false;
  bool vor = false;
  bool rer = false;
  bool rle = false;
  bool meld = true;
  bool einr = false;
  bool stapro = false;
  /// Millimetres.
  std::int16_t tab = 5;
  /// UTF-8.
  std::string fontName = "MS Sans Serif";
  /// Points.
  std::int16_t fontSize = 10;
  bool usb = false;
  std::string bis = "max";
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

}  // namespace quillmate::settings
