#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <quillmate/inventory/reason.h>

namespace quillmate::inventory {

/// Puts the rows of several inventories, parts of one scan as a rule, into one, which is made where there is none. Any
/// order gives the same rows, and so does putting a part in again; but for the numbers of rows and runs they are those
/// of one scan of everything.
///
/// Of a file that several parts know the one counts whose run began last (of two at once the one with the greater id).
/// Of a content the one that could be read, else the one by the newer program.
///
/// Each part is one step: a failure leaves the ones before it in. `done` is called after each. Throws
/// files::Failure.
void Merge(const std::filesystem::path& database, const std::vector<std::filesystem::path>& parts,
           const std::function<void(const std::filesystem::path&)>& done = {});

}  // namespace quillmate::inventory
