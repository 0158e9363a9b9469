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

/// Since 2002: the storages of the project are in a table.
std::optional<Storage::Id> ProjectIn(const Storage& storage) {
  const std::optional<Storage::Id> vba = storage.FindStorage(Storage::kRoot, "VBA");
  return vba.has_value() ? storage.FindStorage(*vba, "VBAProject") : std::nullopt;
}

/// Where a database keeps its project, forms and macros.
class Objects {
 public:
  explicit Objects(AccessDatabase& database) : table_(database.OpenStorage()) {
    if (table_ != nullptr && ProjectIn(*table_)) {
      storage_ = table_.get();
      project_ = ProjectIn(*table_);
      return;
    }
    // Before 2002: a compound file in pieces.
    joined_ = database.JoinedObjects(kLargestVbaProject);
    source_.emplace(joined_);
    compound_ = CompoundFile::Open(*source_);
    if (compound_.has_value()) {
      storage_ = &*compound_;
      project_ = FindVbaProject(*compound_);
    }
  }
  Objects(const Objects&) = delete;
  Objects& operator=(const Objects&) = delete;

  /// Nothing where there is none, or none that can be read.
  const Storage* Place() const noexcept { return storage_; }
  std::optional<Storage::Id> Project() const noexcept { return project_; }
  /// Whether a project may have been in what can't be read.
  bool Damaged() const noexcept { return !joined_.empty() && !(compound_.has_value() && compound_->WholeDirectory()); }

 private:
  std::unique_ptr<AccessStorage> table_;
  std::string joined_;
  std::optional<MemorySource> source_;
  std::optional<CompoundFile> compound_;
  const Storage* storage_ = nullptr;
  std::optional<Storage::Id> project_;
};

OfficeFile ReadProject(const AccessDatabase& database, const Objects& objects, const ReadOptions& options) {
  if (objects.Project()) return ReadProjectIn(*objects.Place(), *objects.Project(), OfficeHost::kAccess, options);
  if (objects.Damaged() || !database.Whole())
    return Without(State::kFailed, Reason::kBrokenDatabase, OfficeHost::kAccess);
  return Without(State::kNoMacros, Reason::kNoMacros, OfficeHost::kAccess);
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
    return Without(State::kFailed, Reason::kEncrypted, OfficeHost::kAccess);
  }
  if (database.Objects().empty()) return Without(State::kFailed, Reason::kBrokenDatabase, OfficeHost::kAccess);
  const Objects objects(database);
  OfficeFile file = ReadProject(database, objects, options);
  const bool compiled =
      !file.project.modules.empty() && std::none_of(file.project.modules.begin(), file.project.modules.end(),
                                                    [](const VbaModule& module) { return module.hasText; });
  if (compiled) return Without(State::kFailed, Reason::kCompiled, OfficeHost::kAccess);
  MarkDocuments(database, file.project);
  const int codePage = file.project.codePage;
  return WithFacts(std::move(file), options,
                   [&](FactsCollector& collector) { ReadAccessFacts(database, objects.Place(), codePage, collector); });
}

}  // namespace quillmate::office
