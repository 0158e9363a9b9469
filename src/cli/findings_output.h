#pragma once

#include <span>
#include <string>

#include <quillmate/checks/checks.h>

/// Findings in the forms in which they leave the program. UTF-8.
namespace quillmate::cli {

/// `file:line:column: stufe: Satz [id]`, one on each line. Modules of documents: `file/Modul`, with the editor's line.
std::string FindingsText(const symbols::ReferenceIndex& index, std::span<const checks::Finding> findings);
std::string FindingsJson(const symbols::ReferenceIndex& index, std::span<const checks::Finding> findings);
std::string FindingsCsv(const symbols::ReferenceIndex& index, std::span<const checks::Finding> findings);
/// SARIF 2.1.0, one run with all checks as its rules. Files below the current folder are told relative to it.
std::string FindingsSarif(const symbols::ReferenceIndex& index, std::span<const checks::Finding> findings);

/// The checks there are.
std::string ChecksText();
std::string ChecksJson();

/// What stays the same when lines move: project, module, check, routine and the place in words.
std::string FindingKey(const symbols::ReferenceIndex& index, const checks::Finding& finding);

}  // namespace quillmate::cli
