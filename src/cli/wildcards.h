#pragma once

#include <string>
#include <vector>

namespace quillmate::cli {

/// The inputs with each wildcard replaced by what it stands for. Only Windows leaves this to the programs; elsewhere
/// the inputs stay as they are.
///
/// "*" stands for any characters and "?" for one, in the last part of a path, capitals or not; "*.*" is everything,
/// with or without a point. Hidden files and folders don't count (Office hides the file that marks an open document).
/// Names come sorted, without regard to case. Throws CommandFailure when nothing fits.
std::vector<std::string> ExpandWildcards(const std::vector<std::string>& inputs);

}  // namespace quillmate::cli
