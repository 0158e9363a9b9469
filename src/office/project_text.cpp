#include <algorithm>
#include <array>
#include <cstdint>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/component_type.h>
#include <quillmate/office/vba_directory.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>

namespace quillmate::office {
namespace {

struct ModuleKey {
  std::string_view key;
  int type;
};
constexpr std::array kModuleKeys{ModuleKey{"Document", kHostDocument}, ModuleKey{"DocClass", kHostDocument},
                                 ModuleKey{"Module", kStdModule}, ModuleKey{"Class", kClassModule},
                                 ModuleKey{"BaseClass", kMSForm}};

// Bits of the protection state, 2.3.1.15.
constexpr unsigned kByUser = 1;
constexpr unsigned kByHost = 2;
constexpr unsigned kByEditor = 4;
constexpr std::size_t kStateSize = 4;

std::string_view Unquoted(std::string_view value) noexcept {
  value = text::Trim(value);
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
  return value;
}

/// The data of a value, checked for its size; a value that makes no sense leaves a mark.
std::optional<std::string> Deciphered(std::string_view value, std::size_t fewestBytes, VbaProtection& protection) {
  std::optional<std::string> data = DecipherVbaData(value);
  if (!data.has_value() || data->size() < fewestBytes) {
    protection.unclear = true;
    return std::nullopt;
  }
  return data;
}

void TakeState(std::string_view value, VbaProtection& protection) {
  const std::optional<std::string> data = Deciphered(value, kStateSize, protection);
  if (!data.has_value()) return;
  const auto bits = LittleEndian<std::uint32_t>(*data, 0);
  protection.byUser = (bits & kByUser) != 0;
  protection.byHost = (bits & kByHost) != 0;
  protection.byEditor = (bits & kByEditor) != 0;
}

/// A single 0 stands for no password.
void TakePassword(std::string_view value, VbaProtection& protection) {
  const std::optional<std::string> data = Deciphered(value, 1, protection);
  protection.password = data.has_value() && *data != std::string_view("\0", 1);
}

void TakeVisibility(std::string_view value, VbaProtection& protection) {
  const std::optional<std::string> data = Deciphered(value, 1, protection);
  protection.visible = !data.has_value() || data->front() != '\0';
}

void TakeModule(const ModuleKey& key, std::string_view value, ProjectText& project) {
  // A document's name is followed by "/" and its version.
  const std::string_view name = text::Trim(key.type == kHostDocument ? text::TextBefore(value, "/") : value);
  if (!name.empty() && project.modules.size() <= kMostVbaModules)
    project.modules.push_back({std::string(name), key.type});
}

void TakeLine(std::string_view key, std::string_view value, ProjectText& project) {
  const auto* module = std::find_if(kModuleKeys.begin(), kModuleKeys.end(),
                                    [&](const ModuleKey& entry) { return text::EqualsIgnoreCase(entry.key, key); });
  if (module != kModuleKeys.end()) {
    TakeModule(*module, value, project);
  } else if (text::EqualsIgnoreCase(key, "Name")) {
    project.name = Unquoted(value);
  } else if (text::EqualsIgnoreCase(key, "CMG")) {
    TakeState(Unquoted(value), project.protection);
  } else if (text::EqualsIgnoreCase(key, "DPB")) {
    TakePassword(Unquoted(value), project.protection);
  } else if (text::EqualsIgnoreCase(key, "GC")) {
    TakeVisibility(Unquoted(value), project.protection);
  }
}

/// -1 when it is none.
int ValueOfDigit(char digit) noexcept {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

std::optional<std::string> BytesOfDigits(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    const int high = ValueOfDigit(digits[at]);
    const int low = ValueOfDigit(digits[at + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  return bytes;
}

}  // namespace

std::optional<std::string> DecipherVbaData(std::string_view digits) {
  constexpr std::size_t kHead = 3;  // seed, version, project key
  constexpr std::size_t kLengthSize = 4;
  constexpr unsigned char kVersion = 2;
  std::optional<std::string> bytes = BytesOfDigits(digits);
  if (!bytes.has_value() || bytes->size() < kHead + kLengthSize) return std::nullopt;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>((*bytes)[at]); };

  const unsigned char seed = byte(0);
  if ((seed ^ byte(1)) != kVersion) return std::nullopt;
  // Each byte is mixed with the enciphered byte two before it and the plain byte before it.
  unsigned char plain = seed ^ byte(2);
  unsigned char last = byte(2);
  unsigned char beforeLast = byte(1);
  for (std::size_t at = kHead; at < bytes->size(); ++at) {
    const unsigned char enciphered = byte(at);
    plain = enciphered ^ static_cast<unsigned char>(beforeLast + plain);
    beforeLast = last;
    last = enciphered;
    (*bytes)[at] = static_cast<char>(plain);
  }
  const std::size_t start = kHead + (seed & 6U) / 2;
  const auto length = LittleEndian<std::uint32_t>(*bytes, start);
  if (bytes->size() < start + kLengthSize || bytes->size() - start - kLengthSize < length) return std::nullopt;
  return bytes->substr(start + kLengthSize, length);
}

ProjectText ParseProjectText(std::string_view bytes) {
  ProjectText project;
  text::LineReader lines(bytes);
  for (std::string_view line; lines.Next(line) && !text::TrimLeft(line).starts_with('[');) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    TakeLine(text::Trim(line.substr(0, equals)), text::Trim(line.substr(equals + 1)), project);
  }
  return project;
}

}  // namespace quillmate::office
