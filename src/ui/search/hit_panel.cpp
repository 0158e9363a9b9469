#include "hit_panel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <utility>

#include "cut_label.h"
#include "pattern_search.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Widths of the columns in characters; the text takes what is left.
constexpr int kColumnWidths[] = {22, 28, 8};

std::vector<QString> ModuleNames(const navigation::ProjectTree& tree, int views) {
  std::vector<QString> names(static_cast<std::size_t>(views));
  for (const navigation::TreeNode& node : tree.nodes) {
    if (node.parent >= 0) break;
    const int view = codedb::ViewOf(node.module).value;
    if (view >= 0 && view < views) names[static_cast<std::size_t>(view)] = FromCode(node.text);
  }
  return names;
}

QString CountText(int hits) {
  if (hits == 0) return QStringLiteral("Keine Treffer");
  return hits == 1 ? QStringLiteral("1 Treffer") : QLocale().toString(hits) + QStringLiteral(" Treffer");
}

}  // namespace

HitPanel::HitPanel(Interaction& interaction, project::Session& session, const SearchSwitches& switches)
    : Panel("fraTreffer", QStringLiteral("Alle Treffer")),
      interaction_(interaction),
      session_(session),
      switches_(switches) {
  BuildList();
  Fill({BuildField(), BuildSwitches(), list_});
  Watch(*text_);
  Watch(*list_);
}

QWidget* HitPanel::BuildField() {
  text_ = new QLineEdit;
  text_->setObjectName(QStringLiteral("txtTreffer"));
  text_->setPlaceholderText(QStringLiteral("Suchtext"));
  text_->setClearButtonEnabled(true);
  auto* search = new QPushButton(QStringLiteral("S&uchen"));
  search->setObjectName(QStringLiteral("cmdTreffer"));
  message_ = new CutLabel;
  message_->setObjectName(QStringLiteral("lblTreffer"));
  const auto run = [this] { interaction_.Guarded([this] { Search(); }); };
  connect(text_, &QLineEdit::returnPressed, this, run);
  connect(search, &QPushButton::clicked, this, run);

  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text_, 2);
  layout->addWidget(search);
  layout->addWidget(message_, 3);
  AddListButtons(*layout, "cmdTrefferKopieren", "cmdTrefferSpeichern");
  EnableListButtons(false);
  return row;
}

QWidget* HitPanel::BuildSwitches() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto add = [layout](const char* name, const char* caption) {
    auto* box = new QCheckBox(QString::fromUtf8(caption));
    box->setObjectName(QString::fromLatin1(name));
    layout->addWidget(box);
    return box;
  };
  wholeWord_ = add("chkGanzesWort", "Ganzes &Wort");
  matchCase_ = add("chkGrossKlein", "&Groß/klein");
  matchCase_->setToolTip(QStringLiteral("Groß- und Kleinschreibung unterscheiden"));
  isPattern_ = add("chkRegulaer", "Regulärer Ausdru&ck");
  within_ = new QComboBox;
  within_->setObjectName(QStringLiteral("cboTrefferIn"));
  within_->setAccessibleName(QStringLiteral("Wo gesucht wird"));
  within_->addItems({QStringLiteral("Überall"), QStringLiteral("Ohne Kommentare"),
                     QStringLiteral("Nur in Zeichenketten"), QStringLiteral("Nur in Kommentaren")});
  layout->addWidget(within_);
  layout->addStretch();
  connect(wholeWord_, &QCheckBox::clicked, this, &HitPanel::WholeWordWanted);
  return row;
}

void HitPanel::BuildList() {
  list_ = new QTreeView;
  list_->setObjectName(QStringLiteral("lstTreffer"));
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  hits_ = new HitList(list_);
  list_->setModel(hits_);
  list_->setItemDelegateForColumn(HitList::kText, new HitDelegate(list_));
  list_->header()->setSortIndicator(-1, Qt::AscendingOrder);
  list_->header()->setSortIndicatorClearable(true);
  list_->setSortingEnabled(true);
  const int character = list_->fontMetrics().averageCharWidth();
  for (int column = 0; column < HitList::kText; ++column) {
    list_->header()->resizeSection(column, kColumnWidths[column] * character);
  }
  connect(list_, &QTreeView::clicked, this, [this](const QModelIndex& index) { ShowHit(index); });
}

void HitPanel::Open(const QString& text) {
  show();
  if (!text.trimmed().isEmpty()) text_->setText(text);
  text_->selectAll();
  text_->setFocus();
  if (!text_->text().trimmed().isEmpty()) Search();
}

QString HitPanel::Find(std::vector<navigation::ModuleHits>& hits) {
  const QString typed = text_->text();
  navigation::HitRequest request = {ToCode(typed), switches_.wholeWord, matchCase_->isChecked(),
                                    static_cast<navigation::MatchWithin>(within_->currentIndex())};
  if (isPattern_->isChecked()) {
    const Pattern pattern = MakePattern(typed, request.wholeWord, request.matchCase);
    if (!pattern.error.isEmpty()) return pattern.error;
    PatternHits found = AllPatternHits(session_.Index(), session_.Views(), pattern, request.within);
    hits = std::move(found.modules);
    return found.error;
  }
  if (FromCode(request.text) == typed) hits = navigation::AllHits(session_.Index(), session_.Views(), request);
  return {};
}

void HitPanel::Search() {
  if (!session_.IsLoaded() || text_->text().isEmpty()) return;
  const Working working(interaction_);
  std::vector<navigation::ModuleHits> found;
  const QString error = Find(found);
  navigation::CodeViews& views = session_.Views();
  list_->header()->setSortIndicator(-1, Qt::AscendingOrder);
  hits_->SetHits(std::move(found), ModuleNames(*session_.Tree(), views.Count()), &views);
  const int rows = hits_->rowCount();
  message_->setText(error.isEmpty() ? CountText(rows) : error);
  EnableListButtons(rows > 0);
  if (rows == 0) {
    text_->setFocus();
    return;
  }
  list_->setCurrentIndex(hits_->index(0, 0));
  list_->setFocus();
}

void HitPanel::ShowHit(const QModelIndex& index) {
  if (!index.isValid()) return;
  interaction_.Guarded([this, row = index.row()] {
    const HitList::Place place = hits_->At(row);
    session_.JumpTo(place.view, place.hit.match);
  });
}

void HitPanel::Clear() {
  hits_->SetHits({}, {}, nullptr);
  EnableListButtons(false);
  message_->clear();
  hide();
}

bool HitPanel::TakeKey(QObject& control, int key) {
  if (&control == list_ && IsEnter(key)) {
    ShowHit(list_->currentIndex());
  } else if (&control == text_ && key == Qt::Key_Down && hits_->rowCount() > 0) {
    list_->setFocus();
  } else {
    return false;
  }
  return true;
}

}  // namespace quillmate::ui
