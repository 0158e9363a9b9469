#pragma once

#include <QObject>
#include <QPagedPaintDevice>
#include <functional>
#include <utility>
#include <vector>

#include "code_area.h"
#include "code_printing.h"
#include "print_choice.h"
#include "project_pdf.h"
#include "table_file.h"

class QWidget;

namespace quillmate::ui {

/// The commands that put code on paper: printer, preview, PDF.
class PrintCommands : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it. Dialogs appear over `window`.
  PrintCommands(QWidget& window, const ListDesk& desk, const CodeArea& code);

  /// Where the notes of a view come from.
  void TakeNotes(std::function<std::vector<LineMark>(codedb::ViewIndex view)> notes) { notes_ = std::move(notes); }

  void Print();
  void Preview();
  void SavePdf();
  /// The loaded project for a PDF that is made elsewhere.
  ProjectPdf WholeProject() const;

 private:
  using Work = void (PrintCommands::*)(const PrintChoice& choice);

  void Ask(const char* title, const char* action, Work work);
  void RunPrint(const PrintChoice& choice);
  void RunPreview(const PrintChoice& choice);
  void RunPdf(const PrintChoice& choice);
  /// On paper or in a preview, in the window's thread, page by page, until the user ends it.
  void PrintOn(QPagedPaintDevice& device, const PrintChoice& choice);
  /// Without parts.
  PrintJob LookOf(const PrintChoice& choice) const;
  PrintJob JobOf(const PrintChoice& choice);
  ProjectPdf PdfOf(const PrintChoice& choice);
  PrintedPart ModulePart(codedb::ViewIndex view, const QString& title);
  PrintedPart VisiblePart(PrintedWhat what);

  QWidget& window_;
  ListDesk desk_;
  const CodeArea& code_;
  std::function<std::vector<LineMark>(codedb::ViewIndex view)> notes_;
  /// As chosen last.
  PrintChoice choice_;
};

}  // namespace quillmate::ui
