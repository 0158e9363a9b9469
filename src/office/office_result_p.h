#pragma once

#include <functional>
#include <string>

#include <quillmate/office/office_file.h>
#include <quillmate/office/storage.h>

#include "facts_collector_p.h"

namespace quillmate::office {

/// A file without a project.
OfficeFile Without(OfficeFile::State state, Reason reason, OfficeHost host = OfficeHost::kUnknown);
/// The project in a storage, with its forms where facts are wanted; without modules and not locked it is none.
OfficeFile ReadProjectIn(const Storage& file, Storage::Id storage, OfficeHost host, const ReadOptions& options);
/// A compound file that is nothing but a project, out of a zip or a presentation.
OfficeFile ReadBareProject(const std::string& bytes, OfficeHost host, const ReadOptions& options);

/// The file with what its code and, through `search`, its document say, where that is wanted and there is a project.
OfficeFile WithFacts(OfficeFile file, const ReadOptions& options, const std::function<void(FactsCollector&)>& search);
/// A workbook without a project: what `search` finds of macro sheets of Excel 4 is all that it may hold.
OfficeFile WithMacroSheetsAlone(const ReadOptions& options, const std::function<void(FactsCollector&)>& search);

// The kinds of files; each begins with its signature.
OfficeFile ReadZipFile(ByteSource& source, const ReadOptions& options);
OfficeFile ReadCompoundFile(ByteSource& source, const ReadOptions& options);
OfficeFile ReadAccessFile(ByteSource& source, const ReadOptions& options);

}  // namespace quillmate::office
