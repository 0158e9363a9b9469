#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Lists of what is known already, so that a run fails on new things only: a text file, UTF-8, a line for its kind and
/// then one key on each line, sorted. Keys hold what stays the same when lines move; things of one key count one by
/// one.
namespace quillmate::cli {

/// A key of its parts, separated by tabs; an empty part is "-".
std::string BaselineKey(std::initializer_list<std::string_view> parts);

/// The keys of a list. Throws CommandFailure when the file does not begin with `head`.
std::multiset<std::string> ReadBaseline(const std::string& path, std::string_view head);
void WriteBaseline(const std::string& path, std::string_view head, std::vector<std::string> keys);

/// Takes a key out of the list; false when the list does not hold it (any more).
bool TakeKnown(std::multiset<std::string>& known, const std::string& key);

}  // namespace quillmate::cli
