#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Other programs, started without a shell: an argument is an argument, whatever characters it holds.
namespace quillmate::cli {

/// The program in the folders of PATH; those that are no full path are passed over, so that nothing is run that is
/// beside somebody's documents. `name` without ".exe".
std::optional<std::filesystem::path> FindProgram(std::string_view name);

struct ChildEnd {
  /// 128 + number when a signal ended it.
  int status = -1;
  /// What it wrote to standard error, the first 64 KB of it.
  std::string errors;
};

/// Runs a program to its end. Arguments are UTF-8 (elsewhere than on Windows any bytes). Standard input comes from the
/// file, or is empty; standard output is handed on piece by piece. What `take` throws is thrown on when the program has
/// ended. Throws CommandFailure when it can't be started.
ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& input, const std::function<void(std::string_view)>& take);

}  // namespace quillmate::cli
