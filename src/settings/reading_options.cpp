#include <charconv>

#include <quillmate/settings/reading_options.h>

namespace quillmate::settings {
namespace {

constexpr std::string_view kSection = "lesen";
constexpr std::string_view kExcel4 = "excel4";
constexpr std::string_view kCodePage = "zeichensatz";

}  // namespace

ReadingOptions LoadReadingOptions(const SettingsStore& store) {
  ReadingOptions options;
  options.excel4 = store.ReadSetting(kSection, kExcel4) == "-1";
  const std::string number = store.ReadSetting(kSection, kCodePage);
  std::from_chars(number.data(), number.data() + number.size(), options.codePage);
  return options;
}

void SaveReadingOptions(SettingsStore& store, const ReadingOptions& options) {
  store.WriteSetting(kSection, kExcel4, options.excel4 ? "-1" : "0");
  store.WriteSetting(kSection, kCodePage, std::to_string(options.codePage));
}

}  // namespace quillmate::settings
