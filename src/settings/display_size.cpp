#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include <quillmate/settings/display_size.h>
#include <quillmate/text/operations.h>

namespace quillmate::settings {
namespace {

constexpr std::string_view kMaximized = "max";

/// A part that is a number from end to end. Texts of older settings may have a decimal comma.
std::optional<double> WholeNumber(std::string_view part) {
  std::string number = text::ReplaceAll(text::Trim(part), ",", ".");
  if (number.starts_with('+') && number.find('-') != 1) number.erase(0, 1);
  double value = 0;
  const char* end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

/// The shortest decimal text that reads back as the same number, without an exponent.
std::string DecimalText(double value) {
  std::array<char, 400> digits{};  // room for the largest double, 309 digits before the point
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), value + 0.0, std::chars_format::fixed);
  return error == std::errc() ? std::string(digits.data(), end) : "0";
}

}  // namespace

std::optional<DisplaySize> ParseDisplaySize(std::string_view bis) {
  if (text::EqualsIgnoreCase(bis, kMaximized)) return DisplaySize{.maximized = true, .place = {}};
  const std::vector<std::string_view> parts = text::Split(bis, ";");
  std::array<double, 4> numbers{};
  if (parts.size() < numbers.size()) return std::nullopt;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::optional<double> number = WholeNumber(parts[i]);
    if (!number) return std::nullopt;
    numbers[i] = *number;
  }
  return DisplaySize{.maximized = false, .place = {numbers[0], numbers[1], numbers[2], numbers[3]}};
}

std::string FormatDisplaySize(const DisplaySize& size) {
  if (size.maximized) return std::string(kMaximized);
  const WindowPlace& place = size.place;
  return DecimalText(place.left) + ";" + DecimalText(place.top) + ";" + DecimalText(place.width) + ";" +
         DecimalText(place.height);
}

}  // namespace quillmate::settings
