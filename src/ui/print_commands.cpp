#include "print_commands.h"

#include <QApplication>
#include <QPaintEngine>
#include <QPrinter>
#include <QProgressDialog>
#include <utility>
#include <vector>

#include "project_pdf.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

/// In characters.
constexpr int kProgressWidth = 40;
/// Nobody pages through more.
constexpr int kMostPreviewed = 300;

}  // namespace

PrintCommands::PrintCommands(QWidget& window, const ListDesk& desk, const CodeArea& code)
    : window_(window), desk_(desk), code_(code) {}

void PrintCommands::Print() { Ask("Drucken", "&Drucken ...", &PrintCommands::RunPrint); }
void PrintCommands::Preview() { Ask("Druckvorschau", "&Vorschau", &PrintCommands::RunPreview); }
void PrintCommands::SavePdf() { Ask("Als PDF speichern", "&Speichern ...", &PrintCommands::RunPdf); }

void PrintCommands::Ask(const char* title, const char* action, Work work) {
  const bool hasSelection = desk_.session.View().SelLength() > 0;
  const bool hasRoutine = !desk_.session.Routine().empty();
  auto* dialog = new PrintChoiceDialog(&window_, QString::fromUtf8(title), QString::fromUtf8(action), choice_,
                                       hasSelection, hasRoutine);
  connect(dialog, &PrintChoiceDialog::Chosen, this, [this, work](const PrintChoice& choice) {
    choice_ = choice;
    desk_.interaction.Guarded([this, work, choice] {
      if (desk_.session.IsLoaded()) (this->*work)(choice);
    });
  });
  dialog->open();
}

PrintedPart PrintCommands::ModulePart(codedb::ViewIndex view, const QString& title) {
  return PartOfModule(desk_.session.Views(), view, title, notes_ ? notes_(view) : std::vector<LineMark>());
}

PrintedPart PrintCommands::VisiblePart(PrintedWhat what) {
  const codedb::ViewIndex current = desk_.session.Views().Current();
  PrintedPart part = ModulePart(current, FromCode(desk_.session.Module()));
  const navigation::CodeView& view = desk_.session.View();
  const codedb::Line caret = view.LineAt(view.SelStart());
  if (what == PrintedWhat::kSelection) {
    part.firstLine = view.LineFromChar(view.SelStart());
    part.endLine = view.LineFromChar(view.SelStart() + view.SelLength()) + 1;
  } else if (what == PrintedWhat::kRoutine) {
    const auto routine = desk_.session.Index().RoutineAt(caret, codedb::ModuleOf(current));
    if (routine && routine->start && routine->end && routine->start->value > 0) {
      part.title += QLatin1Char('.') + FromCode(routine->name);
      part.firstLine = static_cast<std::size_t>(routine->start->value) - 1;
      part.endLine = std::min(static_cast<std::size_t>(routine->end->value), view.LineCount());
    }
  }
  return part;
}

PrintJob PrintCommands::LookOf(const PrintChoice& choice) const {
  PrintJob job;
  job.project = FromUtf8(desk_.session.Name());
  job.time = QDateTime::currentDateTime();
  job.contents = choice.what == PrintedWhat::kProject;
  job.lineNumbers = choice.lineNumbers;
  job.colours = choice.colours;
  job.style = StyleOf(desk_.globals.Options, window_.logicalDpiX());
  return job;
}

PrintJob PrintCommands::JobOf(const PrintChoice& choice) {
  PrintJob job = LookOf(choice);
  if (choice.what != PrintedWhat::kProject) {
    job.parts = 1;
    job.part = [this, what = choice.what](std::size_t) { return VisiblePart(what); };
    return job;
  }
  job.parts = static_cast<std::size_t>(desk_.session.Tree()->moduleCount);
  job.part = [this](std::size_t part) {
    const navigation::TreeNode& node = desk_.session.Tree()->nodes[part];
    return ModulePart(codedb::ViewOf(node.module), FromCode(node.text));
  };
  return job;
}

