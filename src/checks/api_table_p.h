#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/records.h>

/// The functions of Windows that macro code declares most, as they have to be declared for 32 and 64 bit alike.
namespace quillmate::checks {

struct ApiParameter {
  std::string_view name;
  language::BuiltinType type;
  bool byVal;
  bool pointer;  ///< LongPtr

  /// Whether Windows gets an address: of a text, of anything handed over by reference.
  bool IsAddress() const {
    return pointer || !byVal || type == language::BuiltinType::kString || type == language::BuiltinType::kAny;
  }
};

struct ApiFunction {
  std::string_view name;  ///< as code calls it: without "A" or "W"
  std::string_view head;  ///< "Function", "Sub"
  std::string_view lib;   ///< `Lib "user32" Alias "FindWindowA"`
  std::string_view rest;  ///< from "(" on
  std::vector<ApiParameter> parameters;
  language::BuiltinType result;
};

/// By its exported name, regardless of case, with or without "A" or "W" at its end, and its library, with or without
/// ".dll". nullptr for one that is not in the table.
const ApiFunction* FindApi(std::string_view exported, std::string_view library);

/// The whole declaration, under the name that the code gives it.
std::string DeclarationOf(const ApiFunction& api, std::string_view name);

/// What Windows hands to the routine behind AddressOf: 'P' a pointer or handle, 'L' a Long; the last one is the result,
/// '-' for none. Nothing when the function takes no such routine.
std::optional<std::string_view> CallbackOf(std::string_view api);

/// Whether a parameter or a member of a record is a pointer or a handle by its name: "hWnd", "lpfnHook".
bool SoundsLikePointer(std::string_view name);

}  // namespace quillmate::checks
