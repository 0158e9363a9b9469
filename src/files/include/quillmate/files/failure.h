#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

/// Why something failed, as a value: a code and the file or folder that it is about.
///
/// A code is the system's (generic or system category), or a reason of a room: an enum that counts from 1, with a
/// category of its own. The words for a code are in its category and nowhere else: the system's in failure.cpp, those
/// of a room in one table there.
namespace quillmate::files {

/// What the system refused.
enum class FileAction { kRead, kWrite, kMakeFolder, kList, kRemove };

/// Reasons to leave a file or folder alone that the system knows nothing of.
enum class FileReason {
  kNoFolder = 1,
  kIsInput  // what is read is not written over
};
std::error_code make_error_code(FileReason reason) noexcept;

/// The one exception for what can't be done. what() is German, UTF-8, without a full stop unless the words have one,
/// of one line unless they have more (CR LF). Copies are cheap and don't throw.
///
/// In the words "%p" is the path, "%1" the first of `details`, "%c" the cause. A path that they leave out comes in
/// front, a cause at the end.
class Failure : public std::exception {
 public:
  explicit Failure(const std::error_code& code, std::filesystem::path path = {}, std::vector<std::string> details = {});
  /// What could not be done because of another failure.
  Failure(const std::error_code& code, const Failure& cause, std::filesystem::path path = {},
          std::vector<std::string> details = {});
  /// "PATH kann nicht gelesen werden: ..."
  Failure(FileAction action, std::filesystem::path path, const std::error_code& code);
  /// The same for an `errno` value.
  Failure(FileAction action, std::filesystem::path path, int code);

  const char* what() const noexcept override;
  const std::error_code& Code() const noexcept;
  const std::filesystem::path& Path() const noexcept;
  /// Whether this is the code of the failure or of a cause.
  bool Is(const std::error_code& code) const noexcept;
  /// The same failure of a certain file.
  Failure At(std::filesystem::path path) const;
  /// The path, `separator` and the words, whatever could not be done with it.
  std::string Text(const char* separator = ": ") const;

 private:
  struct State;
  std::shared_ptr<const State> state_;
};

/// The words for a code: German, UTF-8, without a full stop, places for path and details not filled.
std::string ReasonText(const std::error_code& code);
/// The same for an `errno` value.
std::string ReasonText(int code);

/// The reason of any failure, German, UTF-8: of Failure its Text, of std::filesystem::filesystem_error with the path in
/// front and `separator` between, of std::bad_alloc that memory is short, of others what().
std::string FailureText(const std::exception& failure, const char* separator = ": ");
/// Whether it is the system, not a room of the program, that has refused something.
bool IsOfSystem(const std::exception& failure) noexcept;

/// A row of a room's table of words.
template <typename Reason>
struct ReasonWords {
  Reason reason;
  const char* words;
};

/// For a static_assert: every reason up to `last` has its row, in the order of the enum, the first one counting 1.
template <typename Reason, std::size_t N>
constexpr bool IsComplete(const std::array<ReasonWords<Reason>, N>& table, Reason last) {
  for (std::size_t i = 0; i < N; ++i) {
    if (static_cast<std::size_t>(table[i].reason) != i + 1) return false;
  }
  return static_cast<std::size_t>(last) == N;
}

/// The category of a room's reasons.
template <typename Reason, std::size_t N>
class ReasonCategory final : public std::error_category {
 public:
  ReasonCategory(const char* room, const std::array<ReasonWords<Reason>, N>& table) noexcept
      : room_(room), table_(table) {}
  const char* name() const noexcept override { return room_; }
  std::string message(int code) const override {
    const auto found = std::ranges::find(table_, static_cast<Reason>(code), &ReasonWords<Reason>::reason);
    return found == table_.end() ? std::string() : found->words;
  }

 private:
  const char* room_;
  const std::array<ReasonWords<Reason>, N>& table_;
};

}  // namespace quillmate::files

template <>
struct std::is_error_code_enum<quillmate::files::FileReason> : std::true_type {};
