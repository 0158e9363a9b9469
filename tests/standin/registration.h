#pragma once

#include <string>

#include <ole2.h>

namespace quillmate::standin {

/// An object among the running ones, under the name of a program; taken off again in the end.
///
/// Where the program itself is installed, its class is used as it is. Otherwise the program's name is entered in the
/// registry until the next start of the system: for all users, or for this one where that is not allowed.
class Registration {
 public:
  /// `host` is a host's name, ASCII. Throws std::runtime_error.
  Registration(const std::string& host, IDispatch* application);
  ~Registration();
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

 private:
  IDispatch* application_;
  DWORD cookie_ = 0;
};

}  // namespace quillmate::standin
