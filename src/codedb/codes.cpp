#include <charconv>

#include <quillmate/codedb/codes.h>

namespace quillmate::codedb {

std::string ModuleKey(int number) { return "M" + std::to_string(number); }

std::string RoutineKey(int number) { return "R" + std::to_string(number); }

std::string RoutineImageKey(int kind, int visibility) {
  return "R" + std::to_string(kind) + "O" + std::to_string(visibility);
}

int KeyNumber(const std::string& key) {
  int number = 0;
  if (key.size() > 1) std::from_chars(key.data() + 1, key.data() + key.size(), number);
  return number;
}

}  // namespace quillmate::codedb
