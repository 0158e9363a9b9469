#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::office {

/// A tree of named storages and streams, as a macro project is stored in: a compound file, or the table in which a
/// database keeps one. Names are UTF-8, and names that differ in case only are equal.
class Storage {
 public:
  using Id = std::uint32_t;
  static constexpr Id kRoot = 0;

  struct Item {
    Id id;
    std::string name;
    bool isStorage;
  };
  struct Stream {
    std::string bytes;
    /// False when the stream breaks off early, or when it is longer than the caller wanted.
    bool complete = false;
  };

  virtual ~Storage() = default;
  /// Bytes of the whole file: all streams together have no more.
  virtual std::uint64_t Size() const noexcept = 0;
  /// What is directly in a storage.
  virtual std::vector<Item> List(Id storage) const = 0;
  virtual std::optional<Id> FindStorage(Id storage, std::string_view name) const = 0;
  virtual std::optional<Id> FindStream(Id storage, std::string_view name) const = 0;
  /// The first `limit` bytes of a stream; costs no more than that many bytes do.
  virtual Stream ReadStream(Id stream, std::uint64_t limit) const = 0;
};

}  // namespace quillmate::office
