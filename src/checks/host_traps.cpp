#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::BuiltinType;
using language::Declaration;
using language::NameUse;
using language::Statement;
using language::StatementKind;
using symbols::Host;

/// What the selection or an active object is asked for.
bool IsSelectionName(Known name) { return name == Known::kSelection || name == Known::kActiveCell; }

}  // namespace

/// `X.Select` and right after it `Selection.Y`.
void CheckSelection(ModuleView& view) {
  if (!view.MayBe(Host::kExcel)) return;
  const language::Module& code = view.code;
  const Statement* before = nullptr;
  Index use = 0;
  for (const Statement& statement : code.statements) {
    while (use < code.uses.size() && code.uses[use].offset < statement.offset) ++use;
    const Index first = use;
    while (use < code.uses.size() && code.uses[use].offset < statement.offset + statement.length) ++use;
    if (statement.activity != language::Activity::kActive) continue;
    const bool uses =
        first < use && IsSelectionName(view.GlobalName(first)) && (code.uses[first].flags & use_flag::kQualifier) != 0;
    if (before != nullptr && uses && before->routine == statement.routine) {
      view.ReportStatement(CheckId::kSelection, *before,
                           "Erst auswählen, dann mit „" + std::string(code.Spelling(code.uses[first])) +
                               "“ weiterarbeiten: langsam, und es hängt davon ab, was gerade aktiv ist.");
    }
    before = nullptr;
    if (statement.kind != StatementKind::kCall || first == use) continue;
    Index last = first;
    for (Index at = first; at < use; ++at) {
      if (code.uses[at].role == Role::kCall) last = at;
    }
    const Known name = view.LibraryName(last);
    const bool selects = code.uses[last].role == Role::kCall && code.uses[last].access == Access::kMember &&
                         (name == Known::kSelect || name == Known::kActivate);
    // Only what ends in a range: sheets and windows have to be activated for much.
    bool range = false;
    for (Index at = first; at < last; ++at) {
      const Known known = view.KnownName(code.uses[at]);
      range = range || known == Known::kRange || known == Known::kCells || known == Known::kRows ||
              known == Known::kColumns || known == Known::kOffset || known == Known::kActiveCell ||
              known == Known::kSelection;
    }
    if (selects && range && name == Known::kSelect) before = &statement;
  }
}

