#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include <quillmate/language/records.h>

/// The words of the understanding: what a name can stand for, what the code does with it, how sure that is. Every
/// enumeration has its word for data (English, as in JSON) and, where users read it, its German one.
namespace quillmate::symbols {

using language::Index;
using language::kNone;
using language::Visibility;

/// What the user declares. A designer other than a form (.ctl, .pag, .dob, .dsr) is a class.
enum class SymbolKind : std::uint8_t {
  kModule,
  kClass,
  kForm,
  kDocument,
  kSub,
  kFunction,
  kPropertyGet,
  kPropertyLet,
  kPropertySet,
  kDeclare,
  kEvent,
  kVariable,
  kConstant,
  kParameter,
  kType,
  kTypeMember,
  kEnum,
  kEnumMember,
  kLabel,
  kControl,
};
inline constexpr std::size_t kSymbolKindCount = 20;

constexpr bool IsModule(SymbolKind kind) noexcept { return kind <= SymbolKind::kDocument; }
/// Sub, Function, Property: what has a body.
constexpr bool IsRoutine(SymbolKind kind) noexcept {
  return kind >= SymbolKind::kSub && kind <= SymbolKind::kPropertySet;
}
constexpr bool IsProperty(SymbolKind kind) noexcept {
  return kind >= SymbolKind::kPropertyGet && kind <= SymbolKind::kPropertySet;
}
/// What can be called: routines and Declares.
constexpr bool IsCallable(SymbolKind kind) noexcept { return kind >= SymbolKind::kSub && kind <= SymbolKind::kDeclare; }

/// What the code does with a name.
enum class Use : std::uint8_t {
  kCall,           ///< of a routine, Declare or property (Let and Set too), with or without value
  kRead,           ///< of a value; left part of a chain
  kWrite,          ///< target of an assignment, loop variable, result, ReDim, Erase ...
  kType,           ///< As, New, TypeOf; a module, class or enum before "."
  kAddress,        ///< AddressOf
  kImplements,     ///< Implements, and a routine that implements an interface's member, at its header
  kRaise,          ///< RaiseEvent
  kWithEvents,     ///< a handler of an event, at its header
  kLabel,          ///< GoTo, GoSub, Resume ...
  kNamedArgument,  ///< the name before ":="
};
inline constexpr std::size_t kUseCount = 10;

/// How sure it is that a name means a symbol.
enum class Certainty : std::uint8_t {
  kSure,
  kAmbiguous,  ///< one of several with that name
  kByName,     ///< member of an object whose type the code does not tell
  kString,     ///< the name is in a string that a host may run
  kHost,       ///< told by something outside the code: a button, a ribbon, a property of a form
  kInactive,   ///< conditional compilation leaves the use, or all that it can mean, out
};
inline constexpr std::size_t kCertaintyCount = 6;

/// Why something counts as unused, the strongest reason for life first; certain: none was found.
enum class Grade : std::uint8_t {
  kCertain,
  kHost,      ///< the host or something outside the code calls it; the reason says what
  kText,      ///< its name is in a string
  kPossible,  ///< by name, ambiguous, or visible to callers that are not read
  kSelf,      ///< used by itself only
  kInactive,  ///< used in inactive code only, or inactive itself
  kWritten,   ///< a variable or parameter that is written and never read
};

/// Where code runs.
enum class Host : std::uint8_t { kUnknown, kExcel, kWord, kAccess, kPowerPoint, kVb6 };

/// "sub", "property-get", "enum-member" ...
std::string_view Word(SymbolKind kind) noexcept;
/// "call", "named-argument" ...
std::string_view Word(Use use) noexcept;
/// "sure", "by-name" ...
std::string_view Word(Certainty certainty) noexcept;
/// "certain", "host" ...
std::string_view Word(Grade grade) noexcept;
/// "public", "private", "friend", "global", "local"
std::string_view Word(Visibility visibility) noexcept;

/// "sicher", "host", "text", "möglich", "selbst", "inaktiv", "geschrieben"; UTF-8.
std::string_view GermanWord(Grade grade) noexcept;
/// "Sub", "Function", "Konstante", "Aufzählung" ...; UTF-8.
std::string_view GermanWord(SymbolKind kind) noexcept;
/// "Aufruf", "liest", "schreibt", "Typ" ...; UTF-8.
std::string_view GermanWord(Use use) noexcept;
/// "sicher", "mehrdeutig", "dem Namen nach", "Text", "Host", "inaktiv"; UTF-8.
std::string_view GermanWord(Certainty certainty) noexcept;

/// The grade with that English or German word, regardless of the case of ASCII letters.
std::optional<Grade> GradeFromWord(std::string_view word) noexcept;

}  // namespace quillmate::symbols
