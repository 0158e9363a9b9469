#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Random projects together with their truth: whoever writes a use knows what it means.
namespace quillmate::symbols::testing {

enum class EntityKind : std::uint8_t {
  kModule,
  kVariable,
  kConstant,
  kSub,
  kFunction,
  kGet,
  kLet,
  kParameter,
  kLocal,
  kType,
  kTypeMember,
  kEnum,
  kEnumMember,
  kEvent,
  kLabel,
  kControl,
};

struct Entity {
  EntityKind kind;
  std::string name;
  int module;
  int routine = -1;  ///< parameters, locals, labels: the routine that they belong to
  int parent = -1;   ///< members: their type or enum
  bool isPrivate = false;
  int type = -1;  ///< a class module or a type; -1 for a number
  std::uint32_t line = 0, column = 0;
};

struct WrittenUse {
  int entity;
  int module;
  std::uint32_t line, column;
  Use use;
  Certainty certainty;
};

struct GeneratedProject {
  Sources sources;
  std::vector<Entity> entities;
  std::vector<WrittenUse> uses;
};

/// The same project for the same seed.
GeneratedProject GenerateProject(std::uint32_t seed);

}  // namespace quillmate::symbols::testing
