#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <quillmate/office/document_facts.h>

#include "project_names_p.h"

namespace quillmate::office {

/// Takes what the readers of the formats find and keeps it within the bounds.
class FactsCollector {
 public:
  FactsCollector(DocumentFacts& facts, const ProjectNames& names) noexcept : facts_(facts), names_(names) {}

  const ProjectNames& Names() const noexcept { return names_; }
  DocumentFacts& Facts() noexcept { return facts_; }

  /// One of its own, with its place; `module` as in Binding.
  void Add(Binding::Kind kind, std::string target, std::string place, std::string module = {});
  /// Counted together with those of the same target, of which the first keeps its place.
  void Count(Binding::Kind kind, std::string_view target, const std::string& place);
  /// Each function of the project that a formula calls; `place` is a call that gives the words.
  template <typename Place>
  void TakeFormula(std::string_view formula, Binding::Kind kind, Place place) {
    if (!names_.HasCellFunctions() || formula.find('(') == std::string_view::npos) return;
    for (const std::string& function : CellFunctionsIn(formula, names_)) Count(kind, function, place());
  }
  /// A control of a sheet or document, unless the module has one of that name.
  void AddControl(Control control);
  /// Once, however often it is said.
  void Notice(const std::string& notice);
  /// The same of what was left out because there is too much of it.
  void Bound(const std::string& notice) {
    Notice(notice);
    facts_.cutShort = notice;
  }

 private:
  DocumentFacts& facts_;
  const ProjectNames& names_;
  std::map<std::pair<Binding::Kind, std::string>, std::size_t> counted_;
  std::set<std::string> controls_;
  std::set<std::string> noticed_;
};

/// What hidden lines of the code say: controls of sheets and documents, shortcut keys.
void TakeCodeFacts(const VbaProject& project, FactsCollector& collector);

// Words for places. All texts UTF-8.

/// "Schaltfläche 'Start' auf Blatt Kunden"; without a name the kind alone.
std::string PlaceOnSheet(std::string_view kind, std::string_view name, std::string_view sheet);
/// One line without more than one blank in a row, cut at a length that people read.
std::string OneLineText(std::string_view text);
/// "B3" from 0-based numbers.
std::string CellName(std::uint32_t row, std::uint32_t column);
/// "Strg+N", or "Strg+Umschalt+P" for an upper-case letter.
std::string ShortcutName(std::string_view key);

}  // namespace quillmate::office
