#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/text/operations.h>

#include "access_facts_p.h"
#include "access_forms_p.h"
#include "package_facts_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::uint64_t kLargestStream = std::uint64_t{16} << 20U;

// Queries ------------------------------------------------------------------------------------------------------------

/// What a row of MSysQueries is about.
enum Attribute : int {
  kType = 1,
  kFlags = 3,
  kTable = 5,
  kColumn = 6,
  kJoin = 7,
  kWhere = 8,
  kGroupBy = 9,
  kHaving = 10,
  kOrderBy = 11,
  kEnd = 255
};
enum QueryType : int { kSelect = 1, kDefinition = 7, kPassThrough = 8 };
enum QueryFlag : unsigned {
  kAllColumns = 0x01,
  kDistinct = 0x02,
  kOwner = 0x04,
  kDistinctRow = 0x08,
  kTop = 0x10,
  kPercent = 0x20
};

struct QueryRow {
  int attribute = 0;
  int flag = 0;
  std::string expression;
  std::string name1;
  std::string name2;
  std::string order;
};
using QueryRows = std::vector<QueryRow>;

std::vector<const QueryRow*> RowsOf(const QueryRows& rows, int attribute) {
  std::vector<const QueryRow*> found;
  for (const QueryRow& row : rows) {
    if (row.attribute == attribute) found.push_back(&row);
  }
  return found;
}

/// In brackets where it is no plain name.
std::string Quoted(const std::string& name) {
  const bool plain = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
  });
  return plain && (name[0] < '0' || name[0] > '9') ? name : "[" + name + "]";
}

template <typename Text>
std::string Listed(const std::vector<const QueryRow*>& rows, Text text) {
  std::string list;
  for (const QueryRow* row : rows) list += (list.empty() ? "" : ", ") + text(*row);
  return list;
}

/// Puts a query together where that is possible without doubt; empty otherwise.
class QueryText {
 public:
  explicit QueryText(const QueryRows& rows) : rows_(rows) {}

  std::string Text() const {
    if (!KnownOnly()) return {};
    const auto types = RowsOf(rows_, kType);
    const int type = types.empty() ? kSelect : types[0]->flag;
    if (type == kDefinition || type == kPassThrough) return types[0]->expression;
    return type == kSelect ? Select() : std::string();
  }

