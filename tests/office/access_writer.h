#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "office/vba_writer.h"

/// Writes Access databases: a header, definitions, maps, rows and long values, as much as the reader looks at.
namespace quillmate::office {

/// Nothing, a number, a text (UTF-8 of Latin-1 and beyond) or bytes.
struct AccessBytes {
  std::string bytes;
};
using AccessCell = std::variant<std::monostate, std::int64_t, std::u16string, AccessBytes>;

enum class AccessFormat { k97, k2000, k2003, k2007 };
inline constexpr AccessFormat kAccessFormats[] = {AccessFormat::k97, AccessFormat::k2000, AccessFormat::k2003,
                                                  AccessFormat::k2007};

struct WrittenColumn {
  /// As the format numbers them: 3 a 16-bit and 4 a 32-bit number, 2 an 8-bit one, 10 text, 11 bytes, 12 a long text,
  /// 17 bytes of a fixed width.
  std::string name;
  std::uint8_t type;
  std::size_t width = 0;
};

struct WrittenTable {
  std::string name;
  std::vector<WrittenColumn> columns;
  std::vector<std::vector<AccessCell>> rows;
};

struct AccessWriter {
  AccessFormat format = AccessFormat::k2003;
  std::uint32_t pageKey = 0;
  int codePage = 1252;
  /// The header says that a password is needed.
  bool password = false;
  /// Every third row was moved to another page, and before each row lies a deleted one.
  bool moved = false;
  /// The maps lead nowhere.
  bool noMaps = false;
  /// Maps that name pages of bits.
  bool longMaps = false;
  /// The second piece of a chain points to itself.
  bool loops = false;
  std::vector<WrittenTable> tables;
  static constexpr int kForm = -32768;
  static constexpr int kReport = -32764;
  /// Further rows of MSysObjects.
  struct Object {
    std::int64_t id;
    int type;
    std::u16string name;
    std::u16string connect = {};
    std::u16string database = {};
    std::u16string foreignName = {};
  };
  std::vector<Object> objects;

  bool IsOld() const { return format == AccessFormat::k97; }
  std::string File() const;
};

/// A database with a project.
AccessWriter AccessWith(const WrittenProject& project, AccessFormat format);
/// The table in which a format keeps storages and streams, by their paths. Pieces of a compound file that are NUL bytes
/// alone are left out.
WrittenTable AccessTableOf(const CompoundWriter& streams, AccessFormat format);

}  // namespace quillmate::office
