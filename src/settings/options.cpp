#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <variant>

#include <quillmate/settings/options.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::settings {
namespace {

/// Where a key's value lives; its type is the kind of the key. The font's one text fills two members.
struct FontField {};
using Field =
    std::variant<std::int32_t Options::*, std::int16_t Options::*, bool Options::*, std::string Options::*, FontField>;

struct OptionKey {
  std::string_view key;
  Field field;
  /// In its text form.
  std::string_view standard;
  /// SaveOptions writes it; the display size has a command of its own.
  bool saved = true;
};

/// In the order in which they are written.
constexpr std::array<OptionKey, 16> kOptionKeys = {{
    {"fkey", &Options::fkey, "8388608"},
    {"fkom", &Options::fkom, "32768"},
    {"fstr", &Options::fstr, "128"},
    {"rouf", &Options::rouf, "-1"},
    {"aufk", &Options::aufk, "0"},
    {"leer", &Options::leer, "0"},
    {"vor", &Options::vor, "0"},
    {"rer", &Options::rer, "0"},
    {"rle", &Options::rle, "0"},
    {"meld", &Options::meld, "-1"},
    {"einr", &Options::einr, "0"},
    {"stapro", &Options::stapro, "0"},
    {"tab", &Options::tab, "5"},
    {"font", FontField{}, "MS Sans Serif,10"},
    {"usb", &Options::usb, "0"},
    {"bis", &Options::bis, "max", false},
}};

const OptionKey* FindKey(std::string_view key) {
  const auto* found =
      std::find_if(kOptionKeys.begin(), kOptionKeys.end(), [key](const OptionKey& k) { return k.key == key; });
  return found == kOptionKeys.end() ? nullptr : found;
}

/// The text's leading number as an integer, halves to the even neighbour. A number beyond the type leaves `target`.
template <typename Integer>
void SetRounded(Integer& target, std::string_view text) {
  const double rounded = std::nearbyint(text::LeadingNumber(text));
  const bool fits = rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max();
  if (fits) target = static_cast<Integer>(rounded);
}

void SetField(Options& options, std::int32_t Options::*field, std::string_view text) {
  SetRounded(options.*field, text);
}
void SetField(Options& options, std::int16_t Options::*field, std::string_view text) {
  SetRounded(options.*field, text);
}
void SetField(Options& options, bool Options::*field, std::string_view text) {
  options.*field = text::LeadingNumber(text) != 0;
}
void SetField(Options& options, std::string Options::*field, std::string_view text) { options.*field = text; }
void SetField(Options& options, FontField, std::string_view text) {
  options.fontName = text::TextBefore(text, ",");
  SetRounded(options.fontSize, text::TextAfterLast(text, ","));
}

std::string FieldText(const Options& options, std::int32_t Options::*field) { return std::to_string(options.*field); }
std::string FieldText(const Options& options, std::int16_t Options::*field) { return std::to_string(options.*field); }
std::string FieldText(const Options& options, bool Options::*field) { return options.*field ? "-1" : "0"; }
std::string FieldText(const Options& options, std::string Options::*field) { return options.*field; }
std::string FieldText(const Options& options, FontField) {
  return options.fontName + "," + std::to_string(options.fontSize);
}

void SetKey(Options& options, const OptionKey& key, std::string_view text) {
  if (text.empty()) return;
  std::visit([&](auto field) { SetField(options, field, text); }, key.field);
}

}  // namespace

Options::Options() {
  for (const OptionKey& key : kOptionKeys) SetKey(*this, key, key.standard);
}

void LoadOptions(const SettingsStore& store, Options& options) {
  for (const OptionKey& key : kOptionKeys) SetKey(options, key, store.ReadSetting(kOptionsSection, key.key));
}

void SaveOptions(SettingsStore& store, const Options& options) {
  for (const OptionKey& key : kOptionKeys) {
    if (!key.saved) continue;
    const std::string text = std::visit([&](auto field) { return FieldText(options, field); }, key.field);
    store.WriteSetting(kOptionsSection, key.key, text);
  }
}

bool SetOption(Options& options, std::string_view key, std::string_view text) {
  const OptionKey* found = FindKey(key);
  if (found) SetKey(options, *found, text);
  return found != nullptr;
}

text::CodeLook LookOf(const Options& options) {
  return {.keywordColour = options.fkey,
          .commentColour = options.fkom,
          .stringColour = options.fstr,
          .fontName = text::CodeFromUtf8(options.fontName),
          .fontSize = options.fontSize,
          .tabWidth = options.tab,
          .boldRoutines = options.rouf};
}

text::CodeLayout LayoutOf(const Options& options) {
  return {.indent = options.einr,
          .indentBodies = options.rer,
          .removeEmptyLines = options.leer,
          .emptyLineBeforeRoutines = options.rle};
}

}  // namespace quillmate::settings
