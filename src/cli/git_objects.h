#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quillmate::cli {

/// What the stored objects hold, told from the stream that "cat-file --batch" writes: "HASH blob SIZE", LF, the bytes,
/// LF; "HASH missing", LF.
class ObjectStream {
 public:
  /// `begin(n)` opens the n-th object asked for, `bytes` gets its contents; missing ones are only begun as such.
  struct Sink {
    std::function<void(std::size_t number, bool missing)> begin;
    std::function<void(std::string_view)> bytes;
    std::function<void()> end;
  };
  explicit ObjectStream(Sink sink) : sink_(std::move(sink)) {}

  void Take(std::string_view piece);
  std::size_t Count() const noexcept { return number_; }

 private:
  void TakeHeader();

  Sink sink_;
  std::string header_;
  std::size_t number_ = 0;
  std::size_t left_ = 0;
};

/// A small file may stand for a large one that is kept beside the repository: the hash that it names, nothing for other
/// files.
std::optional<std::string> PointedTo(const std::filesystem::path& file);

}  // namespace quillmate::cli
