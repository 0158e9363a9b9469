#pragma once

#include <optional>
#include <string_view>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/compound_file.h>
#include <quillmate/office/office_file.h>

#include "facts_collector_p.h"
#include "opc_package_p.h"

namespace quillmate::office {

// Documents in the open formats ---------------------------------------------------------------------------------------

/// Everything that a document says of its macros; `project` is the part that holds them. `excel4`: see ReadOptions.
void ReadPackageFacts(const OpcPackage& package, std::string_view project, OfficeHost host, bool excel4,
                      FactsCollector& collector);
/// Call-backs of a ribbon. `replaced`: newer programs take another part instead of this one.
void ReadRibbon(ByteStream& stream, bool replaced, FactsCollector& collector);
void ReadWordFacts(const OpcPackage& package, std::string_view document, FactsCollector& collector);
void ReadPowerPointFacts(const OpcPackage& package, std::string_view presentation, FactsCollector& collector);

// Compound files ------------------------------------------------------------------------------------------------------

void ReadCompoundFacts(const CompoundFile& file, OfficeHost host, FactsCollector& collector);
/// Searches the stream "Workbook" of a compound file [MS-XLS]: sheets, shapes with macros, names that stand for macros
/// and formulas that use them. What these records don't say for certain (texts of formulas, conditional formats,
/// validations) is left out; the names cover who is called there too.
void ReadXlsFacts(ByteSource& workbook, FactsCollector& collector);

/// True when the workbook holds a sheet of Excel 4 macros, as far as that can be read.
bool HoldsMacroSheet(ByteSource& workbook);
/// True when the start of the stream says that the rest is encrypted with a password that is not known.
bool IsClosedWorkbook(std::string_view start);
/// Fields in the stream "WordDocument" [MS-DOC], as far as they are there in one piece.
void ReadDocFacts(ByteSource& document, FactsCollector& collector);
/// Actions in the stream "PowerPoint Document" [MS-PPT].
void ReadPptFacts(ByteSource& document, FactsCollector& collector);

// Both ----------------------------------------------------------------------------------------------------------------

/// Toolbars as Office 97 to 2003 stored them: of their records only texts that name a routine for certain are taken.
void ReadToolbars(std::string_view bytes, FactsCollector& collector);
/// A field's instruction: " MACROBUTTON Makro Beschriftung".
void TakeFieldInstruction(std::string_view instruction, std::string_view where, FactsCollector& collector);
/// The property set of a compound file [MS-OLEPS].
void ReadSummary(std::string_view bytes, DocumentProperties& properties);
/// The value of the second property set [MS-OSHARED] 2.3.3.2.1 that holds the signature of the macros; nothing when
/// there is none. A part of `bytes`.
std::optional<std::string_view> SignatureInSummary(std::string_view bytes);

}  // namespace quillmate::office
