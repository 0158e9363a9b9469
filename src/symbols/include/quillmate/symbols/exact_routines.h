#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <quillmate/language/module.h>
#include <quillmate/symbols/kinds.h>

/// The routines of a module as the code has them, with the codes under which the index keeps kinds and visibilities.
namespace quillmate::symbols {

/// A routine or Declare. Lines are those of the module's text, 1-based.
struct ExactRoutine {
  Index declaration = kNone;  ///< into Module::declarations
  std::uint32_t first = 0;
  std::uint32_t headerLast = 0;
  std::uint32_t last = 0;
};

/// By place.
std::vector<ExactRoutine> ExactRoutines(const language::Module& module);

/// As written, UTF-8; "(ohne Namen)" where the code has none.
std::string ExactName(const language::Module& module, const ExactRoutine& routine);

/// `mod_typ`, `rou_typ` and `rou_open` of the index. What is no routine counts as a Sub.
int IndexKind(language::ModuleKind kind);
int IndexKind(language::DeclarationKind kind);
int IndexVisibility(Visibility visibility);

}  // namespace quillmate::symbols
