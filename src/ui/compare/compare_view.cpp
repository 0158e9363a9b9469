#include "compare_view.h"

#include <QGridLayout>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace quillmate::ui {
namespace {

using symbols::Side;

/// Rows that stay above a place that is shown at the top.
constexpr std::size_t kRowsAbove = 2;

/// A path that is too long loses its beginning, not the width of the window.
class TitleLabel : public QLabel {
 public:
  void SetWhole(const QString& text) {
    whole_ = text;
    setToolTip(text);
    setAccessibleName(text);
    Fit();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    Fit();
  }
  QSize minimumSizeHint() const override { return {1, QLabel::minimumSizeHint().height()}; }

 private:
  void Fit() { setText(fontMetrics().elidedText(whole_, Qt::ElideMiddle, width())); }

  QString whole_;
};

}  // namespace

CompareView::CompareView(QWidget* parent) : QWidget(parent), strip_(new CompareStrip) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(4);
  const std::array names = {QStringLiteral("rtbAlt"), QStringLiteral("rtbNeu")};
  const std::array spoken = {QStringLiteral("Alter Stand"), QStringLiteral("Neuer Stand")};
  for (const Side side : {Side::kOld, Side::kNew}) {
    const auto at = static_cast<std::size_t>(side);
    sides_[at] = new CompareSide(side);
    sides_[at]->setObjectName(names[at]);
    sides_[at]->setAccessibleName(spoken[at]);
    titles_[at] = new TitleLabel;
    titles_[at]->setTextFormat(Qt::PlainText);
    titles_[at]->setTextInteractionFlags(Qt::NoTextInteraction);
    titles_[at]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    grid->addWidget(titles_[at], 0, static_cast<int>(at));
    grid->addWidget(sides_[at], 1, static_cast<int>(at));
    grid->setColumnStretch(static_cast<int>(at), 1);
  }
  grid->addWidget(strip_, 1, 2);
  Old().setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  New().setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  Connect(Side::kOld);
  Connect(Side::kNew);
  connect(strip_, &CompareStrip::RowChosen, this, [this](std::size_t row) {
    const auto [first, count] = New().RowsOnScreen();
    New().verticalScrollBar()->setValue(static_cast<int>(row) - count / 2);
  });
}

void CompareView::Connect(Side side) {
  CompareSide& from = *sides_[static_cast<std::size_t>(side)];
  CompareSide& to = *sides_[1 - static_cast<std::size_t>(side)];
  connect(from.verticalScrollBar(), &QScrollBar::valueChanged, to.verticalScrollBar(), &QScrollBar::setValue);
  connect(from.horizontalScrollBar(), &QScrollBar::valueChanged, to.horizontalScrollBar(), &QScrollBar::setValue);
  connect(from.horizontalScrollBar(), &QScrollBar::rangeChanged, this, &CompareView::MatchScrollBars);
  connect(&from, &CompareSide::cursorPositionChanged, this, [this, side] { TakeCaret(side); });
  if (side == Side::kNew) {
    connect(from.verticalScrollBar(), &QScrollBar::valueChanged, this, &CompareView::ShowSeen);
    connect(from.verticalScrollBar(), &QScrollBar::rangeChanged, this, &CompareView::ShowSeen);
  }
}

/// Both have a bar or none: with one alone the sides would be of different heights.
void CompareView::MatchScrollBars() {
  const bool needed = Old().horizontalScrollBar()->maximum() > 0 || New().horizontalScrollBar()->maximum() > 0;
  for (CompareSide* side : sides_) {
    side->setHorizontalScrollBarPolicy(needed ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  }
}

void CompareView::ShowSeen() {
  const auto [first, count] = New().RowsOnScreen();
  strip_->SetSeen(first, count);
}

void CompareView::TakeCaret(Side side) {
  focus_ = side;
  if (following_) return;
  const auto change = CurrentChange();
  const symbols::ChangeStretch stretch = change ? rows_->Changes()[*change] : symbols::ChangeStretch{};
  for (CompareSide* each : sides_) each->SetCurrent(stretch.first, change ? stretch.count : 0);
  emit RowChanged();
}

void CompareView::SetCodeFont(const QFont& font, double tabStop) {
  for (CompareSide* side : sides_) side->SetCodeFont(font, tabStop);
}

void CompareView::SetTitles(const QString& oldTitle, const QString& newTitle) {
  static_cast<TitleLabel*>(titles_[0])->SetWhole(oldTitle);
  static_cast<TitleLabel*>(titles_[1])->SetWhole(newTitle);
}

void CompareView::Show(std::shared_ptr<const project::ComparedProjects> compared, symbols::CompareRows rows) {
  auto next = std::make_unique<symbols::CompareRows>(std::move(rows));
  following_ = true;
  if (compared == nullptr) {
    for (CompareSide* side : sides_) side->Show({});
  } else {
    Old().Show({next.get(), &compared->oldSide.state.index});
    New().Show({next.get(), &compared->newSide.state.index});
  }
  rows_ = std::move(next);
  compared_ = std::move(compared);
  following_ = false;
  strip_->SetChanges(rows_->Changes(), rows_->Rows().size());
  MatchScrollBars();
  ShowSeen();
}

void CompareView::Clear() { Show(nullptr, {}); }

std::size_t CompareView::CurrentRow() const { return sides_[static_cast<std::size_t>(focus_)]->RowAtCaret(); }

void CompareView::GoToRow(std::size_t row, bool atTop) {
  if (row >= rows_->Rows().size()) return;
  const auto [first, count] = New().RowsOnScreen();
  const Side focus = focus_;
  following_ = true;
  for (CompareSide* side : sides_) side->PutCaret(row);
  following_ = false;
  const auto at = static_cast<int>(row);
  if (atTop) {
    New().verticalScrollBar()->setValue(at - static_cast<int>(std::min(row, kRowsAbove)));
  } else if (at < first + 1 || at >= first + count - 1) {
    New().verticalScrollBar()->setValue(at - count / 3);
  } else {
    New().verticalScrollBar()->setValue(first);
  }
  Old().verticalScrollBar()->setValue(New().verticalScrollBar()->value());
  TakeCaret(focus);
}

std::optional<std::size_t> CompareView::CurrentChange() const {
  const auto& changes = rows_->Changes();
  const auto row = static_cast<std::uint32_t>(CurrentRow());
  const auto behind = std::ranges::upper_bound(changes, row, {}, &symbols::ChangeStretch::first);
  if (behind == changes.begin()) return std::nullopt;
  const auto at = std::prev(behind);
  if (row >= at->first + at->count) return std::nullopt;
  return static_cast<std::size_t>(at - changes.begin());
}

bool CompareView::StepChange(int direction, bool fromEnd) {
  const auto& changes = rows_->Changes();
  if (changes.empty()) return false;
  auto target = direction > 0 ? changes.begin() : std::prev(changes.end());
  if (!fromEnd) {
    const auto row = static_cast<std::uint32_t>(CurrentRow());
    target = direction > 0 ? std::ranges::upper_bound(changes, row, {}, &symbols::ChangeStretch::first)
                           : std::ranges::lower_bound(changes, row, {}, &symbols::ChangeStretch::first);
    if (direction > 0 ? target == changes.end() : target == changes.begin()) return false;
    if (direction < 0) --target;
  }
  GoToRow(target->first);
  return true;
}

}  // namespace quillmate::ui
