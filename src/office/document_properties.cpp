#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include <quillmate/office/document_facts.h>

#include "code_page_p.h"
#include "package_facts_p.h"

namespace quillmate::office {
namespace {

/// 100 nanoseconds since 1601 as ISO 8601; empty for what no document can have.
std::string TextOfTime(std::uint64_t time) {
  constexpr std::uint64_t kPerSecond = 10'000'000;
  constexpr std::uint64_t kPerDay = 86'400;
  const std::uint64_t seconds = time / kPerSecond;
  const std::uint64_t days = seconds / kPerDay;
  // Days from 1601-01-01 to the first of March of the year 0, from where years end with February.
  constexpr std::uint64_t kDaysBefore = 584'694;
  const std::uint64_t shifted = days + kDaysBefore;
  const std::uint64_t era = shifted / 146'097;
  const std::uint64_t dayOfEra = shifted % 146'097;
  const std::uint64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const std::uint64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::uint64_t month = (5 * dayOfYear + 2) / 153;
  const std::uint64_t day = dayOfYear - (153 * month + 2) / 5 + 1;
  const std::uint64_t year = yearOfEra + era * 400 + (month >= 10 ? 1 : 0);
  if (time == 0 || year > 9999) return {};
  const auto digits = [](std::uint64_t number, std::size_t width) {
    std::string text = std::to_string(number);
    return std::string(width > text.size() ? width - text.size() : 0, '0') + text;
  };
  const std::uint64_t rest = seconds % kPerDay;
  return digits(year, 4) + "-" + digits(month < 10 ? month + 3 : month - 9, 2) + "-" + digits(day, 2) + "T" +
         digits(rest / 3600, 2) + ":" + digits(rest / 60 % 60, 2) + ":" + digits(rest % 60, 2) + "Z";
}

struct TextProperty {
  std::uint32_t id;
  std::string DocumentProperties::*field;
};
constexpr std::array kTexts{TextProperty{2, &DocumentProperties::title}, TextProperty{4, &DocumentProperties::author},
                            TextProperty{8, &DocumentProperties::lastAuthor},
                            TextProperty{18, &DocumentProperties::application}};
constexpr std::array kTimes{TextProperty{12, &DocumentProperties::created},
                            TextProperty{13, &DocumentProperties::modified}};

/// The properties of one set, by their ids.
class PropertySet {
 public:
  explicit PropertySet(std::string_view bytes) noexcept : bytes_(bytes) {}

  /// Where the value begins; nothing when it is missing.
  std::optional<std::string_view> Find(std::uint32_t id) const noexcept {
    const std::size_t count = LittleEndian<std::uint32_t>(bytes_, 4);
    for (std::size_t i = 0; i < count && 8 + (i + 1) * 8 <= bytes_.size(); ++i) {
      if (LittleEndian<std::uint32_t>(bytes_, 8 + i * 8) != id) continue;
      const std::size_t at = LittleEndian<std::uint32_t>(bytes_, 12 + i * 8);
      return at < bytes_.size() ? std::optional(bytes_.substr(at)) : std::nullopt;
    }
    return std::nullopt;
  }
  int CodePage() const noexcept {
    const auto value = Find(1);
    return value.has_value() ? LittleEndian<std::uint16_t>(*value, 4) : 0;
  }

 private:
  std::string_view bytes_;
};

/// The first set of the stream; nothing when there is none.
std::optional<PropertySet> FirstSet(std::string_view bytes) {
  constexpr std::size_t kSetOffsetAt = 44;
  const std::size_t at = LittleEndian<std::uint32_t>(bytes, kSetOffsetAt);
  if (at == 0 || at >= bytes.size()) return std::nullopt;
  return PropertySet(bytes.substr(at));
}

}  // namespace

std::optional<std::string_view> SignatureInSummary(std::string_view bytes) {
  constexpr std::uint32_t kSignature = 24;
  constexpr std::uint16_t kBlob = 0x41;
  constexpr std::size_t kHead = 8;
  const std::optional<PropertySet> set = FirstSet(bytes);
  const auto value = set ? set->Find(kSignature) : std::nullopt;
  if (!value || value->size() < kHead || LittleEndian<std::uint16_t>(*value, 0) != kBlob) return std::nullopt;
  const std::string_view blob = value->substr(kHead, LittleEndian<std::uint32_t>(*value, 4));
  return blob.empty() ? std::nullopt : std::optional(blob);
}

void ReadSummary(std::string_view bytes, DocumentProperties& properties) {
  constexpr std::uint16_t kText = 0x1E;
  constexpr std::uint16_t kTime = 0x40;
  const std::optional<PropertySet> found = FirstSet(bytes);
  if (!found) return;
  const PropertySet& set = *found;
  const CodePage codePage(set.CodePage());
  for (const TextProperty& text : kTexts) {
    const auto value = set.Find(text.id);
    if (!value.has_value() || value->size() < 8 || LittleEndian<std::uint16_t>(*value, 0) != kText) continue;
    const std::string_view content = value->substr(8, LittleEndian<std::uint32_t>(*value, 4));
    properties.*text.field = codePage.Utf8From(content.substr(0, content.find('\0')));
  }
  for (const TextProperty& time : kTimes) {
    const auto value = set.Find(time.id);
    if (!value.has_value() || LittleEndian<std::uint16_t>(*value, 0) != kTime) continue;
    properties.*time.field = TextOfTime(LittleEndian<std::uint64_t>(*value, 4));
  }
}

}  // namespace quillmate::office
