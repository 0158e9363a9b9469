#include "quick_open.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "icons.h"
#include "qt_text.h"
#include "symbol_icons.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

constexpr std::size_t kShown = 200;
constexpr std::size_t kRecent = 20;
constexpr QSize kSize(640, 420);

}  // namespace

/// What fits, a row each: name, kind, place.
class QuickOpen::Names : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  void Show(std::shared_ptr<const project::Understanding> known, std::vector<symbols::SymbolId> symbols) {
    beginResetModel();
    known_ = std::move(known);
    symbols_ = std::move(symbols);
    endResetModel();
  }
  symbols::SymbolId At(int row) const { return symbols_[static_cast<std::size_t>(row)]; }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(symbols_.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid()) return {};
    const symbols::ReferenceIndex& symbols = known_->Index();
    const symbols::SymbolId symbol = At(index.row());
    if (role == Qt::DecorationRole && index.column() == 0) return icons_.Of(symbols, symbol);
    if (role != Qt::DisplayRole) return {};
    if (index.column() == 0) return SymbolName(symbols, symbol);
    return index.column() == 1 ? KindText(symbols, symbol) : Place(symbols, symbol);
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    static const QStringList kHeaders = {QStringLiteral("Name"), QStringLiteral("Art"), QStringLiteral("Stelle")};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? kHeaders.value(section) : QVariant();
  }

 private:
  static QString Place(const symbols::ReferenceIndex& index, symbols::SymbolId symbol) {
    const symbols::Symbol& of = index.SymbolAt(symbol);
    if (symbols::IsModule(of.kind)) return FileText(index, of.module);
    const QString module = ModuleText(index, of.module);
    return of.parent == symbols::kNone ? module : module + QLatin1Char('.') + SymbolName(index, of.parent);
  }

  std::shared_ptr<const project::Understanding> known_;
  std::vector<symbols::SymbolId> symbols_;
  mutable SymbolIcons icons_;
};

QuickOpen::QuickOpen(QWidget* parent)
    : QDialog(parent), text_(new QLineEdit), list_(new QTreeView), message_(new QLabel), names_(new Names(this)) {
  setObjectName(QStringLiteral("frmGeheZu"));
  setWindowTitle(QStringLiteral("Gehe zu Name"));
  resize(kSize.boundedTo(screen()->availableSize() * 9 / 10));
  text_->setObjectName(QStringLiteral("txtGeheZu"));
  text_->setAccessibleName(QStringLiteral("Gesuchter Name"));
  text_->setPlaceholderText(QStringLiteral("Teil des Namens, Anfangsbuchstaben oder Modul.Name"));
  text_->setClearButtonEnabled(true);
  text_->installEventFilter(this);
  list_->setObjectName(QStringLiteral("lstGeheZu"));
  list_->setAccessibleName(QStringLiteral("Passende Namen"));
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setModel(names_);
  list_->header()->setStretchLastSection(true);
  const int character = list_->fontMetrics().averageCharWidth();
  list_->header()->resizeSection(0, 40 * character);
  list_->header()->resizeSection(1, 20 * character);
  list_->installEventFilter(this);
  message_->setObjectName(QStringLiteral("lblGeheZu"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(list_, 1);
  layout->addWidget(message_);
  connect(text_, &QLineEdit::textChanged, this, &QuickOpen::Search);
  connect(list_, &QTreeView::clicked, this, &QuickOpen::Choose);
}

void QuickOpen::Open(std::shared_ptr<const project::Understanding> known) {
  if (matcher_ == nullptr || matcher_->Known() != known) {
    recent_.clear();
    matcher_ = std::make_unique<NameMatcher>(std::move(known));
  }
  text_->clear();
  Search();
  show();
  raise();
  activateWindow();
  text_->setFocus();
}

void QuickOpen::Forget() {
  hide();
  names_->Show(nullptr, {});
  matcher_.reset();
  recent_.clear();
}

void QuickOpen::Search() {
  if (matcher_ == nullptr) return;
  const std::string typed = ToUtf8(text_->text().trimmed());
  names_->Show(matcher_->Known(), typed.empty() ? recent_ : matcher_->Find(typed, kShown));
  const int rows = names_->rowCount();
  list_->setCurrentIndex(names_->index(0, 0));
  message_->setText(typed.empty() ? (rows == 0 ? QStringLiteral("Hier steht, was Sie zuletzt gewählt haben.")
                                               : QStringLiteral("Zuletzt gewählt"))
                    : rows == 0   ? QStringLiteral("Kein Name passt.")
                    : static_cast<std::size_t>(rows) == kShown ? QStringLiteral("Die %1 besten Treffer").arg(rows)
                                                               : QStringLiteral("Treffer: %1").arg(rows));
}

void QuickOpen::Choose(const QModelIndex& index) {
  if (!index.isValid()) return;
  const symbols::SymbolId symbol = names_->At(index.row());
  std::erase(recent_, symbol);
  recent_.insert(recent_.begin(), symbol);
  if (recent_.size() > kRecent) recent_.pop_back();
  hide();
  emit Chosen(symbol);
}

bool QuickOpen::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose(list_->currentIndex());
      return true;
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp: {
      if (watched != text_) return false;
      const int step = key->key() == Qt::Key_Down       ? 1
                       : key->key() == Qt::Key_Up       ? -1
                       : key->key() == Qt::Key_PageDown ? 10
                                                        : -10;
      const int row = std::clamp(list_->currentIndex().row() + step, 0, std::max(0, names_->rowCount() - 1));
      list_->setCurrentIndex(names_->index(row, 0));
      return true;
    }
    default:
      return QDialog::eventFilter(watched, event);
  }
}

}  // namespace quillmate::ui
