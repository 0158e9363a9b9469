#include "input_list.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/text/operations.h>

#include "commands.h"
#include "messages.h"
#include "option_table.h"
#include "read_files.h"
#include "scratch_folder.h"

namespace quillmate::cli {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
/// As much as is read of any other input.
constexpr std::size_t kLargestInput = std::size_t{1} << 30U;

struct StandardInput {
  std::unique_ptr<files::WorkFolder> folder;
  std::string path;
};

StandardInput& TheInput() {
  static StandardInput input;
  return input;
}

/// Module files say what they are at their beginning; Office files are told by their content.
std::string_view ExtensionFor(std::string_view bytes) {
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  bytes = bytes.substr(0, std::size_t{1} << 16U);
  const std::string_view first = text::TextBefore(bytes, "\n");
  if (text::StartsWithIgnoreCase(first, "VERSION "))
    return first.find("CLASS") == std::string_view::npos ? ".frm" : ".cls";
  return bytes.find("Attribute VB_PredeclaredId") == std::string_view::npos ? ".bas" : ".cls";
}

}  // namespace

std::string ReadStandardInput() {
  std::string bytes;
  std::array<char, std::size_t{1} << 16U> piece;
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), stdin)) {
    bytes.append(piece.data(), count);
    if (bytes.size() > kLargestInput) throw CommandFailure("Die Standardeingabe ist zu groß");
  }
  if (std::ferror(stdin) != 0) {
    throw CommandFailure("Die Standardeingabe kann nicht gelesen werden: " + files::ReasonText(errno));
  }
  return bytes;
}

void AddListedInputs(Invocation& invocation) {
  if (!invocation.filesFrom) return;
  const std::string& list = *invocation.filesFrom;
  const std::string bytes = list == "-" ? ReadStandardInput() : files::ReadWholeFile(files::PathFromText(list));
  std::string_view rest = bytes;
  if (list != "-") NoteRead(files::PathFromText(list));
  if (rest.starts_with(kMark)) rest.remove_prefix(kMark.size());
  const std::size_t before = invocation.inputs.size();
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) invocation.inputs.emplace_back(line);
  }
  if (invocation.inputs.size() == before) throw CommandFailure(list + ": Die Liste nennt keine Eingabe");
}

void TakeStandardInput(Invocation& invocation) {
  if ((invocation.command->options & kTakesHost) == 0) return;
  const auto first = invocation.inputs.begin() + static_cast<std::ptrdiff_t>(invocation.command->texts);
  for (auto input = first; input != invocation.inputs.end(); ++input) {
    if (*input != "-") continue;
    StandardInput& standard = TheInput();
    if (standard.folder == nullptr) {
      const std::string bytes = ReadStandardInput();
      if (bytes.empty()) throw CommandFailure("Die Standardeingabe ist leer");
      standard.folder = MakeScratchFolder();
      const auto file = standard.folder->Path() / ("Standardeingabe" + std::string(ExtensionFor(bytes)));
      files::WriteWholeFile(file, bytes);
      standard.path = files::PathText(file);
      ShowPathAs(standard.path, "Standardeingabe");
    }
    *input = standard.path;
  }
}

bool ReadsStandardInput() noexcept { return !TheInput().path.empty(); }

void NameStandardInput(std::string& path) {
  if (ReadsStandardInput() && path == TheInput().path) path = "-";
}

}  // namespace quillmate::cli
