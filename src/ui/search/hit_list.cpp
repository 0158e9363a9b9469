#include "hit_list.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Nobody reads on in a list; a line of code may be of any length.
constexpr std::size_t kShownCharacters = 300;

constexpr const char* kHeaders[] = {"Modul", "Routine", "Zeile", "Text"};

}  // namespace

void HitList::SetHits(std::vector<navigation::ModuleHits> modules, std::vector<QString> names,
                      navigation::CodeViews* views) {
  beginResetModel();
  modules_ = std::move(modules);
  names_ = std::move(names);
  views_ = views;
  firstRows_.assign(1, 0);
  for (const navigation::ModuleHits& module : modules_) {
    const std::size_t rows = static_cast<std::size_t>(firstRows_.back()) + module.hits.size();
    firstRows_.push_back(static_cast<int>(std::min<std::size_t>(rows, std::numeric_limits<int>::max())));
  }
  endResetModel();
}

std::size_t HitList::Module(int row) const {
  const auto next = std::upper_bound(firstRows_.begin(), firstRows_.end(), row);
  return static_cast<std::size_t>(next - firstRows_.begin()) - 1;
}

const navigation::ModuleHits& HitList::ModuleOf(int row) const { return modules_[Module(row)]; }

const navigation::Hit& HitList::HitOf(int row) const {
  const std::size_t module = Module(row);
  return modules_[module].hits[static_cast<std::size_t>(row - firstRows_[module])];
}

HitList::Place HitList::At(int row) const { return {ModuleOf(row).view, HitOf(row)}; }

int HitList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : firstRows_.back(); }

int HitList::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QString HitList::LineOf(int row) const {
  try {
    const auto line = navigation::LineAround(views_->View(ModuleOf(row).view), HitOf(row).match, kShownCharacters);
    const QString cut(QChar(0x2026));
    return (line.cutBefore ? cut : QString()) + FromCode(line.text).simplified() + (line.cutBehind ? cut : QString());
  } catch (const std::exception&) {
    // The file behind the view is gone; a click on the row will say so.
    return {};
  }
}

QVariant HitList::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole && index.column() == kLine) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  const navigation::ModuleHits& module = ModuleOf(index.row());
  const navigation::Hit& hit = HitOf(index.row());
  switch (index.column()) {
    case kModule:
      return names_[static_cast<std::size_t>(module.view.value)];
    case kRoutine:
      return hit.routine < 0 ? QString() : FromCode(module.routines[static_cast<std::size_t>(hit.routine)].name);
    case kLine:
      return hit.line.value;
    default:
      return LineOf(index.row());
  }
}

QVariant HitList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumns) return {};
  return FromUtf8(kHeaders[section]);
}

}  // namespace quillmate::ui
