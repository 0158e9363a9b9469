#pragma once

#include <QDateTime>
#include <QPagedPaintDevice>
#include <QString>
#include <functional>
#include <vector>

#include <quillmate/navigation/code_view.h>

#include "code_margin.h"
#include "code_style.h"

namespace quillmate::ui {

/// A stretch of a module that is printed, beginning on a page of its own.
struct PrintedPart {
  /// "Lager", "Lager.Zugang".
  QString title;
  const navigation::CodeView* view = nullptr;
  const std::vector<navigation::StyleRun>* runs = nullptr;
  /// 0-based lines of the view; after the last one.
  std::size_t firstLine = 0;
  std::size_t endLine = 0;
  /// Printed below their lines; by line.
  std::vector<LineMark> notes{};
};

struct PrintJob {
  QString project;
  QDateTime time;
  std::size_t parts = 0;
  /// Makes a part. Asked for twice, one part after the other: a part is good until the next one is asked for.
  std::function<PrintedPart(std::size_t part)> part;
  /// A list of the parts with their pages in front.
  bool contents = false;
  bool lineNumbers = true;
  bool colours = true;
  CodeStyle style;
  /// The pages of so many parts are counted; false ends the job.
  std::function<bool(std::size_t parts)> counted{};
  /// Told before each page; false ends the job.
  std::function<bool(int page, int pages)> progress{};
  /// Of no more than these pages anything is printed; 0 for all of them.
  int mostPages = 0;
};

/// Prints on a printer, into a PDF or a preview: a head line with project, part and date on each page, page numbers
/// below; long lines are broken, and go on a step further in. Text stays text. False when it was ended early.
bool PrintCode(QPagedPaintDevice& device, const PrintJob& job);

}  // namespace quillmate::ui
