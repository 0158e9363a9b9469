#include "error_text.h"

#include <filesystem>
#include <new>
#include <system_error>

#include <quillmate/files/paths.h>

namespace quillmate::ui {
namespace {

std::string Reason(const std::error_code& code) {
  const struct {
    std::errc condition;
    const char* text;
  } kReasons[] = {
      {std::errc::no_space_on_device, "Der Datenträger ist voll."},
      {std::errc::permission_denied, "Der Zugriff wird verweigert."},
      {std::errc::operation_not_permitted, "Der Zugriff wird verweigert."},
      {std::errc::read_only_file_system, "Der Datenträger ist schreibgeschützt."},
      {std::errc::no_such_file_or_directory, "Die Datei oder der Ordner existiert nicht."},
      {std::errc::filename_too_long, "Der Name ist zu lang."},
      {std::errc::not_a_directory, "Im Pfad steht eine Datei, wo ein Ordner sein müsste."},
      {std::errc::file_exists, "Unter diesem Namen gibt es schon eine Datei oder einen Ordner."},
      {std::errc::invalid_argument, "Der Name ist nicht erlaubt."},
      {std::errc::device_or_resource_busy, "Ein anderes Programm benutzt die Datei oder den Ordner."},
      {std::errc::io_error, "Der Datenträger meldet einen Fehler."},
  };
  for (const auto& reason : kReasons) {
    if (code == reason.condition) return reason.text;
  }
  return "Fehler " + std::to_string(code.value()) + " des Betriebssystems";
}

}  // namespace

std::string ErrorText(const std::exception& error) {
  if (const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
    return files::PathText(file->path1()) + "\r\n" + Reason(file->code());
  }
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "Der Arbeitsspeicher reicht nicht aus.";
  return error.what();
}

}  // namespace quillmate::ui
