#include "messages.h"

#include <cstdio>
#include <system_error>

#include "interruption.h"

namespace quillmate::cli {

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

void Complain(std::string_view text) noexcept try {
  const std::string line = std::string(kProgramName) + ": " + OneLine(text) + "\n";
  const RunLock lock;
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
} catch (...) {
  std::fputs("quillmate-cli: Zu wenig Speicher\n", stderr);
}

std::string Quoted(std::string_view name) { return "\"" + std::string(name) + "\""; }

std::string SystemReason(int code) { return std::generic_category().message(code); }

}  // namespace quillmate::cli
