#include "error_text.h"

#include <filesystem>
#include <new>

#include <quillmate/files/file_error.h>

namespace quillmate::ui {

std::string ErrorText(const std::exception& error) {
  const bool isOurs = dynamic_cast<const files::FileError*>(&error) != nullptr;
  const bool isSystems = dynamic_cast<const std::filesystem::filesystem_error*>(&error) != nullptr;
  const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
  const std::string text = files::FailureText(error, "\r\n");
  return isOurs || isSystems || isMemory ? text + "." : text;
}

}  // namespace quillmate::ui
