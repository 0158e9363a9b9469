#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "excel_facts_p.h"
#include "excel_records_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

using Tag = XmlReader::Tag;

constexpr std::size_t kLongestFormula = std::size_t{64} << 10U;
constexpr std::string_view kAutoOpen = "_xlnm.Auto_Open";

struct SheetRelation {
  std::string_view relation;
  Sheet::Kind kind;
};
constexpr std::array kSheetRelations{
    SheetRelation{"worksheet", Sheet::Kind::kWorksheet}, SheetRelation{"chartsheet", Sheet::Kind::kChart},
    SheetRelation{"dialogsheet", Sheet::Kind::kDialog}, SheetRelation{"xlMacrosheet", Sheet::Kind::kMacro},
    SheetRelation{"xlIntlMacrosheet", Sheet::Kind::kMacro}};

Sheet::Visibility VisibilityOf(std::string_view state) noexcept {
  if (state == "hidden") return Sheet::Visibility::kHidden;
  return state == "veryHidden" ? Sheet::Visibility::kVeryHidden : Sheet::Visibility::kVisible;
}

bool IsTrue(std::string_view value) noexcept { return value == "1" || value == "true"; }

bool IsRecordPart(std::string_view part) noexcept {
  constexpr std::string_view kEnding = ".bin";
  return part.size() >= kEnding.size() && text::EqualsIgnoreCase(part.substr(part.size() - kEnding.size()), kEnding);
}

/// "B3" as column and row, both 1-based; nothing when it is none.
std::optional<std::pair<std::uint32_t, std::uint32_t>> CellOf(std::string_view name) noexcept {
  std::uint32_t column = 0;
  std::size_t at = 0;
  for (; at < name.size() && at < 4 && name[at] >= 'A' && name[at] <= 'Z'; ++at) {
    column = column * 26 + static_cast<std::uint32_t>(name[at] - 'A' + 1);
  }
  std::uint32_t row = 0;
  const auto [end, error] = std::from_chars(name.data() + at, name.data() + name.size(), row);
  if (error != std::errc() || end != name.data() + name.size() || column == 0) return std::nullopt;
  return std::pair(column, row);
}

/// The formulas of a macro sheet by columns, each on a line of its own.
class FormulaList {
 public:
  void Add(std::string_view cell, std::string formula) {
    constexpr std::size_t kLargestList = std::size_t{16} << 20U;
    const auto place = CellOf(cell);
    size_ += formula.size() + cell.size() + 16;
    if (!place.has_value() || size_ > kLargestList) return;
    lines_.push_back({place->first, place->second, std::string(cell) + ": =" + OneLine(formula)});
  }
  std::string Text() {
    std::stable_sort(lines_.begin(), lines_.end(), [](const Line& a, const Line& b) {
      return std::tie(a.column, a.row) < std::tie(b.column, b.row);
    });
    std::string text;
    for (const Line& line : lines_) {
      if (!text.empty()) text += text::kLineBreak;
      text += line.text;
    }
    return text;
  }

 private:
  struct Line {
    std::uint32_t column;
    std::uint32_t row;
    std::string text;
  };
  static std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return text;
  }

  std::vector<Line> lines_;
  std::size_t size_ = 0;
};

}  // namespace

void ExcelFacts::Read(std::string_view workbookPart) {
  ReadWorkbook(workbookPart);
  for (SheetPart& sheet : sheets_) {
    ReadSheet(sheet);
    ReadRelated(sheet);
    collector_.Facts().sheets.push_back(std::move(sheet.sheet));
  }
  SetEntry();
  collector_.Facts().controlsKnown = whole_ && !package_.Exhausted();
}

/// "Makro1!$A$1" is where the macro sheet begins when the workbook is opened.
void ExcelFacts::SetEntry() {
  const std::size_t bang = autoOpen_.rfind('!');
  if (bang == std::string::npos) return;
  std::string sheet = autoOpen_.substr(0, bang);
  if (sheet.size() >= 2 && sheet.front() == '\'') {
    sheet = text::ReplaceAll(std::string_view(sheet).substr(1, sheet.size() - 2), "''", "'");
  }
  for (Excel4Sheet& excel4 : collector_.Facts().excel4) {
    if (excel4.name == sheet) excel4.entry = text::ReplaceAll(std::string_view(autoOpen_).substr(bang + 1), "$", "");
  }
}

// The workbook -------------------------------------------------------------------------------------------------------

