#include <algorithm>
#include <limits>

#include "access_pages_p.h"
#include "ciphers_p.h"

namespace quillmate::office {
namespace {

constexpr std::size_t kNameAt = 4;
constexpr std::size_t kVersionAt = 0x14;
constexpr std::size_t kEncipheredAt = 0x18;
constexpr std::size_t kEncipheredOld = 126;
constexpr std::size_t kEnciphered = 128;
constexpr std::size_t kCodePageAt = 0x3C;
constexpr std::size_t kPageKeyAt = 0x3E;
constexpr std::size_t kPasswordAt = 0x299;
constexpr std::size_t kHeaderSize = 0x29B;
constexpr std::string_view kHeaderKey = "\xC7\xDA\x39\x6B";
constexpr std::size_t kOldPageSize = 2048;

// In a page of rows.
constexpr char kRowPage = 1;
constexpr std::size_t kOwnerAt = 4;
constexpr std::size_t kOldRowCountAt = 8;
constexpr std::size_t kRowCountAt = 12;
constexpr std::size_t kOffsetSize = 2;
constexpr unsigned kMovedTo = 0x4000;
constexpr unsigned kMovedHere = 0x8000;
constexpr unsigned kOffsetBits = 0x1FFF;

std::string FourBytes(std::uint32_t number) {
  std::string bytes(4, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(number & 0xFFU);
    number >>= 8U;
  }
  return bytes;
}

}  // namespace

bool AccessPages::HasSignature(std::string_view head) noexcept {
  const std::string_view name = head.substr(std::min(kNameAt, head.size()));
  return name.starts_with("Standard Jet DB") || name.starts_with("Standard ACE DB");
}

AccessPages::AccessPages(ByteSource& source) : source_(source) {
  std::string header = ReadBytes(source, 0, kHeaderSize);
  if (!HasSignature(header) || header.size() < kHeaderSize) return;
  old_ = header[kVersionAt] == 0;
  if (old_) pageSize_ = kOldPageSize;
  Rc4(kHeaderKey).Apply(header.data() + kEncipheredAt, old_ ? kEncipheredOld : kEnciphered);
  codePage_ = LittleEndian<std::uint16_t>(header, kCodePageAt);
  key_ = LittleEndian<std::uint32_t>(header, kPageKeyAt);
  count_ = static_cast<std::uint32_t>(std::min<std::uint64_t>((source.Size() + pageSize_ - 1) / pageSize_,
                                                              std::numeric_limits<std::uint32_t>::max() >> 8U));
  const bool ace = header.compare(kNameAt, 12, "Standard ACE") == 0;
  const bool password = ace && LittleEndian<std::uint16_t>(header, kPasswordAt) != 0;
  state_ = password ? State::kPassword : State::kOpen;
}

std::string_view AccessPages::Read(std::uint32_t page) {
  if (page == 0 || page >= count_) return {};
  Cached& cached = cache_[page % cache_.size()];
  if (cached.page != page) {
    cached.bytes.resize(pageSize_);
    cached.bytes.resize(source_.Read(std::uint64_t{page} * pageSize_, cached.bytes.data(), pageSize_));
    if (key_ != 0) Rc4(FourBytes(key_ ^ page)).Apply(cached.bytes.data(), cached.bytes.size());
    cached.page = page;
  }
  return cached.bytes;
}

std::size_t RowsOn(std::string_view page, bool old) noexcept {
  if (!page.starts_with(kRowPage)) return 0;
  const std::size_t countAt = old ? kOldRowCountAt : kRowCountAt;
  const std::size_t room = page.size() < countAt + kOffsetSize ? 0 : (page.size() - countAt) / kOffsetSize - 1;
  return std::min<std::size_t>(LittleEndian<std::uint16_t>(page, countAt), room);
}

AccessRowBytes RowOn(std::string_view page, bool old, std::size_t row) noexcept {
  const std::size_t rows = RowsOn(page, old);
  if (row >= rows) return {};
  const std::size_t table = (old ? kOldRowCountAt : kRowCountAt) + kOffsetSize;
  const unsigned offset = LittleEndian<std::uint16_t>(page, table + row * kOffsetSize);
  const std::size_t start = offset & kOffsetBits;
  const std::size_t end =
      row == 0 ? page.size()
               : LittleEndian<std::uint16_t>(page, table + (row - 1) * kOffsetSize) & std::size_t{kOffsetBits};
  if (start < table + rows * kOffsetSize || start > end || end > page.size()) return {};
  using Kind = AccessRowBytes::Kind;
  const bool movedTo = (offset & kMovedTo) != 0;
  const bool movedHere = (offset & kMovedHere) != 0;
  const Kind moved = movedTo ? Kind::kMovedTo : Kind::kMovedHere;
  return {movedTo && movedHere   ? Kind::kDeleted
          : movedTo || movedHere ? moved
                                 : Kind::kRow,
          page.substr(start, end - start)};
}

std::uint32_t OwnerOf(std::string_view page) noexcept {
  return page.starts_with(kRowPage) ? LittleEndian<std::uint32_t>(page, kOwnerAt) : 0;
}

}  // namespace quillmate::office
