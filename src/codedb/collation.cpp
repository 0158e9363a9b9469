#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>

#include <sqlite3.h>
#include <unicode/ucol.h>

#include <quillmate/codedb/collation.h>

#include "collation_p.h"

namespace quillmate::codedb {
namespace {

struct CloseCollator {
  void operator()(UCollator* collator) const noexcept { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CloseCollator>;

Collator OpenGermanCollator() {
  UErrorCode error = U_ZERO_ERROR;
  Collator collator(ucol_open("de", &error));
  if (U_FAILURE(error)) return nullptr;
  ucol_setStrength(collator.get(), UCOL_SECONDARY);
  return collator;
}

const UCollator* GermanCollator() {
  static const Collator collator = OpenGermanCollator();
  return collator.get();
}

/// Sort weights of the characters that names are nearly always made of: "_" before digits before letters, case
/// ignored. 0 marks every other byte. These characters sort in the collator without regard to their neighbours.
constexpr std::array<std::uint8_t, 256> MakeWeights() {
  std::array<std::uint8_t, 256> weights{};
  std::uint8_t next = 1;
  weights['_'] = next++;
  for (unsigned c = '0'; c <= '9'; ++c) weights[c] = next++;
  for (unsigned c = 'a'; c <= 'z'; ++c) weights[c] = weights[c - 32] = next++;
  return weights;
}
constexpr auto kWeights = MakeWeights();

std::uint8_t WeightAt(std::string_view text, std::size_t at) noexcept {
  return kWeights[static_cast<unsigned char>(text[at])];
}

/// True when the character at `at` is followed by another plain one or by the end: an accent behind it may not change
/// what it is.
bool StandsAlone(std::string_view text, std::size_t at) noexcept {
  return at + 1 >= text.size() || WeightAt(text, at + 1) != 0;
}

int CompareWithCollator(std::string_view a, std::string_view b) noexcept {
  const UCollator* const collator = GermanCollator();
  constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();
  if (collator == nullptr || a.size() > kLongest || b.size() > kLongest) return a.compare(b);
  UErrorCode error = U_ZERO_ERROR;
  const UCollationResult order = ucol_strcollUTF8(collator, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                                                  static_cast<std::int32_t>(b.size()), &error);
  return U_FAILURE(error) ? a.compare(b) : static_cast<int>(order);
}

int CompareForSqlite(void*, int aSize, const void* a, int bSize, const void* b) {
  return CompareText({static_cast<const char*>(a), static_cast<std::size_t>(aSize)},
                     {static_cast<const char*>(b), static_cast<std::size_t>(bSize)});
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) noexcept {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const std::uint8_t x = WeightAt(a, i);
    const std::uint8_t y = WeightAt(b, i);
    if (x == 0 || y == 0) return CompareWithCollator(a, b);
    if (x == y) continue;
    if (!StandsAlone(a, i) || !StandsAlone(b, i)) return CompareWithCollator(a, b);
    return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  const std::string_view longer = a.size() > b.size() ? a : b;
  if (WeightAt(longer, common) == 0) return CompareWithCollator(a, b);
  return a.size() < b.size() ? -1 : 1;
}

bool RegisterCollation(sqlite3* db) {
  return GermanCollator() != nullptr &&
         sqlite3_create_collation_v2(db, kCollationName, SQLITE_UTF8, nullptr, CompareForSqlite, nullptr) == SQLITE_OK;
}

}  // namespace quillmate::codedb
