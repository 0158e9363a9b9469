#include "table_file.h"

#include <quillmate/files/replacement.h>

#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {

void CopyList(const ListDesk& desk, const ListTexts& list) {
  desk.interaction.Desktop().ClearClipboard();
  desk.interaction.Desktop().SetClipboard({FromUtf8(list.text()), {}, {}});
  if (desk.globals.Options.meld) desk.interaction.Show("Liste in Zwischenablage");
}

void SaveList(const ListDesk& desk, const QString& suffix, const ListTexts& list) {
  const QString name = FromUtf8(desk.session.Name()) + QLatin1Char(' ') + suffix;
  const QString file = SaveFileDialog(desk.interaction, QStringLiteral("csv"), "CSV-Tabelle:csv;Text:txt;",
                                      FromUtf8(desk.globals.LastProjectFolder), name);
  if (file.isEmpty()) return;
  const std::string bytes = file.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive) ? list.csv() : list.text();
  desk.readFiles.Check({ToPath(file)});
  files::ReplaceFile(ToPath(file), bytes);
}

}  // namespace quillmate::ui