 private:
  /// False when a row says something that is not understood, or their order is in doubt.
  bool KnownOnly() const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const int attribute = rows_[i].attribute;
      const bool known = attribute == 0 || attribute == kType || attribute == kFlags || attribute == kEnd ||
                         (attribute >= kTable && attribute <= kOrderBy);
      if (!known) return false;
      const auto before = std::find_if(rows_.rbegin() + static_cast<std::ptrdiff_t>(rows_.size() - i), rows_.rend(),
                                       [=](const QueryRow& row) { return row.attribute == attribute; });
      if (before != rows_.rend() && rows_[i].order < before->order) return false;
    }
    return true;
  }

  std::string Select() const {
    const std::string from = From();
    const std::string head = Head();
    if (from.empty() || head.empty()) return {};
    std::string sql = head + " FROM " + from;
    const auto where = RowsOf(rows_, kWhere);
    const auto having = RowsOf(rows_, kHaving);
    if (where.size() > 1 || having.size() > 1) return {};
    const auto expression = [](const QueryRow& row) { return row.expression; };
    if (!where.empty()) sql += " WHERE " + where[0]->expression;
    const std::string groups = Listed(RowsOf(rows_, kGroupBy), expression);
    if (!groups.empty()) sql += " GROUP BY " + groups;
    if (!having.empty()) sql += " HAVING " + having[0]->expression;
    const std::string order = Listed(RowsOf(rows_, kOrderBy), [](const QueryRow& row) {
      return row.expression + (text::EqualsIgnoreCase(row.name1, "D") ? " DESC" : "");
    });
    if (!order.empty()) sql += " ORDER BY " + order;
    return sql + (Has(kOwner) ? " WITH OWNERACCESS OPTION;" : ";");
  }

  bool Has(unsigned flag) const {
    const auto flags = RowsOf(rows_, kFlags);
    return !flags.empty() && (static_cast<unsigned>(flags[0]->flag) & flag) != 0;
  }
  std::string Head() const {
    const auto flags = RowsOf(rows_, kFlags);
    constexpr unsigned kKnown = kAllColumns | kDistinct | kOwner | kDistinctRow | kTop | kPercent;
    if (!flags.empty() && (static_cast<unsigned>(flags[0]->flag) & ~kKnown) != 0) return {};
    std::string head = "SELECT ";
    if (Has(kDistinct)) head += "DISTINCT ";
    if (Has(kDistinctRow)) head += "DISTINCTROW ";
    if (Has(kTop)) head += "TOP " + flags[0]->name1 + (Has(kPercent) ? " PERCENT " : " ");
    std::string columns = Listed(RowsOf(rows_, kColumn), [](const QueryRow& row) {
      return row.name1.empty() ? row.expression : row.expression + " AS " + Quoted(row.name1);
    });
    if (columns.empty() || Has(kAllColumns)) columns += columns.empty() ? "*" : ", *";
    return head + columns;
  }
  /// Tables side by side, or two of them joined; joins of more nest in an order that the rows leave open.
  std::string From() const {
    const auto tables = RowsOf(rows_, kTable);
    const auto joins = RowsOf(rows_, kJoin);
    const auto table = [](const QueryRow& row) {
      return row.name2.empty() ? Quoted(row.name1) : Quoted(row.name1) + " AS " + Quoted(row.name2);
    };
    const auto known = [](const QueryRow* row) { return row->expression.empty() && !row->name1.empty(); };
    if (!std::all_of(tables.begin(), tables.end(), known)) return {};
    if (joins.empty()) return Listed(tables, table);
    if (joins.size() > 1 || tables.size() != 2) return {};
    const auto named = [&](const std::string& name) {
      const auto found = std::find_if(tables.begin(), tables.end(), [&](const QueryRow* row) {
        return text::EqualsIgnoreCase(row->name2.empty() ? row->name1 : row->name2, name);
      });
      return found == tables.end() ? std::string() : table(**found);
    };
    const std::string left = named(joins[0]->name1);
    const std::string right = named(joins[0]->name2);
    const char* kind = joins[0]->flag == 1   ? " INNER JOIN "
                       : joins[0]->flag == 2 ? " LEFT JOIN "
                       : joins[0]->flag == 3 ? " RIGHT JOIN "
                                             : nullptr;
    if (kind == nullptr || left.empty() || right.empty() || left == right) return {};
    return left + kind + right + " ON " + joins[0]->expression;
  }

  const QueryRows& rows_;
};

/// "~sq_cKunden~sq_cOrt" is what a control of the form Kunden takes its rows from.
std::string PlaceOfQuery(const std::string& name) {
  constexpr std::string_view kHidden = "~sq_";
  if (!name.starts_with(kHidden) || name.size() <= kHidden.size() + 1) return "Abfrage '" + name + "'";
  const std::string_view owner = std::string_view(name).substr(kHidden.size() + 1);
  return "Datenherkunft in '" + std::string(text::TextBefore(owner, "~")) + "'";
}

std::map<std::int64_t, QueryRows> ReadQueryRows(AccessTable& table) {
  std::map<std::int64_t, QueryRows> queries;
  std::size_t count = 0;
  table.Visit([&](const AccessRow& row) {
    QueryRow query;
    query.attribute = static_cast<int>(row.Number(table.Column("Attribute")));
    query.flag = static_cast<int>(row.Number(table.Column("Flag")));
    query.expression = row.Text(table.Column("Expression"));
    query.name1 = row.Text(table.Column("Name1"));
    query.name2 = row.Text(table.Column("Name2"));
    query.order = row.Bytes(table.Column("Order"), 64).bytes;
    queries[row.Number(table.Column("ObjectId"))].push_back(std::move(query));
    return ++count < kMostFacts;
  });
  return queries;
}

void ReadQueries(AccessDatabase& database, FactsCollector& collector) {
  std::optional<AccessTable> table = database.Table("MSysQueries");
  if (!table.has_value()) return;
  const std::map<std::int64_t, QueryRows> queries = ReadQueryRows(*table);
  for (const AccessObject& object : database.Objects()) {
    const auto rows = object.type == AccessObject::kQuery ? queries.find(object.id) : queries.end();
    if (rows == queries.end()) continue;
    for (const QueryRow& row : rows->second) {
      collector.TakeFormula(row.expression, Binding::Kind::kQuery, [&] { return PlaceOfQuery(object.name); });
    }
    const bool hidden = object.name.starts_with('~');
    if (!hidden) collector.Facts().queries.push_back({object.name, QueryText(rows->second).Text()});
  }
}

