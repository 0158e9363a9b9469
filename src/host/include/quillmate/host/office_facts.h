#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <quillmate/codedb/facts.h>
#include <quillmate/office/office_file.h>

namespace quillmate::host {

/// What the understanding needs of one Office file that was read with its facts: its project, every module with its
/// code, what starts its routines. The same as a listing of that file alone and CollectFacts give. `fileName`, UTF-8,
/// is the document's own name, by which its buttons may call its macros. The project's code is taken out of `file`.
codedb::Facts TakeOfficeFacts(office::OfficeFile& file, std::string_view fileName);

/// The same for the bytes of a module file of that extension (with or without its dot). `stem` names a module that does
/// not say its name. Nothing when the bytes are no text, with the reason in `problem`.
std::optional<codedb::Facts> ModuleFileFacts(std::string bytes, std::string_view extension, std::string_view stem,
                                             office::Reason& problem);

}  // namespace quillmate::host
