#include "name_matcher.h"

#include <QString>
#include <algorithm>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace quillmate::ui {
namespace {

using symbols::SymbolId;

constexpr int kWhole = 2000;
constexpr int kStart = 1600;
constexpr int kInitials = 1200;
constexpr int kPart = 900;
constexpr int kLetters = 500;
/// Among equals the shorter name is meant.
constexpr std::size_t kLongName = 100;
/// What only one routine sees is after the rest.
constexpr int kLocal = 150;

std::string Fold(std::string_view name) {
  std::string folded(name);
  bool ascii = true;
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    ascii = ascii && (c & 0x80) == 0;
  }
  return ascii ? folded : QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toLower().toStdString();
}

/// A bit for each letter; letters may share theirs.
std::uint64_t LettersOf(std::string_view folded) {
  std::uint64_t letters = 0;
  for (const char c : folded) letters |= std::uint64_t{1} << (static_cast<unsigned char>(c) & 63U);
  return letters;
}

bool HasInOrder(std::string_view text, std::string_view letters) {
  std::size_t at = 0;
  for (const char c : text) {
    if (at < letters.size() && c == letters[at]) ++at;
  }
  return at == letters.size();
}

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }

/// A word of a name begins with a capital after a small letter, or after "_".
bool BeginsWord(std::string_view name, std::size_t at) {
  if (at == 0) return true;
  if (at >= name.size()) return false;
  return name[at - 1] == '_' || (IsUpper(name[at]) && !IsUpper(name[at - 1]));
}

/// Each letter goes on with a word or begins a later one.
bool FitsInitials(std::string_view name, std::string_view folded, std::string_view typed) {
  if (name.size() != folded.size()) return false;
  std::size_t at = 0;
  for (const char c : typed) {
    if (at >= folded.size()) return false;
    if (folded[at] != c) {
      while (at < folded.size() && !(BeginsWord(name, at) && folded[at] == c)) ++at;
      if (at == folded.size()) return false;
    }
    ++at;
  }
  return true;
}

bool IsLocal(const symbols::Symbol& symbol) {
  return symbol.kind == symbols::SymbolKind::kParameter || symbol.kind == symbols::SymbolKind::kLabel ||
         (symbol.parent != symbols::kNone && symbol.kind == symbols::SymbolKind::kVariable);
}

}  // namespace

int FitOf(std::string_view name, std::string_view folded, std::string_view typed) noexcept {
  if (typed.empty() || !HasInOrder(folded, typed)) return 0;
  const int length = static_cast<int>(std::min(folded.size(), kLongName));
  const std::size_t at = folded.find(typed);
  if (at == 0) return (folded.size() == typed.size() ? kWhole : kStart) - length;
  if (FitsInitials(name, folded, typed)) return kInitials - length;
  if (at != std::string_view::npos) return kPart - length + (BeginsWord(name, at) ? static_cast<int>(kLongName) : 0);
  return kLetters - length;
}

/// A declaration and how well it fits.
struct NameMatcher::Fit {
  int fit;
  SymbolId symbol;
  /// The better one first; of equals the one that is declared first.
  bool operator<(const Fit& other) const noexcept { return fit != other.fit ? fit > other.fit : symbol < other.symbol; }
};

NameMatcher::NameMatcher(std::shared_ptr<const project::Understanding> known) : known_(std::move(known)) {
  const symbols::ReferenceIndex& index = known_->Index();
  std::unordered_map<std::string_view, std::uint32_t> numbers;
  std::vector<std::uint32_t> groups;
  groups.reserve(index.SymbolCount());
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    const auto [found, isNew] = numbers.try_emplace(index.Name(symbol), static_cast<std::uint32_t>(names_.size()));
    if (isNew) names_.push_back(found->first);
    groups.push_back(2 * found->second + (IsLocal(index.SymbolAt(symbol)) ? 1U : 0U));
  }
  for (const std::string_view name : names_) {
    starts_.push_back(static_cast<std::uint32_t>(folded_.size()));
    const std::string folded = Fold(name);
    letters_.push_back(LettersOf(folded));
    folded_ += folded;
  }
  starts_.push_back(static_cast<std::uint32_t>(folded_.size()));
  first_.resize(2 * names_.size() + 1);
  for (const std::uint32_t group : groups) ++first_[group + 1];
  std::partial_sum(first_.begin(), first_.end(), first_.begin());
  symbols_.resize(groups.size());
  std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
  for (SymbolId symbol = 0; symbol < groups.size(); ++symbol) symbols_[next[groups[symbol]]++] = symbol;
}

std::string_view NameMatcher::Folded(std::size_t name) const {
  return std::string_view(folded_).substr(starts_[name], starts_[name + 1] - starts_[name]);
}

/// By module; empty when all fit.
std::vector<char> NameMatcher::FittingModules(std::string_view module) const {
  std::vector<char> fitting;
  if (module.empty()) return fitting;
  for (const symbols::ModuleInfo& info : known_->Index().Modules()) {
    fitting.push_back(Fold(info.name).find(module) != std::string::npos ? 1 : 0);
  }
  return fitting;
}

/// Adds what has the name to the heap of the best ones, whose front is the least of them.
void NameMatcher::Take(std::size_t name, int fit, const std::vector<char>& modules, std::size_t most,
                       std::vector<Fit>& best) const {
  for (const std::size_t group : {2 * name, 2 * name + 1}) {
    const int grade = fit - (group % 2 == 0 ? 0 : kLocal);
    for (std::uint32_t at = first_[group]; at < first_[group + 1]; ++at) {
      const Fit one{grade, symbols_[at]};
      // The others of the group come later.
      if (best.size() == most && !(one < best.front())) break;
      if (!modules.empty() && modules[known_->Index().SymbolAt(one.symbol).module] == 0) continue;
      if (best.size() == most) {
        std::pop_heap(best.begin(), best.end());
        best.pop_back();
      }
      best.push_back(one);
      std::push_heap(best.begin(), best.end());
    }
  }
}

std::vector<SymbolId> NameMatcher::Find(const std::string& typed, std::size_t most) {
  const std::string folded = Fold(typed);
  const std::size_t dot = folded.rfind('.');
  const std::string module = dot == std::string::npos ? std::string() : folded.substr(0, dot);
  const std::string name = dot == std::string::npos ? folded : folded.substr(dot + 1);
  const bool narrows = dot == std::string::npos && !last_.empty() && name.starts_with(last_);
  if (!narrows) {
    candidates_.resize(names_.size());
    std::iota(candidates_.begin(), candidates_.end(), 0U);
  }
  last_ = dot == std::string::npos ? name : std::string();

  const std::uint64_t letters = LettersOf(name);
  const std::vector<char> modules = FittingModules(module);
  std::vector<Fit> best;
  std::vector<std::uint32_t> left;
  for (const std::uint32_t candidate : candidates_) {
    if ((letters_[candidate] & letters) != letters) continue;
    const int fit = name.empty() && !module.empty() ? 1 : FitOf(names_[candidate], Folded(candidate), name);
    if (fit == 0) continue;
    left.push_back(candidate);
    Take(candidate, fit, modules, most, best);
  }
  candidates_ = std::move(left);
  std::sort_heap(best.begin(), best.end());
  std::vector<SymbolId> found;
  for (const Fit& fit : best) found.push_back(fit.symbol);
  return found;
}

}  // namespace quillmate::ui