namespace {

bool IsSheetName(Known name) {
  return name == Known::kRange || name == Known::kCells || name == Known::kRows || name == Known::kColumns;
}

/// Modules of sheets mean their own cells.
bool IsSheetModule(const ModuleView& view) {
  if (view.Info().kind != language::ModuleKind::kDocument) return false;
  // The workbook has no cells: there too the active sheet is meant.
  return view.code.facts.base.find("00020819") == std::string::npos;
}

/// Whether a chain begins with what belongs to the active sheet anyway.
bool IsOfActiveSheet(const ModuleView& view, Index use) {
  Index first = view.ChainFirst(use);
  // After a leading dot: what the With statement says.
  if (view.code.uses[first].access == Access::kWith && view.code.uses[first].previous != kNone) {
    first = view.ChainFirst(view.code.uses[first].previous);
  }
  if (view.code.uses[first].access != Access::kSimple) return false;
  switch (view.LibraryName(first)) {
    case Known::kActiveSheet:
    case Known::kActiveCell:
    case Known::kSelection:
    case Known::kApplication:
      return true;
    default:
      return IsSheetName(view.LibraryName(first));
  }
}

/// The list of arguments that a use is in, directly: what is called there, kNone if none.
Index CalledAround(const ModuleView& view, Index use) {
  const NameUse& name = view.code.uses[use];
  return (name.flags & use_flag::kBareArgument) != 0 ? name.owner : kNone;
}

/// "A1", "$B$2", and in an area "C" and "3" too.
bool IsCell(std::string_view part, bool area) {
  const auto skip = [&part](auto isOne) {
    if (part.starts_with('$')) part.remove_prefix(1);
    std::size_t count = 0;
    while (count < part.size() && isOne(part[count])) ++count;
    part.remove_prefix(count);
    return count;
  };
  const std::size_t letters = skip([](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
  const std::size_t digits = skip([](char c) { return c >= '0' && c <= '9'; });
  return part.empty() && letters <= 3 && digits <= 7 && (area ? letters + digits : std::min(letters, digits)) > 0;
}

/// Range("Daten!A1") and Range("Umsatz"): the text tells the sheet, the defined name its cells.
bool TellsItsPlace(const ModuleView& view, Index use) {
  const NameUse& name = view.code.uses[use];
  if (view.KnownName(name) != Known::kRange || name.argumentCount != 1) return false;
  const auto string = std::ranges::upper_bound(view.code.strings, name.offset, {}, &language::StringUse::offset);
  if (string == view.code.strings.end() || string->owner != use || !string->whole) return false;
  std::string_view text = view.code.text.substr(string->offset + 1, string->length - 2);
  if (text.find('!') != std::string_view::npos) return true;
  const bool area = text.find(':') != std::string_view::npos;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(",: "), text.size());
    if (IsCell(text.substr(0, end), area)) return false;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return true;
}

}  // namespace

/// Range and Cells without an object: those of whichever sheet is active.
void CheckActiveSheet(ModuleView& view) {
  if (!view.MayBe(Host::kExcel) || IsSheetModule(view)) return;
  const language::Module& code = view.code;
  std::uint32_t toldLine = 0;
  for (Index use = 0; use < code.uses.size(); ++use) {
    const NameUse& name = code.uses[use];
    if (name.access != Access::kSimple || !view.IsActive(name) || !IsSheetName(view.LibraryName(use))) continue;
    if (name.role == Role::kType || name.role == Role::kNamedArgument || name.role == Role::kNew) continue;
    if ((name.flags & (use_flag::kParenthesised | use_flag::kQualifier)) == 0 || TellsItsPlace(view, use)) continue;
    // An argument of another sheet's Range: a trap of its own.
    const Index owner = CalledAround(view, use);
    if (owner != kNone && code.uses[owner].access != Access::kSimple &&
        view.KnownName(code.uses[owner]) == Known::kRange) {
      if (!IsOfActiveSheet(view, owner)) {
        view.ReportUse(CheckId::kForeignCells, use,
                       view.Named(name) + " meint hier das aktive Blatt, nicht das vor „" +
                           std::string(code.Spelling(code.uses[owner])) +
                           "“: Laufzeitfehler 1004, sobald ein anderes aktiv ist.");
        continue;
      }
    }
    // Once for each line: chains of Cells are one thing to mend.
    if (name.line == toldLine) continue;
    toldLine = name.line;
    view.ReportUse(CheckId::kActiveSheet, use, view.Named(name) + " ohne Blatt davor meint das gerade aktive Blatt.");
  }
}

namespace {

/// Whether an expression's last name is a number of a row: .Row, .Rows.Count.
bool IsRowNumber(const ModuleView& view, Index value) {
  const NameUse& name = view.code.uses[value];
  if (name.access == Access::kSimple || view.bound[value].target != kNone) return false;
  const Known known = view.KnownName(name);
  if (known == Known::kRow) {
    // Of a range, not of a record or a grid of one's own.
    const Known before = name.previous == kNone ? Known::kNone_ : view.KnownName(view.code.uses[name.previous]);
    return before == Known::kEnd || before == Known::kRange || before == Known::kCells ||
           before == Known::kActiveCell || before == Known::kOffset || before == Known::kFind ||
           before == Known::kSpecialCells;
  }
  if (known != Known::kCount || name.previous == kNone) return false;
  return view.KnownName(view.code.uses[name.previous]) == Known::kRows && view.bound[name.previous].target == kNone;
}

/// Names that the right side of an assignment or the end of a For ends in.
Index RowNumberIn(const ModuleView& view, Index first, Index end) {
  for (Index use = first; use < end; ++use) {
    const bool argument = (view.code.uses[use].flags & (use_flag::kBareArgument)) != 0;
    if ((view.code.uses[use].flags & use_flag::kQualifier) == 0 && !argument && IsRowNumber(view, use)) return use;
  }
  return kNone;
}

bool IsInteger(const ModuleView& view, Index use) {
  const Symbol* const symbol = view.SureSymbol(use);
  if (symbol == nullptr || (symbol->kind != SymbolKind::kVariable && symbol->kind != SymbolKind::kParameter))
    return false;
  const Declaration* const declared = view.DeclarationOf(*symbol);
  return declared != nullptr && declared->type == BuiltinType::kInteger;
}

/// Whether the value is the whole right side, or a plain sum with it: `x = r.Row + 1`.
bool IsPlainValue(const ModuleView& view, const Statement& statement, Index value) {
  const NameUse& last = view.code.uses[value];
  std::string_view rest =
      view.code.text.substr(last.offset + last.length, statement.offset + statement.length - last.offset - last.length);
  return std::ranges::all_of(rest, [](char c) { return c == ' ' || c == '+' || c == '-' || (c >= '0' && c <= '9'); });
}

}  // namespace

/// Integer ends at 32,767, sheets at 1,048,576.
void CheckRowNumbers(ModuleView& view) {
  if (!view.MayBe(Host::kExcel)) return;
  const language::Module& code = view.code;
  Index use = 0;
  for (const Statement& statement : code.statements) {
    while (use < code.uses.size() && code.uses[use].offset < statement.offset) ++use;
    const Index first = use;
    while (use < code.uses.size() && code.uses[use].offset < statement.offset + statement.length) ++use;
    if (statement.activity != language::Activity::kActive || first == use) continue;
    const NameUse& target = code.uses[first];
    const bool assigns = statement.kind == StatementKind::kAssign && target.role == Role::kLetTarget;
    const bool loops = statement.kind == StatementKind::kFor && target.role == Role::kForVariable;
    if ((!assigns && !loops) || target.access != Access::kSimple || !IsInteger(view, first)) continue;
    const Index value = RowNumberIn(view, first + 1, use);
    if (value == kNone || !IsPlainValue(view, statement, value)) continue;
    view.ReportUse(CheckId::kIntegerRow, first,
                   view.Named(target) +
                       " ist Integer und nimmt hier eine Zeilennummer auf: ab Zeile 32.768 gibt es "
                       "einen Überlauf.");
  }
}

namespace {

/// Functions and properties that surely give an object.
bool GivesObject(const ModuleView& view, Index value) {
  const NameUse& name = view.code.uses[value];
  switch (view.GlobalName(value)) {
    case Known::kCreateObject:
    case Known::kGetObject:
    case Known::kActiveSheet:
    case Known::kActiveWorkbook:
    case Known::kThisWorkbook:
    case Known::kActiveDocument:
    case Known::kCurrentDb:
      return true;
    case Known::kWorksheets:
    case Known::kSheets:
    case Known::kWorkbooks:
      return (name.flags & use_flag::kParenthesised) != 0;
    default:
      break;
  }
  const Known known = view.LibraryName(value);
  if (name.access == Access::kMember && known == Known::kOpenRecordset) return true;
  return name.role == Role::kNew;
}

/// The declared class is an object's for sure: As New, As Object, a class of the sources, one of those that everybody
/// uses.
bool IsObjectVariable(const ModuleView& view, const Symbol& symbol) {
  if (symbol.kind != SymbolKind::kVariable || symbol.module != view.module) return false;
  const Declaration* const declared = view.DeclarationOf(symbol);
  if (declared == nullptr || (declared->flags & declaration_flag::kArray) != 0) return false;
  if (declared->type == BuiltinType::kObject) return true;
  if (declared->type != BuiltinType::kNamed || declared->typeUse == kNone) return false;
  const Symbol* const type = view.SureSymbol(declared->typeUse);
  if (type != nullptr) return type->kind == SymbolKind::kClass || type->kind == SymbolKind::kForm;
  switch (view.KnownName(view.code.uses[declared->typeUse])) {
    case Known::kWorksheet:
    case Known::kWorkbook:
    case Known::kCollection:
    case Known::kDictionary:
    case Known::kRecordset:
    case Known::kDatabase:
    case Known::kFileSystemObject:
    case Known::kRange:
    case Known::kDocument:
      return true;
    default:
      return false;
  }
}

}  // namespace

/// `Dim w As Worksheet: w = ActiveSheet`
void CheckMissingSet(ModuleView& view) {
  const language::Module& code = view.code;
  for (Index target = 0; target + 1 < code.uses.size(); ++target) {
    const NameUse& name = code.uses[target];
    if (name.role != Role::kLetTarget || name.access != Access::kSimple || !view.IsActive(name)) continue;
    if ((name.flags & (use_flag::kQualifier | use_flag::kParenthesised)) != 0) continue;
    const Symbol* const symbol = view.SureSymbol(target);
    if (symbol == nullptr || !IsObjectVariable(view, *symbol)) continue;
    for (Index value = target + 1; value < code.uses.size() && code.uses[value].line == name.line; ++value) {
      const NameUse& found = code.uses[value];
      if (found.role == Role::kLetTarget || found.role == Role::kSetTarget) break;
      const bool whole = (found.flags & use_flag::kWholeValue) != 0;
      if (!whole && !(found.role == Role::kNew && value == target + 1)) continue;
      if (!GivesObject(view, value)) break;
      view.ReportUse(CheckId::kMissingSet, target,
                     "Vor " + view.Named(name) + " fehlt Set: Zugewiesen wird ein Objekt, kein Wert.");
      break;
    }
  }
}

}  // namespace quillmate::checks
