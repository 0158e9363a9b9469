#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include <quillmate/office/component_type.h>
#include <quillmate/office/compound_file.h>

#include "access_database_p.h"
#include "access_facts_p.h"
#include "office_result_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;

constexpr const char* kBrokenDatabase = "Datei ist beschädigt: das Verzeichnis der Datenbank ist nicht lesbar";
constexpr const char* kCompiled = "Datei ist kompiliert und enthält keinen Quelltext";

/// Since 2002: the storages of the project lie in a table.
std::optional<Storage::Id> ProjectIn(const Storage& storage) {
  const std::optional<Storage::Id> vba = storage.FindStorage(Storage::kRoot, "VBA");
  return vba.has_value() ? storage.FindStorage(*vba, "VBAProject") : std::nullopt;
}

OfficeFile ReadProject(AccessDatabase& database, const ReadOptions& options) {
  if (const std::unique_ptr<AccessStorage> storage = database.OpenStorage()) {
    if (const auto project = ProjectIn(*storage))
      return ReadProjectIn(*storage, *project, OfficeHost::kAccess, options);
  }
  // Before: a compound file in pieces.
  const std::string joined = database.JoinedObjects(kLargestVbaProject);
  MemorySource source(joined);
  if (const std::optional<CompoundFile> file = CompoundFile::Open(source)) {
    if (const auto project = FindVbaProject(*file)) return ReadProjectIn(*file, *project, OfficeHost::kAccess, options);
  }
  if (!joined.empty() || !database.Whole()) return Without(State::kFailed, kBrokenDatabase, OfficeHost::kAccess);
  return Without(State::kNoMacros, reasons::kWithoutMacros, OfficeHost::kAccess);
}

/// The class modules of forms and reports are called after them.
void MarkDocuments(const AccessDatabase& database, VbaProject& project) {
  std::unordered_set<std::string> names;
  for (const AccessObject& object : database.Objects()) {
    if (object.type == AccessObject::kForm) names.insert(UpperCaseName("Form_" + object.name));
    if (object.type == AccessObject::kReport) names.insert(UpperCaseName("Report_" + object.name));
  }
  for (VbaModule& module : project.modules) {
    if (module.type == kClassModule && names.contains(UpperCaseName(module.name))) module.type = kHostDocument;
  }
}

}  // namespace

OfficeFile ReadAccessFile(ByteSource& source, const ReadOptions& options) {
  AccessDatabase database(source);
  if (database.Opened() == AccessPages::State::kPassword) {
    return Without(State::kFailed, reasons::kEncrypted, OfficeHost::kAccess);
  }
  if (database.Objects().empty()) return Without(State::kFailed, kBrokenDatabase, OfficeHost::kAccess);
  OfficeFile file = ReadProject(database, options);
  const bool compiled =
      !file.project.modules.empty() && std::none_of(file.project.modules.begin(), file.project.modules.end(),
                                                    [](const VbaModule& module) { return module.hasText; });
  if (compiled) return Without(State::kFailed, kCompiled, OfficeHost::kAccess);
  MarkDocuments(database, file.project);
  return WithFacts(std::move(file), options, [&](FactsCollector& collector) {
    const std::unique_ptr<AccessStorage> storage = database.OpenStorage();
    ReadAccessFacts(database, storage.get(), collector);
  });
}

}  // namespace quillmate::office