void ExcelFacts::ReadWorkbook(std::string_view part) {
  const std::vector<Relation> relations = package_.RelationsOf(part);
  const RelationIndex relationsById(relations);
  ReadExternalLinks(relations);
  const std::unique_ptr<ByteStream> stream = package_.Open(std::string(part));
  if (stream == nullptr) return;
  const auto take = [&](Sheet sheet, std::string_view relationId) {
    const Relation* relation = relationsById.Find(relationId);
    if (relation == nullptr || relation->external) return;
    TakeSheet({std::move(sheet), relation->target, relation->type});
  };
  if (IsRecordPart(part)) {
    const WorkbookRecords workbook = ReadWorkbookRecords(*stream);
    for (const WorkbookRecords::BundledSheet& sheet : workbook.sheets) take(sheet.sheet, sheet.relation);
    for (const WorkbookRecords::Name& name : workbook.names) {
      macroNames_.push_back(name.isMacro ? name.name : std::string());
      TakeDefinedName(name.name, name.isMacro, "");
    }
    if (workbook.entry) autoOpen_ = workbook.sheets[workbook.entry->sheet].sheet.name + "!" + workbook.entry->cell;
    return;
  }
  XmlReader xml(*stream);
  for (Tag tag = xml.Next(); tag != Tag::kDone; tag = xml.Next()) {
    if (tag != Tag::kStart) continue;
    if (xml.Name() == "sheet") {
      Sheet sheet;
      sheet.name = xml.Attribute("name").value_or("");
      sheet.visibility = VisibilityOf(xml.RawAttribute("state"));
      take(std::move(sheet), xml.PrefixedAttribute("id").value_or(""));
    } else if (xml.Name() == "definedName") {
      const std::string name = xml.Attribute("name").value_or("");
      const bool isMacro = IsTrue(xml.RawAttribute("vbProcedure"));
      TakeDefinedName(name, isMacro, xml.Text(kLongestFormula));
    }
  }
}

void ExcelFacts::TakeSheet(SheetPart sheet) {
  const auto* kind = std::find_if(kSheetRelations.begin(), kSheetRelations.end(), [&](const SheetRelation& entry) {
    return text::EqualsIgnoreCase(entry.relation, sheet.relation);
  });
  if (kind == kSheetRelations.end() || sheets_.size() >= kMostFacts) return;
  sheet.sheet.kind = kind->kind;
  sheets_.push_back(std::move(sheet));
}

void ExcelFacts::TakeDefinedName(const std::string& name, bool isMacro, const std::string& formula) {
  if (name == kAutoOpen) autoOpen_ = formula;
  const std::string place = "Definierter Name '" + name + "'";
  if (isMacro && !name.starts_with("_xl")) collector_.Count(Binding::Kind::kName, name, place);
  collector_.TakeFormula(formula, Binding::Kind::kName, [&] { return place; });
}

void ExcelFacts::ReadExternalLinks(const std::vector<Relation>& relations) {
  for (const Relation& relation : relations) {
    if (relation.type != "externalLink" || relation.external) continue;
    for (const Relation& path : package_.RelationsOf(relation.target)) {
      const bool isPath = path.external && path.type.starts_with("externalLinkPath");
      if (isPath) collector_.Facts().externalLinks.push_back(path.target);
    }
  }
}

// Sheets -------------------------------------------------------------------------------------------------------------

bool ExcelFacts::HasMacroNames() const noexcept {
  return std::any_of(macroNames_.begin(), macroNames_.end(), [](const std::string& name) { return !name.empty(); });
}

void ExcelFacts::ReadSheet(SheetPart& sheet) {
  const std::unique_ptr<ByteStream> stream = package_.Open(sheet.part);
  if (stream == nullptr) return void(whole_ = false);
  const bool macroSheet = sheet.sheet.kind == Sheet::Kind::kMacro;
  std::vector<std::string> controls;
  if (IsRecordPart(sheet.part)) {
    ReadSheetRecords(*stream, sheet, macroSheet, controls);
  } else {
    ReadSheetXml(*stream, sheet, macroSheet, controls);
  }
  for (std::string& name : controls) {
    Control control;
    control.module = sheet.sheet.codeName;
    control.name = std::move(name);
    control.type = "unbekannt";
    collector_.AddControl(std::move(control));
  }
}

/// ActiveX controls follow the cells, in a list that names their relations; form controls are there too.
std::vector<Relation> ExcelFacts::ControlsOf(const SheetPart& sheet) const {
  std::vector<Relation> relations = package_.RelationsOf(sheet.part);
  std::erase_if(relations, [](const Relation& relation) { return relation.type != "control"; });
  return relations;
}

void ExcelFacts::TakeFormula(std::string_view formula, std::string_view kind, const SheetPart& sheet) {
  collector_.TakeFormula(formula, Binding::Kind::kFormula, [&] { return PlaceOnSheet(kind, "", sheet.sheet.name); });
}

