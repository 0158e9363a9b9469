#include <algorithm>
#include <vector>

#include <quillmate/office/macro_target.h>
#include <quillmate/text/operations.h>

#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

/// The place of the last "!" outside of quotes.
std::size_t LastBang(std::string_view text) noexcept {
  std::size_t found = std::string_view::npos;
  bool quoted = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\'') quoted = !quoted;
    if (text[at] == '!' && !quoted) found = at;
  }
  return found;
}

std::string Unquoted(std::string_view text) {
  if (text.size() < 2 || text.front() != '\'' || text.back() != '\'') return std::string(text);
  return text::ReplaceAll(text.substr(1, text.size() - 2), "''", "'");
}

/// The file's name without its folder.
std::string_view WithoutFolder(std::string_view path) noexcept {
  return text::TextAfterLast(text::TextAfterLast(path, "/"), "\\");
}

bool IsNumber(std::string_view text) noexcept {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// "[0]" and the own name mean this document, "[1]" the first that it refers to.
void TakeBook(std::string_view text, std::string_view fileName, MacroTarget& target) {
  const std::string book = Unquoted(text);
  const bool indexed = book.size() > 2 && book.front() == '[' && book.back() == ']' &&
                       IsNumber(std::string_view(book).substr(1, book.size() - 2));
  if (indexed && std::string_view(book).find_first_not_of("0", 1) == book.size() - 1) return;
  target.book = book;
  target.foreign = indexed || UpperCaseName(WithoutFolder(book)) != UpperCaseName(fileName);
}

std::string_view WithoutArguments(std::string_view text) noexcept { return text.substr(0, text.find_first_of(" (")); }

}  // namespace

std::optional<MacroTarget> ParseMacroTarget(std::string_view text, std::string_view fileName) {
  text = text::Trim(text);
  if (text.starts_with('=')) text = text::Trim(text.substr(1));
  MacroTarget target;
  std::size_t bang = LastBang(text);
  std::string inner;
  if (bang == std::string_view::npos && text.size() >= 2 && text.front() == '\'' && text.back() == '\'') {
    // Quotes around everything, which is how a macro with arguments is written.
    inner = Unquoted(text);
    text = text::Trim(inner);
    bang = LastBang(text);
  }
  if (bang != std::string_view::npos) {
    TakeBook(text.substr(0, bang), fileName, target);
    text.remove_prefix(bang + 1);
  }
  const std::string macro = Unquoted(text::Trim(text));
  const std::vector<std::string_view> parts = text::Split(WithoutArguments(text::Trim(macro)), ".");
  if (parts.size() > 3 || std::any_of(parts.begin(), parts.end(), [](std::string_view part) { return part.empty(); })) {
    return std::nullopt;
  }
  target.routine = parts.back();
  if (parts.size() > 1) target.module = parts[parts.size() - 2];
  if (parts.size() > 2) target.project = parts.front();
  return target;
}

MacroResolver::MacroResolver(std::span<const MacroCandidate> candidates) {
  using Home = MacroCandidate::Home;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const MacroCandidate& candidate = candidates[i];
    if (candidate.isProperty || candidate.home == Home::kOther) continue;
    const int rank = candidate.home == Home::kDocument ? 2 : candidate.isPrivate ? 1 : 0;
    byRoutine_[UpperCaseName(candidate.routine)].push_back({UpperCaseName(candidate.module), rank, i});
  }
}

std::optional<std::size_t> MacroResolver::Find(const MacroTarget& target) const {
  const auto entries = byRoutine_.find(UpperCaseName(target.routine));
  if (target.foreign || entries == byRoutine_.end()) return std::nullopt;
  const std::string module = UpperCaseName(target.module);
  const Entry* best = nullptr;
  bool alone = true;
  for (const Entry& entry : entries->second) {
    if (!module.empty() && entry.module != module) continue;
    // Within a module there is no rank.
    const int order = best == nullptr ? -1 : module.empty() ? entry.rank - best->rank : 0;
    if (order < 0) best = &entry;
    alone = order < 0 || (alone && order > 0);
  }
  return best != nullptr && alone ? std::optional(best->index) : std::nullopt;
}

}  // namespace quillmate::office
