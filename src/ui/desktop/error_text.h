#pragma once

#include <exception>
#include <string>

namespace quillmate::ui {

/// What an error that nobody expected means to the user: German, UTF-8, CR LF.
std::string ErrorText(const std::exception& error);

}  // namespace quillmate::ui
