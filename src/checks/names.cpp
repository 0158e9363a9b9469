#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::BuiltinType;
using language::Declaration;
using language::DeclarationKind;
using language::StatementKind;

/// So many names of one statement are looked at for the one with the type.
constexpr std::size_t kListed = 64;

bool IsActive(const Declaration& declaration) {
  return (declaration.flags & (declaration_flag::kInactive | declaration_flag::kVariant | declaration_flag::kDead)) ==
         0;
}

bool HasType(const Declaration& declaration) { return declaration.type != BuiltinType::kUndeclared; }

bool IsProcedure(DeclarationKind kind) {
  return kind == DeclarationKind::kFunction || kind == DeclarationKind::kPropertyGet;
}

/// Missing Option Explicit, at the first line of code.
void CheckOption(ModuleView& view) {
  const language::Module& code = view.code;
  if (code.facts.optionExplicit || code.counts.code == 0) return;
  // Without routine and variable there is nothing to declare.
  const bool any = std::ranges::any_of(code.routines, [](const language::Routine& routine) {
    return routine.activity != language::Activity::kDead && routine.metrics.statements > 0;
  });
  if (!any) return;
  const auto first = std::ranges::find(code.lines, language::LineClass::kCode, &language::PhysicalLine::lineClass);
  view.Report(CheckId::kOptionExplicit, static_cast<std::uint32_t>(first - code.lines.begin()) + 1, 1, kNone,
              view.Info().name,
              "Im Modul " + InQuotes(view.Info().name) +
                  " fehlt „Option Explicit“: Ein vertippter Name wird unbemerkt zu einer neuen Variablen.");
}

void CheckImplicit(ModuleView& view) {
  const symbols::ModuleInfo& info = view.Info();
  for (SymbolId id = info.symbol; id < info.endSymbol; ++id) {
    const Symbol& symbol = view.index.SymbolAt(id);
    if ((symbol.flags & symbols::symbol_flag::kImplicit) == 0 || symbol.kind != SymbolKind::kVariable) continue;
    if ((symbol.flags & symbols::symbol_flag::kInactive) != 0) continue;
    const std::string_view name = view.index.Name(id);
    // Code outside of its form or its libraries: what is only read may be something of theirs.
    const bool written = (symbol.flags & symbols::symbol_flag::kFirstWritten) != 0;
    if (!written) continue;
    view.Report(CheckId::kImplicitVariable, symbol.line, symbol.column, symbol.routine, name,
                InQuotes(name) + " ist nirgends deklariert und wird hier zu einer Variablen vom Typ Variant.");
  }
}

/// `Dim a, b As Long`: the type belongs to the last one only.
void CheckList(ModuleView& view, const Declaration& first, const Declaration& last) {
  if (HasType(first) || !HasType(last) || first.kind != DeclarationKind::kVariable) return;
  view.ReportDeclaration(CheckId::kListedVariant, first,
                         view.Named(first) + " ist Variant: „As " + view.code.DeclaredType(last) + "“ gilt nur für " +
                             view.Named(last) + ".");
}

void CheckTypes(ModuleView& view) {
  const std::vector<Declaration>& all = view.code.declarations;
  for (std::size_t at = 0; at < all.size(); ++at) {
    const Declaration& declared = all[at];
    if (!IsActive(declared) || HasType(declared)) continue;
    if (declared.kind == DeclarationKind::kVariable) {
      // The next one in the same statement that has a type.
      std::size_t other = at + 1;
      while (other < all.size() && other - at < kListed && all[other].kind == DeclarationKind::kVariable &&
             all[other].firstLine == declared.firstLine && !HasType(all[other])) {
        ++other;
      }
      const bool listed = other < all.size() && all[other].kind == DeclarationKind::kVariable &&
                          all[other].firstLine == declared.firstLine &&
                          view.code.text.substr(declared.offset, all[other].offset - declared.offset).find(':') ==
                              std::string_view::npos;
      if (listed) {
        CheckList(view, declared, all[other]);
        continue;
      }
    }
    const bool parameter = declared.kind == DeclarationKind::kParameter && declared.parent != kNone &&
                           all[declared.parent].kind <= DeclarationKind::kPropertySet &&
                           (declared.flags & declaration_flag::kParamArray) == 0;
    if (declared.kind != DeclarationKind::kVariable && !parameter && !IsProcedure(declared.kind)) continue;
    const std::string_view what = parameter                                     ? "Der Parameter "
                                  : declared.kind == DeclarationKind::kVariable ? "Die Variable "
                                                                                : "Das Ergebnis von ";
    view.ReportDeclaration(CheckId::kImplicitVariant, declared,
                           std::string(what) + view.Named(declared) + " hat keinen Typ und ist damit Variant.");
  }
}

