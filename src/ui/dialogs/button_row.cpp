#include "button_row.h"

#include <QHBoxLayout>
#include <utility>

namespace quillmate::ui {

ButtonRow::ButtonRow() {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
}

QPushButton* ButtonRow::Add(const char* name, const char* caption, std::function<void()> run) {
  auto* button = new QPushButton(QString::fromUtf8(caption));
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  layout()->addWidget(button);
  QObject::connect(button, &QPushButton::clicked, this, std::move(run));
  return button;
}

}  // namespace quillmate::ui
