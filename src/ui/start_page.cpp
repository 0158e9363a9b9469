#include "start_page.h"

#include <QVBoxLayout>

#include "qt_text.h"
#include "recent_projects.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

constexpr int kMargin = 32;
constexpr int kWidest = 560;

QString Link(const QString& item, const QString& text, const QString& title = {}) {
  return QStringLiteral("<a href=\"%1\" title=\"%3\">%2</a>").arg(item, text.toHtmlEscaped(), title.toHtmlEscaped());
}

QString Steps() {
  return QStringLiteral(
             "<ol><li>Quellen hinzufügen: %1 oder %2, oder hierher ziehen.</li>"
             "<li>Links ankreuzen, was gelesen werden soll.</li><li>%3.</li></ol>"
             "<p>Ein früher gespeichertes Projekt: %4.</p>")
      .arg(Link(QStringLiteral("mnuDatei_Dateien"), QStringLiteral("Dateien")),
           Link(QStringLiteral("mnuDatei_Ordner"), QStringLiteral("Ordner")),
           Link(QStringLiteral("mnuBearbeiten_Code"), QStringLiteral("Code einlesen")),
           Link(QStringLiteral("mnuÖffnen"), QStringLiteral("Öffnen")));
}

QLabel* AddLabel(QVBoxLayout& layout, const char* name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(QString::fromLatin1(name));
  label->setWordWrap(true);
  label->setMaximumWidth(kWidest);
  label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  layout.addWidget(label);
  return label;
}

}  // namespace

StartPage::StartPage(Shell& shell) : shell_(shell) {
  setObjectName(QStringLiteral("fraStart"));
  setContextMenuPolicy(Qt::CustomContextMenu);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  AddLabel(*layout, "lblStart", QStringLiteral("<h2>Makrocode lesen und dokumentieren</h2>"));
  QLabel* steps = AddLabel(*layout, "lblSchritte", Steps());
  recentTitle_ = AddLabel(*layout, "lblZuletzt", QStringLiteral("<h3>Zuletzt geöffnet</h3>"));
  recent_ = AddLabel(*layout, "lblProjekte", {});
  QLabel* drop =
      AddLabel(*layout, "lblAblage",
               QStringLiteral("Office-Dateien, Module, Ordner und gespeicherte Projekte\nkönnen Sie hier ablegen."));
  drop->setAlignment(Qt::AlignCenter);
  drop->setStyleSheet(QStringLiteral("border: 2px dashed palette(mid); border-radius: 8px; padding: 24px;"));
  layout->addStretch();
  for (QLabel* label : {steps, recent_}) {
    connect(label, &QLabel::linkActivated, this, &StartPage::Follow);
  }
  ShowRecent({});
}

void StartPage::ShowRecent(const std::vector<std::string>& folders) {
  QString list;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    list += Link(QStringLiteral("mnuOpenIndex%1").arg(i), FromUtf8(ProjectNameOf(folders[i])), FromUtf8(folders[i])) +
            QStringLiteral("<br>");
  }
  recent_->setText(list);
  recentTitle_->setVisible(!folders.empty());
  recent_->setVisible(!folders.empty());
}

void StartPage::Follow(const QString& link) {
  QAction* item = shell_.commands->Item(ToUtf8(link));
  if (item != nullptr) item->trigger();
}

}  // namespace quillmate::ui
