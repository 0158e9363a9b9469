#include <algorithm>
#include <array>
#include <bit>

#include <quillmate/text/characters.h>

#include "site_names_p.h"

namespace quillmate::output {
namespace {

constexpr std::size_t kLongestName = 80;

/// ASCII spellings of the codes from 192 on.
constexpr std::array<std::string_view, 64> kSpellings = {
    "A", "A", "A", "A", "Ae", "A", "Ae", "C", "E", "E", "E", "E", "I",  "I", "I",  "I",  //
    "D", "N", "O", "O", "O",  "O", "Oe", "x", "O", "U", "U", "U", "Ue", "Y", "Th", "ss",
    "a", "a", "a", "a", "ae", "a", "ae", "c", "e", "e", "e", "e", "i",  "i", "i",  "i",
    "d", "n", "o", "o", "o",  "o", "oe", "-", "o", "u", "u", "u", "ue", "y", "th", "y"};

bool IsSafe(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

std::string AsciiName(std::string_view name) {
  std::string ascii;
  for (const char c : name) {
    const auto code = static_cast<unsigned char>(c);
    if (IsSafe(c)) {
      ascii += c;
    } else if (code >= 192) {
      ascii += kSpellings[code - 192U];
    } else if (!ascii.empty() && ascii.back() != '-') {
      ascii += '-';
    }
    if (ascii.size() >= kLongestName) break;
  }
  return ascii.empty() ? "ohne-Namen" : ascii;
}

std::string LowerAscii(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return lower;
}

using LowerTable = std::array<unsigned char, 256>;

LowerTable MakeLowerTable() {
  LowerTable table{};
  for (unsigned code = 0; code < table.size(); ++code) table[code] = text::ToLower(static_cast<unsigned char>(code));
  return table;
}

const LowerTable kLower = MakeLowerTable();

unsigned char Lower(char c) noexcept { return kLower[static_cast<unsigned char>(c)]; }

std::uint32_t HashOf(std::string_view name) noexcept {
  std::uint32_t hash = 2166136261U;
  for (const char c : name) hash = (hash ^ Lower(c)) * 16777619U;
  return hash ^ (hash >> 15U);
}

bool EqualsLower(std::string_view name, std::string_view lower) noexcept {
  return name.size() == lower.size() && std::equal(name.begin(), name.end(), lower.begin(), [](char a, char b) {
           return Lower(a) == static_cast<unsigned char>(b);
         });
}

}  // namespace

std::string FileNames::Make(std::string_view name) {
  std::string stem = AsciiName(name);
  const std::string key = LowerAscii(stem);
  if (taken_.emplace(key, 2).second) return stem;
  for (int& number = taken_[key];; ++number) {
    const std::string suffix = "-" + std::to_string(number);
    // The reference stays good when the table grows.
    if (taken_.emplace(key + suffix, 2).second) return stem + suffix;
  }
}

NameTable::NameTable(std::size_t most) : slots_(std::bit_ceil(std::max<std::size_t>(most * 4, 16))) {}

int NameTable::Add(std::string_view name) {
  const std::uint32_t hash = HashOf(name);
  Slot& slot = slots_[SlotOf(name, hash)];
  if (slot.name != kNone) return slot.name;
  const int number = static_cast<int>(names_.size());
  slot = {hash, number};
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return static_cast<char>(Lower(c)); });
  names_.push_back(std::move(lower));
  return number;
}

int NameTable::Find(std::string_view name) const noexcept {
  const std::uint32_t hash = HashOf(name);
  return slots_[SlotOf(name, hash)].name;
}

std::size_t NameTable::SlotOf(std::string_view name, std::uint32_t hash) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].name != kNone) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && EqualsLower(name, names_[static_cast<std::size_t>(slot.name)])) break;
    at = (at + 1) & mask;
  }
  return at;
}

}  // namespace quillmate::output
