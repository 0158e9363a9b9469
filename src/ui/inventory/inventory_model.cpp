#include "inventory_model.h"

#include <QLocale>
#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <utility>

#include "error_text.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kPage = 256;
constexpr std::size_t kMostPages = 64;

constexpr std::array kHeads = {"Datei",    "Zustand", "Format", "Projekt", "Autor", "Größe",
                               "Geändert", "Module",  "Zeilen", "Befunde", "Kopien"};
enum Column { kPath, kState, kFormat, kProject, kAuthor, kSize, kTime, kModules, kLines, kFindings, kCopies };

bool IsNumber(int column) { return column == kSize || column >= kModules; }

std::int64_t NumberIn(const inventory::FileLine& line, int column) {
  switch (column) {
    case kSize:
      return line.size;
    case kModules:
      return line.modules;
    case kLines:
      return line.lines;
    case kFindings:
      return line.findings;
    default:
      return line.copies;
  }
}

std::string TextIn(const inventory::FileLine& line, int column) {
  switch (column) {
    case kPath:
      return line.path;
    case kState:
      return std::string(inventory::Word(line.state));
    case kFormat:
      return line.format;
    case kProject:
      return line.project;
    case kAuthor:
      return line.author;
    default:
      return line.time;
  }
}

}  // namespace

void InventoryModel::Open(const std::filesystem::path& database) {
  auto stock = std::make_unique<inventory::Inventory>(database);
  stock->Count({});
  beginResetModel();
  stock_ = std::move(stock);
  CountRows();
  endResetModel();
}

void InventoryModel::Close() {
  beginResetModel();
  stock_ = nullptr;
  CountRows();
  endResetModel();
}

void InventoryModel::SetFilter(inventory::FileFilter filter) {
  beginResetModel();
  filter_ = std::move(filter);
  CountRows();
  endResetModel();
}

void InventoryModel::CountRows() {
  pages_.clear();
  problem_.clear();
  rows_ = 0;
  if (stock_ == nullptr) return;
  try {
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    rows_ = static_cast<int>(std::min(stock_->Count(filter_), kMost));
  } catch (const std::exception& error) {
    problem_ = ErrorText(error);
  }
}

const inventory::FileLine& InventoryModel::LineAt(int row) const {
  static const inventory::FileLine kNothing;
  const int page = row / kPage;
  auto found = pages_.find(page);
  if (found == pages_.end()) {
    std::vector<inventory::FileLine> lines;
    try {
      if (stock_ != nullptr) lines = stock_->Files(filter_, kPage, std::int64_t{page} * kPage);
    } catch (const std::exception& error) {
      problem_ = ErrorText(error);
    }
    if (pages_.size() >= kMostPages) pages_.clear();
    found = pages_.emplace(page, std::move(lines)).first;
  }
  const auto at = static_cast<std::size_t>(row % kPage);
  return at < found->second.size() ? found->second[at] : kNothing;
}

int InventoryModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }
int InventoryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kHeads.size());
}

QVariant InventoryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const inventory::FileLine& line = LineAt(index.row());
  if (role == Qt::TextAlignmentRole && IsNumber(index.column())) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  if (role == Qt::ToolTipRole) return FromUtf8(line.reason.empty() ? line.path : line.path + "\n" + line.reason);
  if (role != Qt::DisplayRole) return {};
  if (IsNumber(index.column())) {
    return QLocale().toString(static_cast<qlonglong>(NumberIn(line, index.column())));
  }
  return FromUtf8(TextIn(line, index.column()));
}

QVariant InventoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0) return {};
  return QString::fromUtf8(kHeads.at(static_cast<std::size_t>(section)));
}

}  // namespace quillmate::ui
