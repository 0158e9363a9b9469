#pragma once

#include <cstdint>

#include <quillmate/symbols/kinds.h>

namespace quillmate::symbols {

enum class TypeKind : std::uint8_t {
  kLate,          ///< Variant, or nothing tells: members can't be bound
  kObject,        ///< Object and its like: no array, members can't be bound
  kScalar,        ///< no members
  kClass,         ///< a class-like module of the sources
  kRecord,        ///< a Type
  kEnum,          ///< an enum before "."; a value of its type is a number
  kLibrary,       ///< a class of a library; `index` is 1 for collections of anything
  kModuleScope,   ///< a standard module before "."
  kProjectScope,  ///< a project before "."
  kLibraryScope,  ///< a library before "."
};

/// What can follow an expression.
struct TypeRef {
  Index module = kNone;  ///< kClass, kModuleScope, kRecord, kEnum; kProjectScope: the project
  Index local = kNone;   ///< kRecord, kEnum: its declaration; kLibrary: see there
  TypeKind kind = TypeKind::kLate;
  bool array = false;

  static TypeRef Of(TypeKind kind) noexcept { return {kNone, kNone, kind, false}; }
  static TypeRef Class(Index module) noexcept { return {module, kNone, TypeKind::kClass, false}; }
  static TypeRef Library(bool ofAnything = false) noexcept {
    return {kNone, ofAnything ? 1U : 0U, TypeKind::kLibrary, false};
  }
};

}  // namespace quillmate::symbols
