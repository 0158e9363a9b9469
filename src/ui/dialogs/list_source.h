#pragma once

#include <QString>
#include <QVariant>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/export/table.h>
#include <quillmate/project/understanding.h>

/// The lists of the menu "Analyse" as rows that are made when they are seen.
namespace quillmate::ui {

struct ListColumn {
  QString title;
  /// In characters.
  int width = 10;
  bool isNumber = false;
  /// What the column says, for its tooltip; may be empty.
  QString explanation{};
  /// Sorted by rank: most severe, most certain first.
  bool isRanked = false;
};

struct ListRows {
  std::size_t count = 0;
  /// A text, or a number in the columns of numbers.
  std::function<QVariant(std::size_t row, int column)> cell;
  /// In the column that has ranks; the first is the least.
  std::function<int(std::size_t row)> rank{};
  /// Where a row leads.
  std::function<project::TextStretch(std::size_t row)> place;
};

/// Finds the rows, which may take seconds in a large project; in any thread. Ends early, with whatever it has, when
/// `cancelled`, which may be null, becomes true.
using FindRows = std::function<ListRows(const std::atomic<bool>* cancelled)>;

struct ListSource {
  /// Name of the window: "frmKennzahlen".
  QString name;
  QString title;
  /// What is in place of an empty list.
  QString nothing;
  /// What is there until the rows are found.
  QString waiting;
  std::vector<ListColumn> columns;
  FindRows find;
};

/// All rows of a list in their order, and one of them.
output::Table TableOf(const ListSource& list, const ListRows& rows);
void WriteRow(const ListSource& list, const ListRows& rows, std::size_t row, output::TableSink& sink);

/// Findings as rows, the most severe first.
ListRows RowsOf(const std::shared_ptr<const project::Understanding>& known, std::vector<checks::Finding> findings);
/// The routines of a measurement as rows.
ListRows RowsOf(const std::shared_ptr<const project::Understanding>& known,
                std::shared_ptr<const checks::Metrics> metrics);

/// Everything that nothing uses, of every kind, with the reason.
ListSource UnusedList(const std::shared_ptr<const project::Understanding>& known);
/// What is wrong, risky or worth knowing, with what to do about it.
ListSource FindingList(const std::shared_ptr<const project::Understanding>& known);
/// Size, branching and coupling of every routine.
ListSource MetricList(const std::shared_ptr<const project::Understanding>& known);

}  // namespace quillmate::ui
