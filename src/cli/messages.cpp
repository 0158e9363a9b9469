#include "messages.h"

#include <array>
#include <cstdio>

#include "interruption.h"
#include "terminal_text.h"

namespace quillmate::cli {
namespace {

struct Reason {
  std::errc code;
  std::string_view text;
};

constexpr std::array kReasons{
    Reason{std::errc::no_such_file_or_directory, "Datei oder Ordner existiert nicht"},
    Reason{std::errc::permission_denied, "Zugriff verweigert"},
    Reason{std::errc::operation_not_permitted, "Zugriff verweigert"},
    Reason{std::errc::read_only_file_system, "Der Datenträger ist schreibgeschützt"},
    Reason{std::errc::no_space_on_device, "Der Datenträger ist voll"},
    Reason{std::errc::file_too_large, "Die Datei wird zu groß"},
    Reason{std::errc::io_error, "Fehler des Datenträgers"},
    Reason{std::errc::is_a_directory, "Das ist ein Ordner"},
    Reason{std::errc::not_a_directory, "Der Weg führt durch eine Datei"},
    Reason{std::errc::directory_not_empty, "Der Ordner ist nicht leer"},
    Reason{std::errc::file_exists, "Der Name ist schon vergeben"},
    Reason{std::errc::filename_too_long, "Der Name ist zu lang"},
    Reason{std::errc::too_many_symbolic_link_levels, "Die Verknüpfungen laufen im Kreis"},
    Reason{std::errc::too_many_files_open, "Zu viele offene Dateien"},
    Reason{std::errc::device_or_resource_busy, "Wird gerade benutzt"},
    Reason{std::errc::bad_file_descriptor, "Geschlossen"},
};

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
  const std::string line = std::string(kProgramName) + ": " + MessageLine(text) + "\n";
  const RunLock lock;
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
} catch (...) {
  std::fputs("quillmate-cli: Zu wenig Speicher\n", stderr);
}

std::string Quoted(std::string_view name) { return "\"" + std::string(name) + "\""; }

std::string SystemReason(const std::error_code& error) {
  const std::error_condition condition = error.default_error_condition();
  for (const Reason& reason : kReasons) {
    if (condition == reason.code) {
      return std::string(reason.text);
    }
  }
  return "Fehler " + std::to_string(error.value()) + " des Betriebssystems";
}

std::string SystemReason(int code) { return SystemReason(std::error_code(code, std::generic_category())); }

}  // namespace quillmate::cli
