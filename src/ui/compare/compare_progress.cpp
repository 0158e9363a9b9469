#include "compare_progress.h"

#include <QVBoxLayout>

namespace quillmate::ui {
namespace {

constexpr int kTellEvery = 150;

}  // namespace

CompareProgress::CompareProgress() : status_(new QLabel), bar_(new QProgressBar) {
  auto* layout = new QVBoxLayout(this);
  status_->setObjectName(QStringLiteral("lblVergleichStand"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  status_->setAlignment(Qt::AlignCenter);
  status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bar_->setRange(0, 0);
  bar_->setAccessibleName(QStringLiteral("Der Vergleich läuft"));
  bar_->setMaximumWidth(fontMetrics().averageCharWidth() * 60);
  layout->addStretch();
  layout->addWidget(status_);
  layout->addWidget(bar_, 0, Qt::AlignHCenter);
  layout->addStretch();
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, &CompareProgress::Tell);
}

void CompareProgress::Follow(const CompareJob& job) {
  job_ = &job;
  bar_->show();
  Tell();
  clock_.start();
}

void CompareProgress::ShowFailure(const QString& reason) {
  bar_->hide();
  status_->setText(reason.trimmed());
}

}  // namespace quillmate::ui