void ExcelFacts::ReadSheetXml(ByteStream& stream, SheetPart& sheet, bool macroSheet,
                              std::vector<std::string>& controls) {
  const std::vector<Relation> activeX = ControlsOf(sheet);
  const RelationIndex activeXById(activeX);
  const bool wanted = collector_.Names().HasCellFunctions() || macroSheet || !activeX.empty();
  XmlReader xml(stream);
  Excel4Sheet excel4;
  FormulaList formulas;
  std::string cell;
  bool inCells = false;
  for (Tag tag = xml.Next(); tag != Tag::kDone; tag = xml.Next()) {
    const std::string_view name = xml.Name();
    if (name == "sheetData") {
      // What names the sheet comes before it, after it only formulas.
      if (!wanted) break;
      inCells = tag == Tag::kStart;
    } else if (tag != Tag::kStart) {
      continue;
    } else if (name == "c") {
      cell = xml.RawAttribute("r");
    } else if (name == "sheetPr") {
      sheet.sheet.codeName = xml.Attribute("codeName").value_or("");
    } else if (name == "control") {
      const bool isActiveX = activeXById.Find(xml.PrefixedAttribute("id").value_or("")) != nullptr;
      if (isActiveX && controls.size() < kMostFacts) controls.push_back(xml.Attribute("name").value_or(""));
    } else if (name == "f" && inCells) {
      std::string formula = xml.Text(kLongestFormula);
      TakeFormula(formula, "Formel in " + cell, sheet);
      if (macroSheet) ++excel4.formulas;
      if (macroSheet && excel4_) formulas.Add(cell, std::move(formula));
    } else if (name == "f" || name == "formula") {
      TakeFormula(xml.Text(kLongestFormula), "Bedingte Formatierung", sheet);
    } else if (name == "formula1" || name == "formula2") {
      TakeFormula(xml.Text(kLongestFormula), "Datenüberprüfung", sheet);
    }
  }
  if (!macroSheet) return;
  excel4.name = sheet.sheet.name;
  excel4.visibility = sheet.sheet.visibility;
  excel4.code = formulas.Text();
  collector_.Facts().excel4.push_back(std::move(excel4));
}

void ExcelFacts::ReadSheetRecords(ByteStream& stream, SheetPart& sheet, bool macroSheet,
                                  std::vector<std::string>& controls) {
  const bool wanted = macroSheet || HasMacroNames() || !ControlsOf(sheet).empty();
  std::uint64_t formulas = 0;
  const auto takeControl = [&](std::string name) {
    if (controls.size() < kMostFacts) controls.push_back(std::move(name));
  };
  sheet.sheet.codeName = ReadSheetRecords12(stream, wanted, takeControl, [&](const CellFormula& formula) {
    ++formulas;
    ForEachName(formula.tokens, TokenFormat::kBiff12, [&](const NameToken& token) {
      if (token.isOfBook || token.index == 0 || token.index > macroNames_.size()) return;
      const std::string& name = macroNames_[token.index - 1];
      if (name.empty() || name.starts_with("_xl")) return;
      const std::string cell = CellName(formula.row, formula.column);
      collector_.Count(Binding::Kind::kFormula, name, PlaceOnSheet("Formel in " + cell, "", sheet.sheet.name));
    });
  });
  if (!macroSheet) return;
  collector_.Facts().excel4.push_back({sheet.sheet.name, sheet.sheet.visibility, {}, formulas, {}});
}

// What hangs on a sheet ----------------------------------------------------------------------------------------------

void ExcelFacts::ReadRelated(const SheetPart& sheet) {
  const std::vector<Relation> relations = package_.RelationsOf(sheet.part);
  const bool hasVml = std::any_of(relations.begin(), relations.end(),
                                  [](const Relation& relation) { return relation.type == "vmlDrawing"; });
  for (const Relation& relation : relations) {
    if (relation.external) continue;
    if (relation.type == "table") ReadTable(relation.target, sheet);
    const bool drawing = relation.type == "drawing";
    if (!drawing && relation.type != "vmlDrawing") continue;
    const std::unique_ptr<ByteStream> stream = package_.Open(relation.target);
    if (stream == nullptr) continue;
    if (!drawing) {
      ReadVml(*stream, sheet.sheet.name, collector_);
      continue;
    }
    ReadDrawing(*stream, sheet.sheet.name, hasVml, collector_);
    for (const Relation& chart : package_.RelationsOf(relation.target)) {
      if (chart.type != "chart" || chart.external) continue;
      for (const Relation& shapes : package_.RelationsOf(chart.target)) {
        const auto inChart = shapes.type == "chartUserShapes" ? package_.Open(shapes.target) : nullptr;
        if (inChart != nullptr) ReadDrawing(*inChart, sheet.sheet.name, false, collector_);
      }
    }
  }
}

void ExcelFacts::ReadTable(const std::string& part, const SheetPart& sheet) {
  if (!collector_.Names().HasCellFunctions()) return;
  const std::unique_ptr<ByteStream> stream = IsRecordPart(part) ? nullptr : package_.Open(part);
  if (stream == nullptr) return;
  XmlReader xml(*stream);
  std::string column;
  for (Tag tag = xml.Next(); tag != Tag::kDone; tag = xml.Next()) {
    if (tag != Tag::kStart) continue;
    if (xml.Name() == "tableColumn") column = xml.Attribute("name").value_or("");
    if (xml.Name() == "calculatedColumnFormula" || xml.Name() == "totalsRowFormula") {
      TakeFormula(xml.Text(kLongestFormula), "Tabellenspalte '" + column + "'", sheet);
    }
  }
}

}  // namespace quillmate::office
