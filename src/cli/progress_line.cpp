#include "progress_line.h"

#include <cstdio>
#include <string>

#include <quillmate/files/work_folder.h>

#include "messages.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

constexpr std::chrono::milliseconds kInterval{100};

bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

/// The longest beginning of a UTF-8 text with at most so many characters, and how many it has.
std::string_view Shorten(std::string_view text, std::size_t limit, std::size_t& characters) {
  characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (StartsCharacter(text[i]) && characters++ == limit) {
      --characters;
      return text.substr(0, i);
    }
  }
  return text;
}

void WriteToTerminal(const std::string& text) {
  const files::EndGuard guard;
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

ProgressLine::ProgressLine() : terminal_(IsTerminal(stderr)) {}

ProgressLine::~ProgressLine() { Clear(); }

void ProgressLine::Show(std::string_view text) {
  if (!terminal_ || Clock::now() < next_) {
    return;
  }
  next_ = Clock::now() + kInterval;
  const std::string line = MessageLine(text);
  std::size_t characters = 0;
  std::string shown("\r");
  shown += Shorten(line, TerminalColumns() - 1, characters);
  if (characters < shown_) {
    shown.append(shown_ - characters, ' ');
  }
  WriteToTerminal(shown);
  shown_ = characters;
}

void ProgressLine::Clear() noexcept try {
  if (shown_ > 0) {
    WriteToTerminal("\r" + std::string(shown_, ' ') + "\r");
    shown_ = 0;
  }
} catch (...) {
  shown_ = 0;
}

}  // namespace quillmate::cli