void CheckByRef(ModuleView& view) {
  for (const Declaration& declared : view.code.declarations) {
    if (declared.kind != DeclarationKind::kParameter || !IsActive(declared)) continue;
    constexpr std::uint32_t kTold = declaration_flag::kByVal | declaration_flag::kByRef | declaration_flag::kParamArray;
    if ((declared.flags & kTold) != 0 || declared.parent == kNone) continue;
    const Declaration& routine = view.code.declarations[declared.parent];
    if (routine.kind > DeclarationKind::kPropertySet) continue;
    // The value of a Property Let or Set is handed over by value whatever its header says.
    const bool value = routine.kind == DeclarationKind::kPropertyLet || routine.kind == DeclarationKind::kPropertySet;
    if (value && declared.ordinal == routine.childCount) continue;
    view.ReportDeclaration(
        CheckId::kImplicitByRef, declared,
        "Der Parameter " + view.Named(declared) + " nennt weder ByVal noch ByRef und ist damit ByRef.");
  }
}

}  // namespace

void CheckNames(ModuleView& view) {
  if (view.selection->Has(CheckId::kOptionExplicit)) CheckOption(view);
  if (view.selection->Has(CheckId::kImplicitVariable)) CheckImplicit(view);
  if (view.selection->Has(CheckId::kImplicitVariant) || view.selection->Has(CheckId::kListedVariant)) CheckTypes(view);
  if (view.selection->Has(CheckId::kImplicitByRef)) CheckByRef(view);
}

// ----------------------------------------------------------------------------------------------------- hidden names

/// A local or a parameter with the name of something that the whole module sees.
void CheckShadows(ModuleView& view) {
  const language::Module& code = view.code;
  std::vector<const Declaration*> byName(code.NameCount(), nullptr);
  for (const Declaration& declared : code.declarations) {
    const bool wide = declared.kind == DeclarationKind::kVariable || declared.kind == DeclarationKind::kConstant ||
                      declared.kind <= DeclarationKind::kDeclareFunction;
    if (wide && declared.visibility != language::Visibility::kLocal && IsActive(declared))
      byName[declared.name] = &declared;
  }
  for (const Declaration& declared : code.declarations) {
    const bool local = declared.kind == DeclarationKind::kVariable || declared.kind == DeclarationKind::kConstant ||
                       declared.kind == DeclarationKind::kParameter;
    if (!local || declared.visibility != language::Visibility::kLocal || !IsActive(declared)) continue;
    const Declaration* const wide = byName[declared.name];
    if (wide == nullptr || declared.routine == kNone) continue;
    const bool routine = wide->kind <= DeclarationKind::kDeclareFunction;
    const std::string line = std::to_string(code.EditorLine(wide->line));
    const std::string_view what = routine                                    ? "die Routine"
                                  : wide->kind == DeclarationKind::kConstant ? "die Konstante des Moduls"
                                                                             : "die Variable des Moduls";
    view.ReportDeclaration(CheckId::kHiddenName, declared,
                           view.Named(declared) + " verdeckt hier " + std::string(what) + " in Zeile " + line + ".");
  }
}

// ---------------------------------------------------------------------------------------------------------- ambiguity

bool MayBeAmbiguous(const ModuleView& view, Index use) {
  const language::NameUse& name = view.code.uses[use];
  if (name.access != Access::kSimple || !view.IsActive(name)) return false;
  if (view.bound[use].target != kNone || view.bound[use].certainty != Certainty::kAmbiguous) return false;
  return name.role == Role::kCall || name.role == Role::kValue;
}

/// Calls that the editor refuses: several other modules have a public routine of the name.
void CheckAmbiguity(ModuleView& view) {
  const language::Module& code = view.code;
  std::vector<symbols::Occurrence> all;
  for (Index use = 0; use < code.uses.size(); ++use) {
    if (!MayBeAmbiguous(view, use)) continue;
    if (all.empty()) all = view.index.Occurrences(view.module);
    const auto meaning = std::ranges::lower_bound(all, code.uses[use].offset, {}, &symbols::Occurrence::offset);
    if (meaning == all.end() || meaning->offset != code.uses[use].offset || meaning->targets.size() < 2) continue;
    const bool routines = std::ranges::all_of(meaning->targets, [&](SymbolId target) {
      return IsCallable(view.index.SymbolAt(target).kind) && view.index.SymbolAt(target).module != view.module;
    });
    if (!routines) continue;
    constexpr std::size_t kNamed = 4;
    std::string modules;
    for (std::size_t i = 0; i < meaning->targets.size() && i < kNamed; ++i) {
      const std::string& module = view.index.Modules()[view.index.SymbolAt(meaning->targets[i]).module].name;
      modules.append(modules.empty() ? "" : ", ").append(InQuotes(module));
    }
    view.ReportUse(
        CheckId::kAmbiguousCall, use,
        view.Named(code.uses[use]) + " gibt es mehrfach: in " + modules + ". Gemeint sein kann jedes davon.");
  }
}

}  // namespace quillmate::checks
