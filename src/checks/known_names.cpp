#include <unordered_map>

#include <quillmate/language/parse.h>

#include "known_names_p.h"

namespace quillmate::checks {

Known FindKnown(std::uint64_t nameHash) noexcept {
  static const auto kNames = [] {
    std::unordered_map<std::uint64_t, Known> names;
#define QUILLMATE_KNOWN_NAME(spelling) \
  names.emplace(language::HashName(language::FoldName(#spelling)), Known::k##spelling);
    QUILLMATE_KNOWN_NAMES(QUILLMATE_KNOWN_NAME)
#undef QUILLMATE_KNOWN_NAME
    return names;
  }();
  const auto found = kNames.find(nameHash);
  return found == kNames.end() ? Known::kNone_ : found->second;
}

}  // namespace quillmate::checks
