#include <string>

#include <quillmate/symbols/loose_ends.h>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using symbols::LooseEnd;

CheckId CheckOf(LooseEnd::Kind kind) {
  switch (kind) {
    case LooseEnd::Kind::kHandlerWithoutControl:
      return CheckId::kLostHandler;
    case LooseEnd::Kind::kCallbackWithoutRibbon:
      return CheckId::kLostCallback;
    default:
      return CheckId::kLostBinding;
  }
}

std::string TextOf(const ReferenceIndex& index, const LooseEnd& end) {
  switch (end.kind) {
    case LooseEnd::Kind::kHandlerWithoutControl:
      return InQuotes(index.Name(end.routine)) + " wartet auf das Steuerelement " + InQuotes(end.name) +
             ", das es nicht mehr gibt.";
    case LooseEnd::Kind::kCallbackWithoutRibbon:
      return InQuotes(index.Name(end.routine)) + " ist ein Rückruf des Menübands, den kein Menüband nennt.";
    default:
      return end.place + " ruft " + InQuotes(end.name) + " auf; eine solche Routine gibt es nicht.";
  }
}

/// The first module of a project: for what has no place in the code.
Index FirstModule(const ReferenceIndex& index, Index project) {
  Index module = 0;
  while (module < index.Modules().size() && index.Modules()[module].project != project) ++module;
  return module;
}

}  // namespace

void CheckLooseEnds(const ReferenceIndex& index, const Selection& selection, std::vector<Finding>& findings) {
  const bool wanted = selection.Has(CheckId::kLostHandler) || selection.Has(CheckId::kLostCallback) ||
                      selection.Has(CheckId::kLostBinding);
  if (!wanted) return;
  for (const LooseEnd& end : symbols::FindLooseEnds(index)) {
    if (!selection.Has(CheckOf(end.kind))) continue;
    Finding finding;
    finding.check = CheckOf(end.kind);
    finding.text = TextOf(index, end);
    finding.advice = InfoOf(finding.check).advice;
    finding.subject = end.name;
    if (end.routine != kNone) {
      const Symbol& symbol = index.SymbolAt(end.routine);
      finding.module = symbol.module;
      finding.routine = symbol.routine;
      finding.line = symbol.line;
      finding.column = symbol.column;
      finding.subject = index.Name(end.routine);
    } else {
      finding.module = FirstModule(index, end.project);
      if (finding.module == index.Modules().size()) continue;
      finding.subject = end.place + " " + end.name;
    }
    findings.push_back(std::move(finding));
  }
}

}  // namespace quillmate::checks
