#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "facts_collector_p.h"
#include "opc_package_p.h"

namespace quillmate::office {

/// What is unpacked of a document's parts in search of evidence, all of them together.

/// A sheet and where it is.
struct SheetPart {
  Sheet sheet;
  std::string part;
  /// "worksheet", "chartsheet" ...
  std::string relation;
};

/// Searches a workbook in the open formats, with its parts in XML or in records [MS-XLSB]. Parts are read as a stream:
/// what it costs in memory does not depend on the sheets.
class ExcelFacts {
 public:
  /// `excel4`: the formulas of macro sheets are wanted as text.
  ExcelFacts(const OpcPackage& package, FactsCollector& collector, bool excel4)
      : package_(package), collector_(collector), excel4_(excel4) {}

  void Read(std::string_view workbookPart);

 private:
  void ReadWorkbook(std::string_view part);
  void TakeSheet(SheetPart sheet);
  void TakeDefinedName(const std::string& name, bool isMacro, const std::string& formula);
  void TakeFormula(std::string_view formula, std::string_view kind, const SheetPart& sheet);
  void ReadSheet(SheetPart& sheet);
  /// `controls` gets the names of ActiveX controls.
  void ReadSheetXml(ByteStream& stream, SheetPart& sheet, bool macroSheet, std::vector<std::string>& controls);
  void ReadSheetRecords(ByteStream& stream, SheetPart& sheet, bool macroSheet, std::vector<std::string>& controls);
  std::vector<Relation> ControlsOf(const SheetPart& sheet) const;
  void ReadRelated(const SheetPart& sheet);
  void ReadTable(const std::string& part, const SheetPart& sheet);
  void ReadExternalLinks(const std::vector<Relation>& relations);
  void SetEntry();
  bool HasMacroNames() const noexcept;

  const OpcPackage& package_;
  FactsCollector& collector_;
  bool excel4_;
  /// False when a part is missing.
  bool whole_ = true;
  std::vector<SheetPart> sheets_;
  /// Of names in records, in their order: the name where it stands for a macro, else empty.
  std::vector<std::string> macroNames_;
  std::string autoOpen_;
};

/// Shapes of a drawing part that start a macro. `hasVml`: form controls are in the VML part too and left to it.
void ReadDrawing(ByteStream& stream, std::string_view sheet, bool hasVml, FactsCollector& collector);
/// Form controls of a VML part, which need not be well-formed.
void ReadVml(ByteStream& stream, std::string_view sheet, FactsCollector& collector);

/// The kind of a form control in German, by its name in VML and by its number in records.
std::string_view FormControlWord(std::string_view objectType) noexcept;
std::string_view FormControlWord(unsigned objectType) noexcept;

}  // namespace quillmate::office
