#include "error_text.h"

#include <quillmate/files/failure.h>

namespace quillmate::ui {

std::string ErrorText(const std::exception& error) {
  return files::IsOfSystem(error) ? files::FailureText(error, "\r\n") + "." : files::FailureText(error);
}

}  // namespace quillmate::ui
