#include "table_file.h"

#include <quillmate/files/replacement.h>

#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

std::string TextOf(const ListTexts& list) { return list.text ? list.text() : output::TableText(list.table); }

void WriteWorkbook(const std::filesystem::path& file, const output::Table& table) {
  output::Spreadsheet book;
  output::AddTable(book, table);
  book.Write(file);
}

}  // namespace

void CopyList(const ListDesk& desk, const ListTexts& list) {
  desk.interaction.Desktop().ClearClipboard();
  desk.interaction.Desktop().SetClipboard({FromUtf8(TextOf(list)), {}, {}});
  if (desk.globals.Options.meld) desk.interaction.Show("Liste in Zwischenablage");
}

void SaveList(const ListDesk& desk, const ListTexts& list) {
  const QString name = FromUtf8(desk.session.Name()) + QLatin1Char(' ') + FromUtf8(list.table.name);
  const QString file =
      SaveFileDialog(desk.interaction, QStringLiteral("csv"), "CSV-Tabelle:csv;Excel-Arbeitsmappe:xlsx;Text:txt;",
                     FromUtf8(desk.globals.LastProjectFolder), name);
  if (file.isEmpty()) return;
  const Working working(desk.interaction);
  const auto endsWith = [&file](const char* ending) {
    return file.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
  };
  const std::filesystem::path path = ToPath(file);
  desk.readFiles.Check({path});
  if (endsWith(".xlsx")) {
    WriteWorkbook(path, list.table);
  } else {
    files::ReplaceFile(path, endsWith(".csv") ? output::TableCsv(list.table) : TextOf(list));
  }
}

}  // namespace quillmate::ui
