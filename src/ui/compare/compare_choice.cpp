#include "compare_choice.h"

#include <QCompleter>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr std::array kBits = {symbols::trivial::kLayout, symbols::trivial::kComment, symbols::trivial::kCase};
constexpr std::array kCaptions = {"&Layout: Leerzeichen, Leerzeilen, Umbrüche, Reihenfolge", "&Kommentare",
                                  "&Groß- und Kleinschreibung"};
constexpr std::array kNames = {"chkLayout", "chkKommentare", "chkSchreibung"};

}  // namespace

CompareChoice::CompareChoice(QWidget* parent, Platform& platform, std::vector<StateOffer> offers,
                             const QString& oldPath, const QString& newPath, const QString& startFolder)
    : QDialog(parent),
      platform_(platform),
      offers_(std::move(offers)),
      startFolder_(startFolder),
      problem_(new QLabel),
      ok_(new QPushButton(QStringLiteral("&Vergleichen"))) {
  setObjectName(QStringLiteral("frmVergleichWahl"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Zwei Stände vergleichen"));
  auto* layout = new QVBoxLayout(this);
  auto* what = new QLabel(QStringLiteral(
      "Ein Stand ist eine Office-Datei, eine Moduldatei, ein VB-Projekt, ein Ordner oder ein gespeichertes Projekt."));
  what->setWordWrap(true);
  layout->addWidget(what);
  layout->addWidget(MakeSide(0, QStringLiteral("&Alter Stand")));
  layout->addWidget(MakeSide(1, QStringLiteral("&Neuer Stand")));
  layout->addWidget(MakeIgnored());
  problem_->setObjectName(QStringLiteral("lblVergleichProblem"));
  problem_->setWordWrap(true);
  layout->addWidget(problem_);
  auto* buttons = new QDialogButtonBox;
  ok_->setObjectName(QStringLiteral("cmdVergleichen"));
  auto* swap = new QPushButton(QStringLiteral("&Tauschen"));
  swap->setObjectName(QStringLiteral("cmdTauschen"));
  swap->setAutoDefault(false);
  buttons->addButton(ok_, QDialogButtonBox::AcceptRole);
  buttons->addButton(swap, QDialogButtonBox::ActionRole);
  buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdAbbrechen"));
  layout->addStretch();
  layout->addWidget(buttons);
  ok_->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(swap, &QPushButton::clicked, this, [this] {
    const QString old = fields_[0]->currentText();
    fields_[0]->setEditText(fields_[1]->currentText());
    fields_[1]->setEditText(old);
  });
  SetPath(0, oldPath);
  SetPath(1, newPath);
  Judge();
  fields_[oldPath.isEmpty() ? 0 : 1]->setFocus();
  resize(std::min(fontMetrics().averageCharWidth() * 120, screen()->availableSize().width() * 9 / 10),
         sizeHint().height());
}

QWidget* CompareChoice::MakeSide(std::size_t side, const QString& caption) {
  auto* box = new QWidget;
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  auto* field = fields_[side] = new QComboBox;
  field->setObjectName(side == 0 ? QStringLiteral("cmbAlt") : QStringLiteral("cmbNeu"));
  field->setEditable(true);
  field->setInsertPolicy(QComboBox::NoInsert);
  field->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  field->setMinimumContentsLength(20);
  field->setCompleter(nullptr);
  field->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
  for (const StateOffer& offer : offers_) field->addItem(offer.name, offer.path);
  auto* label = new QLabel(caption + QLatin1Char(':'));
  label->setBuddy(field);
  grid->addWidget(label, 0, 0, 1, 3);
  grid->addWidget(field, 1, 0);
  grid->setColumnStretch(0, 1);
  connect(field, &QComboBox::editTextChanged, this, &CompareChoice::Judge);
  const auto add = [&](const char* name, const QString& text, int column, bool folder) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name) + (side == 0 ? QStringLiteral("Alt") : QStringLiteral("Neu")));
    button->setAccessibleName(field->accessibleName() + QStringLiteral(": ") + text);
    button->setAutoDefault(false);
    grid->addWidget(button, 1, column);
    connect(button, &QPushButton::clicked, this, [this, side, folder] { Browse(side, folder); });
  };
  add("cmdDatei", QStringLiteral("Datei ..."), 1, false);
  add("cmdOrdner", QStringLiteral("Ordner ..."), 2, true);
  return box;
}

QWidget* CompareChoice::MakeIgnored() {
  auto* box = new QGroupBox(QStringLiteral("Zählt nicht als Änderung"));
  auto* layout = new QVBoxLayout(box);
  for (std::size_t i = 0; i < kBits.size(); ++i) {
    ignored_[i] = new QCheckBox(QString::fromUtf8(kCaptions[i]));
    ignored_[i]->setObjectName(QString::fromLatin1(kNames[i]));
    layout->addWidget(ignored_[i]);
  }
  return box;
}

QString CompareChoice::PathOf(std::size_t side) const {
  const QString text = fields_[side]->currentText().trimmed();
  for (const StateOffer& offer : offers_) {
    if (offer.name == text) return offer.path;
  }
  return text;
}

void CompareChoice::SetPath(std::size_t side, const QString& path) {
  for (const StateOffer& offer : offers_) {
    if (offer.path != path || path.isEmpty()) continue;
    fields_[side]->setEditText(offer.name);
    // Of a path the end tells most, of a title its beginning.
    return fields_[side]->lineEdit()->home(false);
  }
  fields_[side]->setEditText(path);
}

void CompareChoice::Browse(std::size_t side, bool folder) {
  const QString title = side == 0 ? QStringLiteral("Alter Stand") : QStringLiteral("Neuer Stand");
  if (folder) {
    const QString path = platform_.ChooseFolder(title, startFolder_);
    if (!path.isEmpty()) SetPath(side, path);
    return;
  }
  const QStringList files = platform_.ChooseFiles(title, startFolder_, QStringLiteral("Alle Dateien (*)"));
  if (!files.isEmpty()) SetPath(side, files.front());
}

void CompareChoice::Judge() {
  if (fields_[1] == nullptr || ok_ == nullptr) return;
  QString problem;
  bool whole = true;
  for (std::size_t side = 0; side < 2; ++side) {
    const QString path = PathOf(side);
    whole = whole && !path.isEmpty();
    if (!path.isEmpty() && !QFileInfo::exists(path)) problem = QStringLiteral("Das gibt es nicht: ") + path;
  }
  if (whole && problem.isEmpty() && PathOf(0) == PathOf(1)) {
    problem = QStringLiteral("Das ist zweimal derselbe Stand.");
  }
  problem_->setText(problem);
  ok_->setEnabled(whole && problem.isEmpty());
}

std::filesystem::path CompareChoice::OldPath() const { return ToPath(PathOf(0)); }
std::filesystem::path CompareChoice::NewPath() const { return ToPath(PathOf(1)); }

symbols::CompareOptions CompareChoice::Options() const {
  symbols::CompareOptions options;
  for (std::size_t i = 0; i < kBits.size(); ++i) {
    if (ignored_[i]->isChecked()) options.ignore = static_cast<std::uint8_t>(options.ignore | kBits[i]);
  }
  return options;
}

}  // namespace quillmate::ui
