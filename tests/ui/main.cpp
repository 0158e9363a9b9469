#include <QApplication>
#include <cstdio>

#include <gtest/gtest.h>

#include "desktop_look.h"
#include "german.h"

namespace {

/// The offscreen display says with each window what it can't do.
void PrintMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (!text.contains(QStringLiteral("This plugin does not support"))) std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(PrintMessage);
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  quillmate::ui::SpeakGerman(app);
  quillmate::ui::UseProgramStyle();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
