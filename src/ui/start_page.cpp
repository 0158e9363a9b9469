#include "start_page.h"

#include <QFocusEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include <quillmate/project/saved_projects.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kMargin = 32;
constexpr int kWidest = 560;
constexpr int kDropMargin = 24;
constexpr int kDropCorner = 8;

/// The key Tab leads to a link at once, not to the text first.
class LinkLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLabel::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
      focusNextPrevChild(reason == Qt::TabFocusReason);
    }
  }
};

/// A place with a dashed frame around it.
class DropField : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Disabled, QPalette::WindowText), 2, Qt::DashLine));
    painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), kDropCorner, kDropCorner);
  }
};

QString Link(CommandId command, const QString& text, const QString& title = {}) {
  const QString item = FromUtf8(Commands()[static_cast<std::size_t>(command)].name);
  return QStringLiteral("<a href=\"%1\" title=\"%3\">%2</a>").arg(item, text.toHtmlEscaped(), title.toHtmlEscaped());
}

#ifdef _WIN32
constexpr bool kHostsRunHere = true;
#else
constexpr bool kHostsRunHere = false;
#endif

/// The program's first source where it can run.
QString OpenInHost(const QString& host) {
  return QStringLiteral("<li>In %1 öffnen, was gelesen werden soll, und %2 (F5);<br>oder ")
      .arg(host.toHtmlEscaped(), Link(CommandId::kRefreshProjects, QStringLiteral("aktualisieren")));
}

QString Steps(const QString& host) {
  return QStringLiteral(
             "<ol>%1Quellen hinzufügen: %2 oder %3, oder hierher ziehen.</li>"
             "<li>Links ankreuzen, was gelesen werden soll; ein einzelnes Dokument wird sofort "
             "gelesen.</li><li>%4.</li></ol>"
             "<p>Ein früher gespeichertes Projekt: %5.<br>Nur einmal ansehen: das %6.</p>")
      .arg(kHostsRunHere ? OpenInHost(host) : QStringLiteral("<li>"))
      .arg(Link(CommandId::kAddFiles, QStringLiteral("Dateien")), Link(CommandId::kAddFolder, QStringLiteral("Ordner")),
           Link(CommandId::kReadCode, QStringLiteral("Code einlesen")),
           Link(CommandId::kOpenSavedProject, QStringLiteral("Öffnen")),
           Link(CommandId::kReadSample, QStringLiteral("mitgelieferte Beispiel")));
}

QLabel* Add(QVBoxLayout& layout, const char* name, QLabel* label) {
  label->setObjectName(QString::fromLatin1(name));
  label->setWordWrap(true);
  label->setMaximumWidth(kWidest);
  layout.addWidget(label);
  return label;
}

QLabel* AddLabel(QVBoxLayout& layout, const char* name, const QString& text) {
  return Add(layout, name, new QLabel(text));
}

QLabel* AddLinks(QVBoxLayout& layout, const char* name, const QString& text) {
  QLabel* label = Add(layout, name, new LinkLabel(text));
  label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  return label;
}

}  // namespace

StartPage::StartPage(const QString& host) {
  setObjectName(QStringLiteral("fraStart"));
  setContextMenuPolicy(Qt::CustomContextMenu);
  // On a small screen, or with a large font, what does not fit is scrolled to.
  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->viewport()->setAutoFillBackground(false);
  auto* content = new QWidget;
  scroll->setWidget(content);
  content->setAutoFillBackground(false);
  auto* page = new QVBoxLayout(this);
  page->setContentsMargins(0, 0, 0, 0);
  page->addWidget(scroll);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  AddLabel(*layout, "lblStart", QStringLiteral("<h2>Makrocode lesen und dokumentieren</h2>"));
  steps_ = AddLinks(*layout, "lblSchritte", Steps(host));
  recentTitle_ = AddLabel(*layout, "lblZuletzt", QStringLiteral("<h3>Zuletzt geöffnet</h3>"));
  recent_ = AddLinks(*layout, "lblProjekte", {});
  QLabel* drop = Add(*layout, "lblAblage",
                     new DropField(QStringLiteral(
                         "Office-Dateien, Module, Ordner und gespeicherte Projekte\nkönnen Sie hier ablegen.")));
  drop->setAlignment(Qt::AlignCenter);
  drop->setMargin(kDropMargin);
  layout->addStretch();
  for (QLabel* label : {steps_, recent_}) {
    connect(label, &QLabel::linkActivated, this, &StartPage::Follow);
  }
  ShowRecent({});
}

void StartPage::ShowRecent(const std::vector<std::string>& folders) {
  QString list;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    // A project that was opened again is in the stored list twice.
    if (std::find(folders.begin(), folders.begin() + static_cast<std::ptrdiff_t>(i), folders[i]) !=
        folders.begin() + static_cast<std::ptrdiff_t>(i)) {
      continue;
    }
    const QString path = FromUtf8(folders[i]);
    list += Link(OpenRecentCommand(i), FromUtf8(project::ProjectNameOf(folders[i])), path) +
            QStringLiteral(" <small>%1</small><br>").arg(path.toHtmlEscaped());
  }
  recent_->setText(list);
  recentTitle_->setVisible(!folders.empty());
  recent_->setVisible(!folders.empty());
}

void StartPage::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  // Links keep the colour of the time when their text was set.
  for (QLabel* label : {steps_, recent_}) {
    const QString text = label->text();
    label->clear();
    label->setText(text);
  }
}

void StartPage::Follow(const QString& link) {
  const std::string name = ToUtf8(link);
  for (const Command& command : Commands()) {
    if (name == command.name) emit CommandWanted(command.id);
  }
}

}  // namespace quillmate::ui
