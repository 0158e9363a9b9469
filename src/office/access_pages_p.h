#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillmate/office/byte_source.h>

namespace quillmate::office {

/// The pages of an Access database. The first one is the header:
///
///     0x04   "Standard Jet DB" or "Standard ACE DB"
///     0x14   0 for the format of Access 97 with pages of 2,048 bytes; above that they have 4,096
///     0x18   enciphered (RC4) with a key that is the same in all files, 126 bytes in the format of 97, otherwise 128:
///            0x3C the code page, 0x3E the key of the pages, 0 for none
///     0x299  the length of the description of an encryption with a password; 0 for none
///
/// Page n of a file with a page key is enciphered (RC4) with the key XOR n, the header never.
class AccessPages {
 public:
  enum class State { kOpen, kNoDatabase, kPassword };

  /// `source` has to outlive the pages.
  explicit AccessPages(ByteSource& source);
  static bool HasSignature(std::string_view head) noexcept;

  State Opened() const noexcept { return state_; }
  /// True for the format of Access 97.
  bool IsOld() const noexcept { return old_; }
  /// Of the texts in the format of 97; later ones are Unicode.
  int CodePage() const noexcept { return codePage_; }
  std::size_t PageSize() const noexcept { return pageSize_; }
  std::uint32_t Count() const noexcept { return count_; }
  /// Bytes of the whole file.
  std::uint64_t Size() const noexcept { return source_.Size(); }

  /// The page's bytes, shorter at the end of a file that was cut off and empty beyond it. They are there until another
  /// page is read.
  std::string_view Read(std::uint32_t page);

 private:
  struct Cached {
    std::uint32_t page = 0;
    std::string bytes;
  };

  ByteSource& source_;
  State state_ = State::kNoDatabase;
  bool old_ = false;
  int codePage_ = 0;
  std::size_t pageSize_ = 4096;
  std::uint32_t count_ = 0;
  std::uint32_t key_ = 0;
  /// The pages read last: rows and what they point to take turns.
  std::array<Cached, 16> cache_;
};

/// Where a row is: the page and, in its low byte, the row.
using AccessPointer = std::uint32_t;
inline std::uint32_t PageOf(AccessPointer pointer) noexcept { return pointer >> 8U; }
inline std::size_t RowOf(AccessPointer pointer) noexcept { return pointer & 0xFFU; }

/// A row of a page. Each page of rows has a table of 16-bit offsets, of which the first belongs to the row at its end.
struct AccessRowBytes {
  enum class Kind { kNone, kRow, kMovedTo, kMovedHere, kDeleted };
  Kind kind = Kind::kNone;
  /// Within the page.
  std::string_view bytes;
};

/// Rows of a page, whatever kind of rows it holds; 0 when it is no such page.
std::size_t RowsOn(std::string_view page, bool old) noexcept;
/// kNone when there is no such row or its offsets make no sense.
AccessRowBytes RowOn(std::string_view page, bool old, std::size_t row) noexcept;
/// The table that a page of rows belongs to, by the page of its definition; 0 for other pages.
std::uint32_t OwnerOf(std::string_view page) noexcept;

}  // namespace quillmate::office
