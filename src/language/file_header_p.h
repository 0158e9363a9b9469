#pragma once

#include <cstddef>
#include <string_view>

#include "names_p.h"

/// What is in a module file before its code: VERSION and the block of properties and controls, or the form of an
/// Access text export. Attribute lines are read with the code.
namespace quillmate::language {

/// Reads the header at `from`, writes its lines, controls and facts to `module`, and gives the offset of what follows:
/// `from` itself when there is none.
std::size_t ReadFileHeader(std::string_view text, std::size_t from, NamePool& names, Module& module);

}  // namespace quillmate::language
