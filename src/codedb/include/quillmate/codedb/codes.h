#pragma once

#include <string>

#include <quillmate/codedb/numbers.h>

/// Code values of the index and the image keys made of them.
namespace quillmate::codedb {

/// `mod_typ`. Unknown kinds are stored as 32 so that they sort after all others.
enum ModuleKind : int { kForm = 1, kStandard = 2, kClass = 3, kDocument = 5, kOtherKind = 32 };

/// `rou_typ`; a Declare has 10 added.
enum RoutineKind : int {
  kSub = 1,
  kFunction = 2,
  kLet = 3,
  kGet = 4,
  kSet = 5,
  kDeclareSub = 11,
  kDeclareFunction = 12
};

constexpr bool IsDeclare(int kind) noexcept { return kind > 10; }

/// `rou_open`.
enum Visibility : int { kPublic = 1, kPrivate = 2, kFriend = 3 };

/// Key of a module's tree node and stem of its text file.
inline std::string ModuleKey(ModuleNumber number) { return "M" + std::to_string(number.value); }
/// Key of a routine's tree node.
inline std::string RoutineKey(RoutineNumber number) { return "R" + std::to_string(number.value); }
/// Image keys of tree nodes.
inline std::string ModuleImageKey(int kind) { return "M" + std::to_string(kind); }
inline std::string RoutineImageKey(int kind, int visibility) {
  return "R" + std::to_string(kind) + "O" + std::to_string(visibility);
}

}  // namespace quillmate::codedb
