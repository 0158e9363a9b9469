#pragma once

#include <QString>

#include <quillmate/project/understanding.h>

/// What declarations are called and described as, for people.
namespace quillmate::ui {

QString KindText(const symbols::ReferenceIndex& index, symbols::SymbolId symbol);
/// As its declaration writes it; "(ohne Namen)" where it has none.
QString SymbolName(const symbols::ReferenceIndex& index, symbols::SymbolId symbol);
/// "Lager", with its project in front when there are several: "Projekt1.Lager".
QString ModuleText(const symbols::ReferenceIndex& index, symbols::Index module);
/// The name of the module's file without its folder; empty when it came from none.
QString FileText(const symbols::ReferenceIndex& index, symbols::Index module);
/// "Lager.Zugang", "Lager.Zugang.n": module and what is around, and the name.
QString QualifiedName(const symbols::ReferenceIndex& index, symbols::SymbolId symbol);
/// A line of code, blanks drawn together, as much as anybody reads in a list.
QString LineText(const symbols::ReferenceIndex& index, symbols::Index module, std::uint32_t line);
/// The name of a routine that holds a line: "Zugang", or "(Deklarationen)" outside of all.
QString RoutineText(const symbols::ReferenceIndex& index, symbols::SymbolId routine);

/// Declaration, comment above it, kind, place and number of uses, as HTML for a tooltip.
QString DescribeSymbol(const project::Understanding& known, symbols::SymbolId symbol);

}  // namespace quillmate::ui
