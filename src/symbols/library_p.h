#pragma once

#include <cstdint>
#include <string_view>

#include <quillmate/symbols/kinds.h>

#include "hash_table_p.h"
#include "types_p.h"

/// What the hosts' libraries bring along, as far as it changes what a name of the sources means: which names are taken,
/// and which of their objects may be objects of the sources.
namespace quillmate::symbols::library {

/// Bits: where a name is known.
inline constexpr std::uint8_t kExcel = 1, kWord = 2, kAccess = 4, kPowerPoint = 8, kVb6 = 16, kOffice = 15, kAll = 31;
std::uint8_t HostBit(Host host) noexcept;  ///< kAll when the host is not known

/// What a function, a property or a class of a library gives.
enum class Result : std::uint8_t {
  kPlain,     ///< an object or a value that only libraries make
  kElements,  ///< a collection, or something whose items may be anything
  kLate,      ///< may be an object of the sources
};
TypeRef TypeOf(Result result) noexcept;

/// A name that code uses without anything before it. `hosts` is 0 when no library has it.
struct Global {
  std::uint8_t hosts = 0;
  Result result = Result::kPlain;
};
Global FindGlobal(NameHash name) noexcept;

/// A constant by the look of its name: "vbCrLf", "xlUp". As written in the code.
bool LooksLikeConstant(std::string_view spelling) noexcept;

/// A class after As.
struct Class {
  bool known = false;
  Result result = Result::kPlain;
};
Class FindClass(NameHash name) noexcept;

/// "VBA", "Excel": a library before ".".
bool IsScope(NameHash name) noexcept;

/// What a member of an object of a library gives; kPlain when it is not known to be more.
Result MemberResult(NameHash member) noexcept;

/// Classes that modules are built on.
namespace base {
inline constexpr std::uint16_t kUserForm = 1, kVbForm = 2, kVbControl = 4, kAccessForm = 8, kExcelDocument = 16,
                               kWordDocument = 32;
}
/// Which of them have a member of that name.
std::uint16_t BasesWith(NameHash member) noexcept;

/// What a macro's name is handed to as a string: `position` is the place among the arguments, 0 for a property that is
/// assigned to.
enum class StringTarget : std::uint8_t {
  kNone,
  kMacro,       ///< "Modul.Routine"
  kMember,      ///< of any object: CallByName
  kExpression,  ///< "Routine(1)": Eval, Evaluate
  kForm,        ///< OpenForm, Forms("..")
  kControl,     ///< Controls("..")
};
StringTarget FindStringTarget(NameHash callee, unsigned position, bool assigned) noexcept;

/// Names that a host runs by itself in a standard module: Main, Auto_Open, AutoExec ... 0 when it is none.
std::uint8_t EntryPointHosts(NameHash name) noexcept;

/// Whether a name ends handlers' names: Click, Load ...
bool IsEventName(NameHash name) noexcept;

/// Whether a routine whose first parameter is of that type is likely a call-back that only a document names.
bool IsCallbackType(NameHash type) noexcept;

/// Whether the comment above a routine marks it as one that a runner of tests calls.
bool MarksTest(std::string_view comment) noexcept;

/// Objects whose events a class-like module on such bases handles without declaring them: "Form", "Workbook" ...
bool IsHostObject(NameHash prefix, std::uint16_t bases) noexcept;

}  // namespace quillmate::symbols::library
