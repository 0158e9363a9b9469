#include "about_box.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QSysInfo>
#include <QVBoxLayout>

#include <quillmate/codedb/code_database.h>
#include <quillmate/startup/edition.h>

#include "icons.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kPictureSize = 64;

#if defined(__clang__)
const QString kCompiler = QStringLiteral("Clang %1.%2").arg(__clang_major__).arg(__clang_minor__);
#elif defined(__GNUC__)
const QString kCompiler = QStringLiteral("GCC %1.%2").arg(__GNUC__).arg(__GNUC_MINOR__);
#elif defined(_MSC_VER)
const QString kCompiler = QStringLiteral("MSVC %1").arg(_MSC_VER);
#else
const QString kCompiler = QStringLiteral("unbekannter Compiler");
#endif

QString ScreenText() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return QStringLiteral("keiner");
  return QStringLiteral("%1 x %2, %3 dpi")
      .arg(screen->size().width())
      .arg(screen->size().height())
      .arg(qRound(screen->logicalDotsPerInch()));
}

QLabel* MakePicture() {
  auto* picture = new QLabel;
  picture->setPixmap(LoadIcon(QStringLiteral("4A")).pixmap(kPictureSize, kPictureSize));
  picture->setAlignment(Qt::AlignTop);
  return picture;
}

QLabel* MakeTitle(const QString& title) {
  auto* label = new QLabel(title);
  label->setObjectName(QStringLiteral("lblTitel"));
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setBold(true);
  label->setFont(font);
  return label;
}

/// The link takes its colour from the palette.
QLabel* MakeLink() {
  auto* link = new QLabel(QStringLiteral("<a href=\"hilfe\">Handbuch</a>"));
  link->setObjectName(QStringLiteral("lblWeb"));
  link->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  return link;
}

QPlainTextEdit* MakeSystemText(const startup::AppGlobals& globals) {
  auto* text = new QPlainTextEdit(SystemInformation(globals));
  text->setObjectName(QStringLiteral("txtSystem"));
  text->setAccessibleName(QStringLiteral("Angaben zum System"));
  text->setReadOnly(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setMinimumSize(460, text->fontMetrics().lineSpacing() * 9);
  return text;
}

QPushButton* MakeSystemButton(Interaction& interaction) {
  auto* button = new QPushButton(QStringLiteral("&Systeminfo ..."));
  button->setObjectName(QStringLiteral("cmdSysInfo"));
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, button, [&interaction] {
    interaction.Guarded([&interaction] {
      if (!interaction.Desktop().StartSystemInformation()) {
        interaction.Show("Auf diesem Rechner wurde kein Programm für Systeminformationen gefunden.",
                         MessageIcon::kInformation);
      }
    });
  });
  return button;
}

}  // namespace

QString SystemInformation(const startup::AppGlobals& globals) {
  const QList<QPair<QString, QString>> rows = {
      {QStringLiteral("Programm"), FromUtf8(globals.AppTitle)},
      {QStringLiteral("Ausgabe"), FromUtf8(globals.HostName + " (" + globals.EditionCode + ")")},
      {QStringLiteral("Version"), FromUtf8(startup::ProgramVersion())},
      {QStringLiteral("Build"), QSysInfo::buildAbi() + QStringLiteral(", ") + kCompiler},
      {QStringLiteral("Qt"), QString::fromLatin1(qVersion())},
      {QStringLiteral("SQLite"), FromUtf8(codedb::EngineVersion())},
      {QStringLiteral("System"), QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::kernelType() +
                                     QLatin1Char(' ') + QSysInfo::kernelVersion()},
      {QStringLiteral("Bildschirm"), ScreenText()},
      {QStringLiteral("Programmordner"), FromPath(globals.ProgramFolder)},
  };
  QStringList lines;
  for (const auto& [name, value] : rows) lines.append(name + QStringLiteral(": ") + value);
  return lines.join(QLatin1Char('\n'));
}

AboutBox::AboutBox(QWidget* parent, Interaction& interaction, const startup::AppGlobals& globals) : QDialog(parent) {
  setObjectName(QStringLiteral("frmInfo"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Info"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  buttons->addButton(MakeSystemButton(interaction), QDialogButtonBox::ActionRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

  auto* texts = new QVBoxLayout;
  texts->addWidget(MakeTitle(FromUtf8(globals.AppTitle)));
  texts->addWidget(new QLabel(QStringLiteral("Zeigt, durchsucht und dokumentiert VBA-Code.")));
  QLabel* link = MakeLink();
  connect(link, &QLabel::linkActivated, this, &AboutBox::ManualWanted);
  texts->addWidget(link);
  auto* head = new QHBoxLayout;
  head->addWidget(MakePicture());
  head->addLayout(texts, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(head);
  layout->addWidget(MakeSystemText(globals), 1);
  layout->addWidget(buttons);
  buttons->button(QDialogButtonBox::Ok)->setFocus();
}

}  // namespace quillmate::ui
