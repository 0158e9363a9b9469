#include "print_commands.h"

#include <QBuffer>
#include <QPdfWriter>
#include <utility>
#include <vector>

#include <quillmate/files/replacement.h>

#include "project_pdf.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {

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

PrintJob PrintCommands::JobOf(const PrintChoice& choice) {
  PrintJob job;
  job.project = FromUtf8(desk_.session.Name());
  job.time = QDateTime::currentDateTime();
  job.lineNumbers = choice.lineNumbers;
  job.colours = choice.colours;
  job.style = StyleOf(desk_.globals.Options, window_.logicalDpiX());
  if (choice.what == PrintedWhat::kProject) {
    job.contents = true;
    job.parts = static_cast<std::size_t>(desk_.session.Tree()->moduleCount);
    job.part = [this](std::size_t part) {
      const navigation::TreeNode& node = desk_.session.Tree()->nodes[part];
      return ModulePart(codedb::ViewOf(node.module), FromCode(node.text));
    };
  } else {
    job.parts = 1;
    job.part = [this, what = choice.what](std::size_t) { return VisiblePart(what); };
  }
  job.progress = [this](int page, int pages) {
    desk_.interaction.ShowProgress("Seite " + std::to_string(page) + " von " + std::to_string(pages));
    return true;
  };
  return job;
}

void PrintCommands::RunPrint(const PrintChoice& choice) {
  desk_.interaction.Desktop().Print(FromUtf8(desk_.session.Name()), [this, choice](QPagedPaintDevice& device) {
    const Working working(desk_.interaction);
    PrintCode(device, JobOf(choice));
  });
}

void PrintCommands::RunPreview(const PrintChoice& choice) {
  desk_.interaction.Desktop().Preview(FromUtf8(desk_.session.Name()), [this, choice](QPagedPaintDevice& device) {
    const Working working(desk_.interaction);
    PrintCode(device, JobOf(choice));
  });
}

void PrintCommands::RunPdf(const PrintChoice& choice) {
  const PrintJob job = JobOf(choice);
  const QString name = choice.what == PrintedWhat::kProject ? job.project : job.part(0).title;
  const QString file = SaveFileDialog(desk_.interaction, QStringLiteral("pdf"), "PDF:pdf;",
                                      FromUtf8(desk_.globals.LastProjectFolder), name);
  if (file.isEmpty()) return;
  const Working working(desk_.interaction);
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&bytes);
    SetUpPdf(writer, name);
    PrintCode(writer, job);
  }
  desk_.readFiles.Check({ToPath(file)});
  files::ReplaceFile(ToPath(file), bytes.data().toStdString());
}

ProjectPdf PrintCommands::WholeProject() {
  PrintChoice choice;
  choice.what = PrintedWhat::kProject;
  ProjectPdf project;
  project.job = JobOf(choice);
  project.job.part = nullptr;
  project.job.progress = nullptr;
  for (std::size_t i = 0; i < project.job.parts; ++i) {
    const navigation::TreeNode& node = desk_.session.Tree()->nodes[i];
    const codedb::ViewIndex view = codedb::ViewOf(node.module);
    project.modules.push_back({view, FromCode(node.text), notes_ ? notes_(view) : std::vector<LineMark>()});
  }
  return project;
}

}  // namespace quillmate::ui
