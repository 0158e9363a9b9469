#include <algorithm>
#include <cstring>
#include <limits>
#include <tuple>

#include "unused_order_p.h"

namespace quillmate::analysis {
namespace {

constexpr int kNever = std::numeric_limits<int>::max();

/// What is in the markers "|\237v|" and "|w\237|" with nothing beside it that belongs to a name. The last one does
/// so only when the letter beside it, one of the first two, has itself been put between markers.
constexpr std::array<std::string_view, 5> kNamesInMarkers{"v", "w", "\237v", "w\237", "\237"};

}  // namespace

SearchOrder::SearchOrder(const CandidateNames& names, std::vector<Turn>& publics)
    : names_(names), publics_(publics), byName_(names.Count()) {
  for (std::size_t i = 0; i < publics.size(); ++i) {
    byName_[static_cast<std::size_t>(publics[i].name)].publicTurn = static_cast<int>(i);
    if (IsInMarkers(publics[i])) inMarkers_.push_back(static_cast<int>(i));
  }
}

void SearchOrder::Take(std::string_view code, const std::vector<Occurrence>& occurrences, std::vector<Turn>& privates) {
  SetPrivates(privates);
  CollectAttempts(occurrences);
  TryAll(code);
  for (const Turn& turn : privates) byName_[static_cast<std::size_t>(turn.name)].privateTurns.clear();
}

void SearchOrder::SetPrivates(std::vector<Turn>& privates) {
  privates_ = &privates;
  for (std::size_t i = 0; i < privates.size(); ++i) {
    byName_[static_cast<std::size_t>(privates[i].name)].privateTurns.push_back(static_cast<int>(publics_.size() + i));
  }
}

void SearchOrder::CollectAttempts(const std::vector<Occurrence>& occurrences) {
  attempts_.clear();
  for (const Occurrence& found : occurrences) {
    const TurnsOfName& turns = byName_[static_cast<std::size_t>(found.name)];
    if (turns.publicTurn >= 0) attempts_.push_back({turns.publicTurn, found.start, found.end});
    for (const int turn : turns.privateTurns) attempts_.push_back({turn, found.start, found.end});
  }
  // In its turn a name is looked for from the end of the text on.
  std::ranges::sort(attempts_, [](const Attempt& a, const Attempt& b) {
    return std::tie(a.turn, b.start) < std::tie(b.turn, a.start);
  });
}

void SearchOrder::TryAll(std::string_view code) {
  int firstReferenced = kNever;
  cuts_.assign(code.size() + 1, 0);
  for (const Attempt& attempt : attempts_) {
    if (!StandsApart(code, attempt)) continue;
    At(attempt.turn).referenced = true;
    firstReferenced = std::min(firstReferenced, attempt.turn);
    cuts_[attempt.start] = cuts_[attempt.end] = 1;
  }
  MeetMarkers(firstReferenced);
}

bool SearchOrder::StandsApart(std::string_view code, const Attempt& attempt) const {
  const std::size_t start = attempt.start;
  const std::size_t end = attempt.end;
  const bool before = start == 0 || cuts_[start] != 0 || MayStandBefore(code[start - 1]);
  const bool behind = end == code.size() || cuts_[end] != 0 || MayStandBehind(code[end]);
  return before && behind && std::memchr(cuts_.data() + start + 1, 1, end - start - 1) == nullptr;
}

Turn& SearchOrder::At(int turn) {
  const auto index = static_cast<std::size_t>(turn);
  return index < publics_.size() ? publics_[index] : (*privates_)[index - publics_.size()];
}

bool SearchOrder::IsInMarkers(const Turn& turn) const {
  return std::ranges::find(kNamesInMarkers, names_.Name(turn.name)) != kNamesInMarkers.end();
}

/// Marks the names that are met in the markers around the references of earlier turns.
void SearchOrder::MeetMarkers(int firstReferenced) {
  std::vector<int> turns = inMarkers_;
  for (std::size_t i = 0; i < privates_->size(); ++i) {
    if (IsInMarkers((*privates_)[i])) turns.push_back(static_cast<int>(publics_.size() + i));
  }
  int firstLetter = kNever;
  for (const int turn : turns) {
    const std::string& name = names_.Name(At(turn).name);
    const bool met = turn > (name == kNamesInMarkers.back() ? firstLetter : firstReferenced);
    At(turn).referenced |= met;
    if (met && name.size() == 1) firstLetter = std::min(firstLetter, turn);
  }
}

}  // namespace quillmate::analysis
