#include "status_panels.h"

#include <QEvent>
#include <iterator>

#include "cut_label.h"

namespace quillmate::ui {
namespace {

struct Panel {
  const char* key;
  const char* text;
  const char* tooltip;
  int stretch;
};

constexpr Panel kPanels[] = {
    {"Modul", "Modul:", "Modul:", 2},
    {"Routine", "Routine:", "Routine:", 3},
    {"Back", "<<", "Eine Routine Zurück (F4)", 0},
    {"Next", ">>", "Eine Routine Weiter (Strg+F4)", 0},
    {"Vorgang", "Aktueller Vorgang", "Aktueller Vorgang", 4},
};

bool IsButton(int panel) { return panel == StatusPanels::kBack || panel == StatusPanels::kNext; }

QToolButton* MakeButton(const Panel& panel) {
  auto* button = new QToolButton;
  button->setText(QString::fromUtf8(panel.text));
  button->setAutoRaise(true);
  button->setEnabled(false);
  return button;
}

QLabel* MakeLabel(const Panel& panel) {
  auto* label = new CutLabel(QString::fromUtf8(panel.text));
  label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
  label->setContentsMargins(3, 0, 3, 0);
  return label;
}

}  // namespace

StatusPanels::StatusPanels(QWidget* parent) : QStatusBar(parent) {
  setObjectName(QStringLiteral("staBar"));
  std::size_t next = 0;
  for (int number = 1; number <= static_cast<int>(std::size(kPanels)); ++number) {
    const Panel& panel = kPanels[number - 1];
    QWidget* widget = nullptr;
    if (IsButton(number)) {
      QToolButton* arrow = MakeButton(panel);
      connect(arrow, &QToolButton::clicked, this,
              number == kBack ? &StatusPanels::BackClicked : &StatusPanels::NextClicked);
      widget = arrows_[static_cast<std::size_t>(number - kBack)] = arrow;
    } else {
      widget = labels_[next++] = MakeLabel(panel);
    }
    widget->setObjectName(QString::fromUtf8(panel.key));
    widget->setToolTip(QString::fromUtf8(panel.tooltip));
    addWidget(widget, panel.stretch);
  }
  Label(kRoutine)->installEventFilter(this);
}

bool StatusPanels::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonDblClick && watched == Label(kRoutine)) emit RoutineActivated();
  return QStatusBar::eventFilter(watched, event);
}

void StatusPanels::SetEnabled(int panel, bool enabled) {
  arrows_[static_cast<std::size_t>(panel - kBack)]->setEnabled(enabled);
}

QLabel* StatusPanels::Label(int panel) const {
  return labels_[static_cast<std::size_t>(panel == kProgress ? 2 : panel - 1)];
}

void StatusPanels::SetText(int panel, const QString& text) { Label(panel)->setText(text); }

void StatusPanels::ClearTexts() {
  for (QLabel* label : labels_) label->clear();
}

void StatusPanels::ShowProgress(const QString& text, bool atOnce) {
  SetText(kProgress, text);
  if (atOnce && isVisible()) Label(kProgress)->repaint();
}

}  // namespace quillmate::ui
