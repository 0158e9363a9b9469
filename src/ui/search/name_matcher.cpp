#include "name_matcher.h"

#include <QString>
#include <algorithm>
#include <numeric>
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

NameMatcher::NameMatcher(std::shared_ptr<const project::Understanding> known) : known_(std::move(known)) {
  const symbols::ReferenceIndex& index = known_->Index();
  starts_.reserve(index.SymbolCount() + 1);
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    starts_.push_back(static_cast<std::uint32_t>(folded_.size()));
    folded_ += Fold(index.Name(symbol));
  }
  starts_.push_back(static_cast<std::uint32_t>(folded_.size()));
}

std::string_view NameMatcher::Folded(SymbolId symbol) const {
  return std::string_view(folded_).substr(starts_[symbol], starts_[symbol + 1] - starts_[symbol]);
}

bool NameMatcher::FitsModule(SymbolId symbol, std::string_view module) const {
  const symbols::Index of = known_->Index().SymbolAt(symbol).module;
  return module.empty() || Folded(known_->Index().Modules()[of].symbol).find(module) != std::string_view::npos;
}

std::vector<SymbolId> NameMatcher::Find(const std::string& typed, std::size_t most) {
  const std::string folded = Fold(typed);
  const std::size_t dot = folded.rfind('.');
  const std::string module = dot == std::string::npos ? std::string() : folded.substr(0, dot);
  const std::string name = dot == std::string::npos ? folded : folded.substr(dot + 1);
  const symbols::ReferenceIndex& index = known_->Index();
  const bool narrows = dot == std::string::npos && !last_.empty() && name.starts_with(last_);
  if (!narrows) {
    candidates_.resize(index.SymbolCount());
    std::iota(candidates_.begin(), candidates_.end(), SymbolId{0});
  }
  last_ = dot == std::string::npos ? name : std::string();

  std::vector<std::pair<int, SymbolId>> fits;
  std::vector<SymbolId> left;
  for (const SymbolId symbol : candidates_) {
    const int fit = name.empty() && !module.empty() ? 1 : FitOf(index.Name(symbol), Folded(symbol), name);
    if (fit == 0) continue;
    left.push_back(symbol);
    if (FitsModule(symbol, module)) fits.emplace_back(fit - (IsLocal(index.SymbolAt(symbol)) ? kLocal : 0), symbol);
  }
  candidates_ = std::move(left);
  const auto better = [](const auto& a, const auto& b) {
    return a.first != b.first ? a.first > b.first : a.second < b.second;
  };
  const auto end = fits.begin() + static_cast<std::ptrdiff_t>(std::min(most, fits.size()));
  std::partial_sort(fits.begin(), end, fits.end(), better);
  std::vector<SymbolId> found;
  for (auto fit = fits.begin(); fit != end; ++fit) found.push_back(fit->second);
  return found;
}

}  // namespace quillmate::ui