// Everything else ----------------------------------------------------------------------------------------------------

/// A connection without its password.
std::string WithoutPassword(std::string_view connect) {
  std::string kept;
  for (const std::string_view part : text::Split(connect, ";")) {
    if (part.empty() || text::StartsWithIgnoreCase(part, "PWD=")) continue;
    if (!kept.empty()) kept += ';';
    kept += part;
  }
  return kept;
}

void ReadObjects(const AccessDatabase& database, DocumentFacts& facts) {
  for (const AccessObject& object : database.Objects()) {
    const bool linked = object.type == AccessObject::kLinkedTable || object.type == AccessObject::kLinkedByDriver;
    if (linked && facts.linkedTables.size() < kMostFacts) {
      facts.linkedTables.push_back({object.name, object.foreignName,
                                    object.database.empty() ? WithoutPassword(object.connect) : object.database});
    }
    const bool macro = object.type == AccessObject::kMacro && !object.name.starts_with('~');
    if (macro && facts.macros.size() < kMostFacts) facts.macros.push_back(object.name);
  }
}

bool IsNameUnit(unsigned unit) noexcept {
  return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') || unit == '_' ||
         (unit >= 0xC0 && unit < 0xD800);
}

/// Calls "Name(" in UTF-16 whose name is a function that macros could call.
void TakeCalls(std::string_view bytes, const std::string& place, FactsCollector& collector) {
  const auto unit = [&](std::size_t at) { return LittleEndian<std::uint16_t>(bytes, at); };
  for (std::size_t at = 2; at + 1 < bytes.size(); ++at) {
    if (bytes[at] != '(' || bytes[at + 1] != '\0') continue;
    std::size_t start = at;
    while (start >= 2 && IsNameUnit(unit(start - 2))) start -= 2;
    if (start == at) continue;
    const std::string name = Utf8FromUtf16Bytes(bytes.substr(start, at - start));
    if (collector.Names().IsCellFunction(name)) collector.Count(Binding::Kind::kMacroAction, name, place);
  }
}

void ReadMacros(const Storage& storage, FactsCollector& collector) {
  const auto folder = storage.FindStorage(Storage::kRoot, "Scripts");
  const auto list = folder ? FindAccessStream(storage, *folder, "DirData") : std::nullopt;
  if (!list || !collector.Names().HasCellFunctions()) return;
  for (const AccessFolderEntry& entry : ReadAccessFolder(storage.ReadStream(*list, kLargestStream).bytes)) {
    const auto macro = storage.FindStorage(*folder, entry.storage);
    const auto blob = macro ? FindAccessStream(storage, *macro, "Blob") : std::nullopt;
    if (blob) TakeCalls(storage.ReadStream(*blob, kLargestStream).bytes, "Makro '" + entry.name + "'", collector);
  }
}

/// Ribbons that a database keeps in a table of its own.
void ReadRibbonTable(AccessDatabase& database, FactsCollector& collector) {
  constexpr std::uint64_t kLargestRibbon = std::uint64_t{4} << 20U;
  std::optional<AccessTable> table = database.Table("USysRibbons");
  if (!table.has_value()) return;
  std::size_t count = 0;
  table->Visit([&](const AccessRow& row) {
    const std::string xml = row.Text(table->Column("RibbonXML")).substr(0, kLargestRibbon);
    MemoryStream stream(xml);
    ReadRibbon(stream, false, collector);
    return ++count < kMostFacts;
  });
}

}  // namespace

void ReadAccessFacts(AccessDatabase& database, const Storage* storage, int codePage, FactsCollector& collector) {
  ReadObjects(database, collector.Facts());
  ReadQueries(database, collector);
  ReadRibbonTable(database, collector);
  if (storage == nullptr) return;
  ReadAccessForms(*storage, CodePage(codePage), collector);
  ReadMacros(*storage, collector);
}

}  // namespace quillmate::office
