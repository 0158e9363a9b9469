#include "button_row.h"

#include <QHBoxLayout>
#include <utility>

namespace quillmate::ui {

QPushButton* MakeButton(const char* name, const char* caption) {
  auto* button = new QPushButton(QString::fromUtf8(caption));
  button->setObjectName(QString::fromUtf8(name));
  button->setAutoDefault(false);
  return button;
}

ButtonRow::ButtonRow() {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
}

QPushButton* ButtonRow::Add(const char* name, const char* caption, std::function<void()> run) {
  QPushButton* const button = MakeButton(name, caption);
  layout()->addWidget(button);
  QObject::connect(button, &QPushButton::clicked, this, std::move(run));
  return button;
}

}  // namespace quillmate::ui
