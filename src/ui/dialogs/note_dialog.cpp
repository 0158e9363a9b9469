#include "note_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "cut_label.h"

namespace quillmate::ui {
namespace {

constexpr int kLongestCode = 90;
constexpr QSize kSize(460, 260);

}  // namespace

NoteDialog::NoteDialog(QWidget* parent, const QString& place, const QString& code, const QString& text)
    : QDialog(parent), text_(new QPlainTextEdit(text)) {
  setObjectName(QStringLiteral("frmNotiz"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Notiz"));
  auto* layout = new QVBoxLayout(this);
  auto* heading = new QLabel(QStringLiteral("Notiz zu ") + place);
  heading->setTextFormat(Qt::PlainText);
  heading->setWordWrap(true);
  layout->addWidget(heading);
  auto* line = new CutLabel(code.left(kLongestCode));
  line->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  layout->addWidget(line);
  text_->setObjectName(QStringLiteral("txtNotiz"));
  text_->setAccessibleName(QStringLiteral("Text der Notiz"));
  text_->setTabChangesFocus(true);
  layout->addWidget(text_);
  auto* buttons = new QDialogButtonBox;
  auto* keep = buttons->addButton(QStringLiteral("&Übernehmen"), QDialogButtonBox::AcceptRole);
  keep->setObjectName(QStringLiteral("cmdOk"));
  auto* remove = buttons->addButton(QStringLiteral("&Löschen"), QDialogButtonBox::DestructiveRole);
  remove->setObjectName(QStringLiteral("cmdLöschen"));
  remove->setEnabled(!text.isEmpty());
  auto* cancel = buttons->addButton(QStringLiteral("&Abbrechen"), QDialogButtonBox::RejectRole);
  cancel->setObjectName(QStringLiteral("cmdAbbrechen"));
  layout->addWidget(buttons);
  keep->setDefault(true);
  keep->setToolTip(QStringLiteral("Strg+Eingabe"));
  // Enter is a new line of the text.
  for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
    connect(new QShortcut(Qt::CTRL | enter, this), &QShortcut::activated, keep, &QPushButton::click);
  }
  connect(keep, &QPushButton::clicked, this, [this] {
    emit Written(text_->toPlainText().trimmed());
    accept();
  });
  connect(remove, &QPushButton::clicked, this, [this] {
    emit Written({});
    accept();
  });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  resize(kSize);
  text_->moveCursor(QTextCursor::End);
  text_->setFocus();
}

}  // namespace quillmate::ui
