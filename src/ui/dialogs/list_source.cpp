#include "list_source.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <quillmate/symbols/unused.h>

#include "qt_text.h"
#include "symbol_text.h"
#include "unused_classes.h"

namespace quillmate::ui {
namespace {

using symbols::SymbolId;

/// Room beside a title for the sign of the order.
constexpr int kSortSign = 5;

ListColumn Text(const char* title, int width) { return {FromUtf8(title), width, false, {}}; }
ListColumn Ranked(const char* title, int width) { return {FromUtf8(title), width, false, {}, true}; }
ListColumn Number(std::string_view title, std::string_view explanation = {}) {
  const QString text = FromUtf8(title);
  return {text, static_cast<int>(text.size()) + kSortSign, true, FromUtf8(explanation)};
}

qlonglong ShownLine(const project::Understanding& known, symbols::Index module, std::uint32_t line) {
  const std::uint32_t shown = known.ShownLine(module, line);
  return shown > 0 ? shown : known.Index().EditorLine(module, line);
}

/// How surely it can go: what somebody outside the code may use comes last.
/// A word of the command line as a table shows it.
QString Capitalized(const QString& word) { return word.left(1).toUpper() + word.mid(1); }

int CertaintyRank(symbols::Grade grade) {
  using enum symbols::Grade;
  constexpr symbols::Grade kOrder[] = {kCertain, kSelf, kWritten, kInactive, kPossible, kText, kHost};
  return static_cast<int>(std::ranges::find(kOrder, grade) - std::begin(kOrder));
}

QVariant UnusedCell(const project::Understanding& known, const symbols::UnusedSymbol& unused, int column) {
  const symbols::ReferenceIndex& index = known.Index();
  const symbols::Symbol& symbol = index.SymbolAt(unused.symbol);
  switch (column) {
    case 0:
      return ModuleText(index, symbol.module);
    case 1:
      return SymbolName(index, unused.symbol);
    case 2:
      return KindText(index, unused.symbol);
    case 3:
      return symbol.parent == symbols::kNone ? QString() : SymbolName(index, symbol.parent);
    case 4:
      return ShownLine(known, symbol.module, symbol.line);
    case 5:
      return GradeCaption(unused.grade);
    case 6:
      return FromUtf8(unused.reason);
    default:
      return unused.place == unused.reason ? QString() : FromUtf8(unused.place);
  }
}

QVariant MetricCell(const project::Understanding& known, const checks::RoutineNumbers& numbers, int column) {
  const symbols::ReferenceIndex& index = known.Index();
  const SymbolId symbol = index.RoutineSymbol(numbers.module, numbers.routine);
  const std::uint32_t values[] = {numbers.lines,      numbers.code,       numbers.comment,
                                  numbers.statements, numbers.complexity, numbers.nesting,
                                  numbers.parameters, numbers.fanIn,      numbers.fanOut};
  switch (column) {
    case 0:
      return ModuleText(index, numbers.module);
    case 1:
      return symbol == symbols::kNone ? QStringLiteral("(ohne Namen)") : SymbolName(index, symbol);
    case 2:
      return symbol == symbols::kNone ? QString() : KindText(index, symbol);
    default:
      return static_cast<qlonglong>(values[column - 3]);
  }
}

QVariant FindingCell(const project::Understanding& known, const checks::Finding& finding, int column) {
  const symbols::ReferenceIndex& index = known.Index();
  const checks::Check& check = checks::InfoOf(finding.check);
  switch (column) {
    case 0:
      return Capitalized(FromUtf8(checks::Word(check.severity)));
    case 1:
      return ModuleText(index, finding.module);
    case 2: {
      const SymbolId routine =
          finding.routine == symbols::kNone ? symbols::kNone : index.RoutineSymbol(finding.module, finding.routine);
      return routine == symbols::kNone ? QString() : SymbolName(index, routine);
    }
    case 3:
      return ShownLine(known, finding.module, finding.line);
    case 4:
      return FromUtf8(finding.text);
    case 5:
      return FromUtf8(finding.advice.empty() ? check.advice : std::string_view(finding.advice));
    case 6:
      return FromUtf8(checks::Word(check.group));
    default:
      return FromUtf8(check.id);
  }
}

ListRows FindAllUnused(const std::shared_ptr<const project::Understanding>& known) {
  auto found = std::make_shared<const std::vector<symbols::UnusedSymbol>>(symbols::FindUnused(known->Index()));
  ListRows rows;
  rows.count = found->size();
  rows.cell = [known, found](std::size_t row, int column) { return UnusedCell(*known, (*found)[row], column); };
  rows.rank = [found](std::size_t row) { return CertaintyRank((*found)[row].grade); };
  rows.place = [known, found](std::size_t row) { return known->NameOf((*found)[row].symbol); };
  return rows;
}

}  // namespace

ListRows RowsOf(const std::shared_ptr<const project::Understanding>& known, std::vector<checks::Finding> findings) {
  std::ranges::stable_sort(findings, {}, [](const checks::Finding& one) { return checks::InfoOf(one.check).severity; });
  const auto found = std::make_shared<const std::vector<checks::Finding>>(std::move(findings));
  ListRows rows;
  rows.count = found->size();
  rows.cell = [known, found](std::size_t row, int column) { return FindingCell(*known, (*found)[row], column); };
  rows.rank = [found](std::size_t row) { return static_cast<int>(checks::InfoOf((*found)[row].check).severity); };
  rows.place = [found](std::size_t row) {
    const checks::Finding& finding = (*found)[row];
    return project::TextStretch{{finding.module, finding.line, finding.column > 0 ? finding.column : 1}, 0};
  };
  return rows;
}

ListRows RowsOf(const std::shared_ptr<const project::Understanding>& known,
                std::shared_ptr<const checks::Metrics> metrics) {
  ListRows rows;
  rows.count = metrics->routines.size();
  rows.cell = [known, metrics](std::size_t row, int column) {
    return MetricCell(*known, metrics->routines[row], column);
  };
  rows.place = [known, metrics](std::size_t row) {
    const checks::RoutineNumbers& numbers = metrics->routines[row];
    const SymbolId symbol = known->Index().RoutineSymbol(numbers.module, numbers.routine);
    const std::uint32_t first = known->Index().Code(numbers.module).routines[numbers.routine].firstLine;
    return symbol == symbols::kNone ? project::TextStretch{{numbers.module, first, 1}, 0} : known->NameOf(symbol);
  };
  return rows;
}

void WriteRow(const ListSource& list, const ListRows& rows, std::size_t row, output::TableSink& sink) {
  for (std::size_t column = 0; column < list.columns.size(); ++column) {
    const QVariant cell = rows.cell(row, static_cast<int>(column));
    if (list.columns[column].isNumber) {
      sink.Number(cell.toLongLong());
    } else {
      sink.Text(ToUtf8(cell.toString()));
    }
  }
  sink.EndRow();
}

output::Table TableOf(const ListSource& list, const ListRows& rows) {
  output::Table table;
  table.name = ToUtf8(list.title);
  for (const ListColumn& column : list.columns) table.heads.push_back(ToUtf8(column.title));
  table.rows = [list, rows](output::TableSink& sink) {
    for (std::size_t row = 0; row < rows.count; ++row) WriteRow(list, rows, row, sink);
  };
  return table;
}

ListSource FindingList(const std::shared_ptr<const project::Understanding>& known) {
  ListSource list;
  list.name = QStringLiteral("frmBefunde");
  list.title = QStringLiteral("Befunde");
  list.nothing = QStringLiteral("Es gibt keine Befunde.");
  list.waiting = QStringLiteral("Befunde werden ermittelt ...");
  list.columns = {Ranked("Stufe", 12), Text("Modul", 22), Text("Routine", 30), Number("Zeile"),
                  Text("Befund", 56),  Text("Rat", 44),   Text("Gruppe", 12),  Text("Kennung", 18)};
  list.find = [known](const std::atomic<bool>* cancelled) {
    return RowsOf(known, checks::RunChecks(known->Index(), {}, 0, cancelled));
  };
  return list;
}

ListSource UnusedList(const std::shared_ptr<const project::Understanding>& known) {
  ListSource list;
  list.name = QStringLiteral("frmUnbenutztes");
  list.title = QStringLiteral("Unbenutztes");
  list.nothing = QStringLiteral("Alles, was das Projekt deklariert, wird benutzt.");
  list.waiting = QStringLiteral("Unbenutztes wird gesucht ...");
  list.columns = {Text("Modul", 20), Text("Name", 26),     Text("Art", 14),   Text("In", 20),
                  Number("Zeile"),   Ranked("Klasse", 12), Text("Grund", 34), Text("Stelle", 24)};
  list.find = [known](const std::atomic<bool>*) { return FindAllUnused(known); };
  return list;
}

ListSource MetricList(const std::shared_ptr<const project::Understanding>& known) {
  ListSource list;
  list.name = QStringLiteral("frmKennzahlen");
  list.title = QStringLiteral("Kennzahlen");
  list.nothing = QStringLiteral("Das Projekt hat keine Routinen.");
  list.waiting = QStringLiteral("Kennzahlen werden ermittelt ...");
  list.columns = {Text("Modul", 20), Text("Routine", 30), Text("Art", 14)};
  for (const checks::MetricDefinition& metric : checks::kRoutineDefinitions) {
    list.columns.push_back(Number(metric.name, metric.definition));
  }
  list.find = [known](const std::atomic<bool>*) {
    return RowsOf(known, std::make_shared<const checks::Metrics>(checks::Measure(known->Index())));
  };
  return list;
}

}  // namespace quillmate::ui
