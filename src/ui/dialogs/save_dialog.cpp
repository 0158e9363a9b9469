#include "save_dialog.h"

#include <QStringList>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr std::string_view kNoEnd = "Bitte Filterart mit ; abschließen";
constexpr std::string_view kNoColon = "Doppelpunkt vergessen";

/// "Text:txt,log" as "Text (*.txt *.log)".
QString DialogEntry(const QString& entry) {
  const qsizetype colon = entry.indexOf(QLatin1Char(':'));
  QStringList patterns;
  for (const QString& extension : entry.mid(colon + 1).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
    patterns.append(QStringLiteral("*.") + extension.trimmed());
  }
  if (patterns.isEmpty()) patterns.append(QStringLiteral("*.*"));
  return entry.left(colon) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
}

}  // namespace

SaveFilter ReadSaveFilter(std::string_view filter) {
  if (!filter.ends_with(';')) return {{}, kNoEnd};
  filter.remove_suffix(1);
  QStringList entries;
  for (const QString& entry : FromUtf8(filter).split(QLatin1Char(';'))) {
    if (!entry.contains(QLatin1Char(':'))) return {{}, kNoColon};
    entries.append(DialogEntry(entry));
  }
  return {entries.join(QStringLiteral(";;")), {}};
}

QString SaveFileDialog(Interaction& interaction, const QString& extension, std::string_view filter,
                       const QString& folder, const QString& fileName) {
  const SaveFilter read = ReadSaveFilter(filter);
  if (!read.problem.empty()) {
    interaction.Show(read.problem);
    return {};
  }
  const QString start = folder.isEmpty() ? QStringLiteral("C:\\") : folder;
  return interaction.Desktop().ChooseSaveFile(
      {QStringLiteral("Speichern unter"), start, fileName, read.filter, extension});
}

}  // namespace quillmate::ui
