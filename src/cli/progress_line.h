#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace quillmate::cli {

/// One line on standard error that tells how far a long command is, rewritten in place and removed at the end. Shown
/// on a terminal only.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Shows a text (UTF-8), cut to the width of the terminal. Texts that come faster than anybody reads are left out.
  void Show(std::string_view text);
  /// Removes the line, so that a message can be written.
  void Clear() noexcept;

 private:
  using Clock = std::chrono::steady_clock;
  const bool terminal_;
  Clock::time_point next_{};
  /// Characters on the screen.
  std::size_t shown_ = 0;
};

}  // namespace quillmate::cli
