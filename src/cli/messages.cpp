#include "messages.h"

#include <cstdio>
#include <utility>

#include <quillmate/files/work_folder.h>
#include <quillmate/text/operations.h>

#include "terminal_text.h"

namespace quillmate::cli {
namespace {

bool incomplete = false;
std::pair<std::string, std::string> shownPath;

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x20 && code != 0x7F) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') {
    line.pop_back();
  }
  return line;
}

std::string MessageLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (const char c : text) {
    if (c != '\r' && c != '\n' && c != '\t') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return ForTerminal(line);
}

void Complain(std::string_view text) noexcept try {
  const auto& [path, name] = shownPath;
  const std::string shown = path.empty() ? std::string(text) : text::ReplaceAll(text, path, name);
  const std::string line = std::string(kProgramName) + ": " + MessageLine(shown) + "\n";
  const files::EndGuard guard;
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
} catch (...) {
  std::fputs("quillmate-cli: Zu wenig Speicher\n", stderr);
}

void MarkIncomplete() noexcept { incomplete = true; }
bool IsIncomplete() noexcept { return incomplete; }

void ShowPathAs(std::string path, std::string name) { shownPath = {std::move(path), std::move(name)}; }

std::string Quoted(std::string_view name) { return "\"" + std::string(name) + "\""; }

}  // namespace quillmate::cli
