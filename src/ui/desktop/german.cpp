#include "german.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

/// Resources of a static library have to be asked for, outside of every namespace.
static void UseTranslations() { Q_INIT_RESOURCE(translations); }

namespace quillmate::ui {

void SpeakGerman(QApplication& app) {
  UseTranslations();
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  auto* translator = new QTranslator(&app);
  if (translator->load(QStringLiteral(":/translations/qtbase_de.qm"))) QApplication::installTranslator(translator);
}

}  // namespace quillmate::ui
