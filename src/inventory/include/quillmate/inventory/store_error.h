#pragma once

#include <stdexcept>

namespace quillmate::inventory {

/// The database can't be opened, read or written: what() is one German line, UTF-8, that begins with its path. What was
/// written in the step at hand is taken back; the database is whole.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace quillmate::inventory
