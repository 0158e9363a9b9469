#include "panel.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace quillmate::ui {

Panel::Panel(const char* name, const QString& title) : QDockWidget(title) {
  setObjectName(QString::fromLatin1(name));
  setFeatures(QDockWidget::DockWidgetClosable);
  setAllowedAreas(Qt::BottomDockWidgetArea);
}

void Panel::Fill(std::initializer_list<QWidget*> rows) {
  auto* inside = new QWidget;
  auto* layout = new QVBoxLayout(inside);
  layout->setContentsMargins(3, 3, 3, 3);
  for (QWidget* row : rows) layout->addWidget(row);
  setWidget(inside);
}

void Panel::AddListButtons(QLayout& bar, const char* copyName, const char* saveName) {
  copy_ = new QPushButton(QStringLiteral("&Kopieren"));
  copy_->setObjectName(QString::fromLatin1(copyName));
  save_ = new QPushButton(QStringLiteral("S&peichern ..."));
  save_->setObjectName(QString::fromLatin1(saveName));
  connect(copy_, &QPushButton::clicked, this, &Panel::CopyWanted);
  connect(save_, &QPushButton::clicked, this, &Panel::SaveWanted);
  bar.addWidget(copy_);
  bar.addWidget(save_);
}

void Panel::EnableListButtons(bool on) {
  copy_->setEnabled(on);
  save_->setEnabled(on);
}

bool Panel::TakeKey(QObject&, int) { return false; }

void Panel::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QDockWidget::keyPressEvent(event);
  hide();
  emit Left();
}

bool Panel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDockWidget::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Escape) {
    hide();
    emit Left();
    return true;
  }
  return TakeKey(*watched, key) || QDockWidget::eventFilter(watched, event);
}

}  // namespace quillmate::ui
