#pragma once

#include <string>

/// Code values of the index and the image keys made of them.
namespace quillmate::codedb {

/// `mod_typ`. Unknown kinds are stored as 32 so that they sort behind all others.
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

/// `rou_open`.
enum Visibility : int { kPublic = 1, kPrivate = 2, kFriend = 3 };

/// "M" + number: image key of a module kind, key of a module's tree node and stem of its text file.
std::string ModuleKey(int number);
/// "R" + number: key of a routine's tree node.
std::string RoutineKey(int number);
/// "R" + `rou_typ` + "O" + `rou_open`.
std::string RoutineImageKey(int kind, int visibility);
/// The number after the first character of a module or routine key; 0 when there is none.
int KeyNumber(const std::string& key);

}  // namespace quillmate::codedb
