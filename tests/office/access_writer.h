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

struct WrittenColumn {
  /// As the format numbers them: 3 a 16-bit and 4 a 32-bit number, 2 an 8-bit one, 10 text, 11 bytes, 12 a long text.
  std::string name;
  std::uint8_t type;
};

struct WrittenTable {
  std::string name;
  std::vector<WrittenColumn> columns;
  std::vector<std::vector<AccessCell>> rows;
};

struct AccessWriter {
  /// The format of 97.
  bool old = false;
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

  std::string File() const;
};

/// The table of storages and streams, by their paths, as CompoundWriter has them.
WrittenTable AccessStorageTable(const std::vector<std::pair<std::string, std::string>>& streams);
/// The table that holds a compound file in pieces; pieces of NUL bytes alone are left out.
WrittenTable AccessObjectsTable(std::string_view compoundFile, std::size_t pieceSize);
/// A database with a project.
AccessWriter AccessWith(const WrittenProject& project, bool old);

}  // namespace quillmate::office
