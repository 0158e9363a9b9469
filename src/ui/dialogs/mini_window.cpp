#include "mini_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QToolButton>

#include "icons.h"

namespace quillmate::ui {
namespace {

QToolButton* MakeButton(const QString& name, const QString& icon, const QString& tooltip) {
  auto* button = new QToolButton;
  button->setObjectName(name);
  button->setIcon(LoadIcon(icon));
  button->setIconSize(QSize(32, 32));
  button->setToolTip(tooltip);
  return button;
}

}  // namespace

MiniWindow::MiniWindow() : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint) {
  setObjectName(QStringLiteral("frmMin"));
  setAttribute(Qt::WA_ShowWithoutActivating);
  auto* html =
      MakeButton(QStringLiteral("cmdHtml"), QStringLiteral("ht_clip"), QStringLiteral("Zwischenablage nach HTML"));
  auto* close = MakeButton(QStringLiteral("cmdClose"), QStringLiteral("close"), QStringLiteral("Zum Hauptfenster"));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(html);
  layout->addWidget(close);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  // The title bar counts only for a place given before the desktop knows the window, and only while its size stays.
  layout->activate();
  move(0, 0);
  connect(html, &QToolButton::clicked, this, &MiniWindow::HtmlWanted);
  connect(close, &QToolButton::clicked, this, [this] {
    returning_ = true;
    this->close();
  });
}

void MiniWindow::showEvent(QShowEvent* event) {
  returning_ = false;
  QWidget::showEvent(event);
}

void MiniWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  emit(returning_ ? Returned() : Closed());
}

}  // namespace quillmate::ui