void PrintCommands::PrintOn(QPagedPaintDevice& device, const PrintChoice& choice) {
  const Working working(desk_.interaction);
  PrintJob job = JobOf(choice);
  QProgressDialog progress(QStringLiteral("Zähle die Seiten"), QStringLiteral("Abbrechen"), 0, 0,
                           QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget() : &window_);
  progress.setObjectName(QStringLiteral("frmDruckFortschritt"));
  progress.setWindowTitle(QStringLiteral("Drucken"));
  progress.setWindowModality(Qt::ApplicationModal);
  progress.setMinimumWidth(kProgressWidth * progress.fontMetrics().averageCharWidth());
  // A modal one lets events come in between, so that it can be cancelled.
  const auto tell = [&](int done, int all) {
    progress.setMaximum(all + 1);
    progress.setValue(done);
    if (!progress.wasCanceled()) return true;
    if (auto* printer = dynamic_cast<QPrinter*>(&device)) printer->abort();
    return false;
  };
  job.counted = [&](std::size_t parts) { return tell(static_cast<int>(parts), static_cast<int>(job.parts)); };
  job.progress = [&](int page, int pages) {
    const std::string text = "Seite " + std::to_string(page) + " von " + std::to_string(pages);
    desk_.interaction.ShowProgress(text);
    progress.setLabelText(FromUtf8(text));
    return tell(page, pages);
  };
  // What a preview is drawn on keeps all of its pages.
  const bool isPreview = device.paintEngine() != nullptr && device.paintEngine()->type() == QPaintEngine::Picture;
  if (isPreview) job.mostPages = kMostPreviewed;
  PrintCode(device, job);
}

void PrintCommands::RunPrint(const PrintChoice& choice) {
  desk_.interaction.Desktop().Print(FromUtf8(desk_.session.Name()),
                                    [this, choice](QPagedPaintDevice& device) { PrintOn(device, choice); });
}

void PrintCommands::RunPreview(const PrintChoice& choice) {
  desk_.interaction.Desktop().Preview(FromUtf8(desk_.session.Name()),
                                      [this, choice](QPagedPaintDevice& device) { PrintOn(device, choice); });
}

void PrintCommands::RunPdf(const PrintChoice& choice) {
  const QString task = QStringLiteral("frmPdfFortschritt");
  if (!desk_.tasks.IsFree(task)) return;
  ProjectPdf pdf = PdfOf(choice);
  const QString name = choice.what == PrintedWhat::kProject ? pdf.job.project : pdf.modules.front().title;
  const QString file = SaveFileDialog(desk_.interaction, QStringLiteral("pdf"), "PDF:pdf;",
                                      FromUtf8(desk_.globals.LastProjectFolder), name);
  if (file.isEmpty()) return;
  desk_.readFiles.Check({ToPath(file)});
  const auto make = [pdf = std::move(pdf), source = desk_.session.Files(), target = ToPath(file)](BackgroundJob& job) {
    SaveAsPdf(pdf, source, target, job);
  };
  desk_.tasks.Start({task, QStringLiteral("PDF speichern"), make,
                     [this, file] { desk_.interaction.ShowProgress("Gespeichert: " + ToUtf8(file)); }});
}

ProjectPdf PrintCommands::PdfOf(const PrintChoice& choice) {
  if (choice.what == PrintedWhat::kProject) {
    ProjectPdf whole = WholeProject();
    whole.job = LookOf(choice);
    return whole;
  }
  PrintedPart part = VisiblePart(choice.what);
  const bool isWhole = choice.what == PrintedWhat::kModule;
  return {{{desk_.session.Views().Current(), part.title, std::move(part.notes), part.firstLine,
            isWhole ? 0 : part.endLine}},
          LookOf(choice)};
}

ProjectPdf PrintCommands::WholeProject() const {
  PrintChoice choice;
  choice.what = PrintedWhat::kProject;
  ProjectPdf project;
  project.job = LookOf(choice);
  for (int i = 0; i < desk_.session.Tree()->moduleCount; ++i) {
    const navigation::TreeNode& node = desk_.session.Tree()->nodes[static_cast<std::size_t>(i)];
    const codedb::ViewIndex view = codedb::ViewOf(node.module);
    project.modules.push_back({view, FromCode(node.text), notes_ ? notes_(view) : std::vector<LineMark>()});
  }
  return project;
}

}  // namespace quillmate::ui
