#pragma once

#include <cstdint>
#include <vector>

#include "module_view_p.h"

/// Routines that are the same, or nearly, whatever their locals are called and however they are laid out.
namespace quillmate::checks {

/// A routine's body, brought to a form in which copies are equal: no layout, no comments, no case; parameters, locals
/// and labels by the order in which they appear, the routine's own name as one word.
struct BodyPrint {
  Index module, routine;
  std::uint32_t tokens;
  std::uint32_t statements;
  std::uint64_t hash, check;            ///< of the whole body
  std::vector<std::uint64_t> features;  ///< of its statements, locals without a number; sorted, several may be equal
};

/// Prints the bodies of a module that are big enough to count.
void PrintBodies(const ModuleView& view, std::vector<BodyPrint>& prints);

/// Finds what is the same and what is alike; one finding for each routine at most.
void CompareBodies(const ReferenceIndex& index, std::vector<BodyPrint>& prints, const Selection& selection,
                   std::vector<Finding>& findings);

}  // namespace quillmate::checks
