#include "table_file.h"

#include <QLocale>
#include <memory>
#include <utility>

#include <quillmate/files/replacement.h>

#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

/// More rows than these are handed on in the background.
constexpr std::size_t kAtOnce = 2000;
constexpr std::size_t kTellEvery = 500;

/// Passes rows on, and tells how many.
class TellingSink : public output::TableSink {
 public:
  TellingSink(output::TableSink& sink, BackgroundJob& job, std::size_t rows) : sink_(sink), job_(job), rows_(rows) {}

  TableSink& Text(std::string_view utf8) override { return sink_.Text(utf8), *this; }
  TableSink& Number(std::int64_t value) override { return sink_.Number(value), *this; }
  void EndRow() override {
    sink_.EndRow();
    if (++row_ % kTellEvery == 0) job_.Tell(row_, rows_);
  }

 private:
  output::TableSink& sink_;
  BackgroundJob& job_;
  const std::size_t rows_;
  std::size_t row_ = 0;
};

/// The list, ended by a row as soon as the job is cancelled.
ListTexts Telling(const ListTexts& list, BackgroundJob& job) {
  ListTexts telling = list;
  telling.table.rows = [&list, &job](output::TableSink& sink) {
    TellingSink telling_sink(sink, job, list.rowsAnywhere);
    list.table.rows(telling_sink);
  };
  return telling;
}

std::string TextOf(const ListTexts& list) { return list.text ? list.text() : output::TableText(list.table); }

void WriteWorkbook(const std::filesystem::path& file, const output::Table& table, const std::atomic<bool>* cancelled) {
  output::Spreadsheet book;
  output::AddTable(book, table);
  book.Write(file, cancelled);
}

void WriteList(const ListTexts& list, const QString& file, const std::atomic<bool>* cancelled) {
  const auto endsWith = [&file](const char* ending) {
    return file.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
  };
  const std::filesystem::path path = ToPath(file);
  if (endsWith(".xlsx")) {
    WriteWorkbook(path, list.table, cancelled);
    return;
  }
  const std::string bytes = endsWith(".csv") ? output::TableCsv(list.table) : TextOf(list);
  if (cancelled == nullptr || !*cancelled) files::ReplaceFile(path, bytes);
}

void PutOnClipboard(const ListDesk& desk, const QString& text) {
  desk.interaction.Desktop().ClearClipboard();
  desk.interaction.Desktop().SetClipboard({text, {}, {}});
  if (desk.globals.Options.meld) desk.interaction.Show("Liste in Zwischenablage");
}

const QString& TaskName() {
  static const QString name = QStringLiteral("frmListeFortschritt");
  return name;
}

/// Runs the work over the rows of a long list.
void StartTask(const ListDesk& desk, const ListTexts& list,
               std::function<void(const ListTexts& list, BackgroundJob& job)> work, std::function<void()> done) {
  const QString title = FromUtf8(list.table.name);
  desk.tasks.Start(
      {TaskName(), title,
       [list, work = std::move(work),
        step = ToUtf8(title) + ": Zeilen " + ToUtf8(QLocale().toString(list.rowsAnywhere))](BackgroundJob& job) {
         job.Begin(step);
         work(Telling(list, job), job);
         if (job.IsCancelled()) throw BackgroundJob::Cancelled();
       },
       std::move(done)});
}

}  // namespace

void CopyList(const ListDesk& desk, const ListTexts& list) {
  if (list.rowsAnywhere <= kAtOnce) {
    const Working working(desk.interaction);
    PutOnClipboard(desk, FromUtf8(TextOf(list)));
    return;
  }
  if (!desk.tasks.IsFree(TaskName())) return;
  const auto text = std::make_shared<QString>();
  StartTask(
      desk, list, [text](const ListTexts& rows, BackgroundJob&) { *text = FromUtf8(TextOf(rows)); },
      [desk, text] { PutOnClipboard(desk, *text); });
}

void SaveList(const ListDesk& desk, const ListTexts& list) {
  if (list.rowsAnywhere > kAtOnce && !desk.tasks.IsFree(TaskName())) return;
  const QString name = FromUtf8(desk.session.Name()) + QLatin1Char(' ') + FromUtf8(list.table.name);
  const QString file =
      SaveFileDialog(desk.interaction, QStringLiteral("csv"), "CSV-Tabelle:csv;Excel-Arbeitsmappe:xlsx;Text:txt;",
                     FromUtf8(desk.globals.LastProjectFolder), name);
  if (file.isEmpty()) return;
  desk.readFiles.Check({ToPath(file)});
  if (list.rowsAnywhere <= kAtOnce) {
    const Working working(desk.interaction);
    WriteList(list, file, nullptr);
    return;
  }
  StartTask(desk, list, [file](const ListTexts& rows, BackgroundJob& job) { WriteList(rows, file, &job.CancelFlag()); },
            {});
}

}  // namespace quillmate::ui
