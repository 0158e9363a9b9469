#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <quillmate/office/component_type.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/vba_compression.h>
#include <quillmate/office/vba_project.h>
#include <quillmate/text/operations.h>

#include "code_page_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::string_view kTextStart = "Attribute VB_Name";

// Finding ------------------------------------------------------------------------------------------------------------

bool HoldsProject(const CompoundFile& file, CompoundId storage) {
  const std::optional<CompoundId> vba = file.FindStorage(storage, "VBA");
  return vba.has_value() && file.FindStream(*vba, "dir").has_value();
}

/// The storage above a storage "VBA", for a project whose dir stream is lost.
bool NamesProject(const CompoundFile& file, CompoundId storage) {
  return file.FindStorage(storage, "VBA").has_value() && file.FindStream(storage, "PROJECT").has_value();
}

template <typename Accept>
std::optional<CompoundId> FindStorageWhere(const CompoundFile& file, Accept accept) {
  if (accept(file, CompoundFile::kRoot)) return CompoundFile::kRoot;
  for (const char* name : {"_VBA_PROJECT_CUR", "Macros"}) {
    const std::optional<CompoundId> known = file.FindStorage(CompoundFile::kRoot, name);
    if (known.has_value() && accept(file, *known)) return known;
  }
  for (CompoundId id = 0; id < file.Entries().size(); ++id) {
    const CompoundEntry& entry = file.Entries()[id];
    if (entry.kind == CompoundEntry::Kind::kStorage && entry.parent.has_value() && accept(file, id)) return id;
  }
  return std::nullopt;
}

// Modules ------------------------------------------------------------------------------------------------------------

/// What PROJECT and dir say about a module, put together.
struct ModulePlan {
  std::string name;
  /// 0 when PROJECT does not name it.
  int type = 0;
  /// Nothing when dir does not name it.
  const DirModule* inDir = nullptr;
};

class ModulePlanner {
 public:
  ModulePlanner(const DirStream& dir, const CodePage& codePage) : dir_(dir), codePage_(codePage) {
    for (const DirModule& module : dir.modules) {
      // PROJECT has names in the code page only, so that is what they are compared in.
      byName_.try_emplace(UpperCaseName(codePage.Utf8From(module.name)), &module);
      byName_.try_emplace(UpperCaseName(module.unicodeName), &module);
    }
  }

  std::vector<ModulePlan> Plan(const ProjectText& text) {
    for (const ProjectTextModule& module : text.modules) Add(module);
    for (const DirModule& module : dir_.modules) {
      if (used_.insert(&module).second) plans_.push_back({NameOf(module), 0, &module});
    }
    return std::move(plans_);
  }

 private:
  void Add(const ProjectTextModule& module) {
    const std::string name = codePage_.Utf8From(module.name);
    const auto found = byName_.find(UpperCaseName(name));
    if (found == byName_.end()) {
      plans_.push_back({name, module.type, nullptr});
    } else if (used_.insert(found->second).second) {
      plans_.push_back({NameOf(*found->second), module.type, found->second});
    }
  }
  std::string NameOf(const DirModule& module) const {
    return module.unicodeName.empty() ? codePage_.Utf8From(module.name) : module.unicodeName;
  }

  const DirStream& dir_;
  const CodePage& codePage_;
  std::unordered_map<std::string, const DirModule*> byName_;
  std::unordered_set<const DirModule*> used_;
  std::vector<ModulePlan> plans_;
};

/// Unpacked text as the editor shows it.
EditorText EditorTextOf(std::string bytes, const CodePage& codePage) {
  // A chunk that is not packed is filled up with NUL bytes.
  bytes.resize(bytes.find_last_not_of('\0') + 1);
  std::replace(bytes.begin(), bytes.end(), '\0', '?');
  return TakeEditorText(codePage.Decode(bytes));
}

class ProjectReader {
 public:
  ProjectReader(const Storage& file, Storage::Id storage, std::size_t mostText)
      : file_(file),
        storage_(storage),
        vba_(file.FindStorage(storage, "VBA")),
        streamBytesLeft_(file.Size()),
        textBytesLeft_(mostText) {}

  VbaProject Read();

 private:
  std::optional<Storage::Id> StreamIn(std::optional<Storage::Id> storage, std::string_view name) const;
  DirStream ReadDir();
  ProjectText ReadText();
  VbaModule ReadModule(const ModulePlan& plan, const CodePage& codePage);
  std::optional<Storage::Id> StreamOf(const ModulePlan& plan, const CodePage& codePage) const;
  VbaUnpacked UnpackText(const ModulePlan& plan, const CodePage& codePage);
  VbaUnpacked UnpackStream(std::string_view stream, std::optional<std::uint32_t> offset);
  VbaUnpacked Unpack(std::string_view container);
  int TypeFromContent(const ModulePlan& plan, std::string_view text) const;
  void Warn(std::string warning) { project_.warnings.push_back(std::move(warning)); }
  void Warn(const ModulePlan& plan, const char* reason) { Warn("Modul " + plan.name + ": " + reason); }

  const Storage& file_;
  Storage::Id storage_;
  std::optional<Storage::Id> vba_;
  std::uint64_t streamBytesLeft_;
  std::size_t textBytesLeft_;
  VbaProject project_;
};

std::optional<Storage::Id> ProjectReader::StreamIn(std::optional<Storage::Id> storage, std::string_view name) const {
  return storage.has_value() && !name.empty() ? file_.FindStream(*storage, name) : std::nullopt;
}

DirStream ProjectReader::ReadDir() {
  const std::optional<Storage::Id> stream = StreamIn(vba_, "dir");
  VbaUnpacked unpacked;
  if (stream.has_value())
    unpacked = UnpackVba(file_.ReadStream(*stream, kLargestVbaDirectory).bytes, kLargestVbaDirectory);
  DirStream dir = ParseDirStream(unpacked.bytes);
  if (!unpacked.complete || !dir.complete) Warn("Das Verzeichnis der Module (dir) ist beschädigt");
  return dir;
}

ProjectText ProjectReader::ReadText() {
  const std::optional<Storage::Id> id = StreamIn(storage_, "PROJECT");
  if (!id.has_value()) return {};
  const Storage::Stream stream = file_.ReadStream(*id, kLargestVbaDirectory);
  if (!stream.complete) Warn("Die Beschreibung des Projekts (PROJECT) ist beschädigt");
  return ParseProjectText(stream.bytes);
}

std::vector<VbaReference> ReferencesIn(const DirStream& dir, const CodePage& codePage) {
  std::vector<VbaReference> references;
  references.reserve(dir.references.size());
  for (const DirReference& reference : dir.references) {
    VbaReference& added = references.emplace_back(ParseLibid(codePage.Utf8From(reference.libid)));
    std::string name = reference.unicodeName.empty() ? codePage.Utf8From(reference.name) : reference.unicodeName;
    if (!name.empty()) added.name = std::move(name);
  }
  return references;
}

VbaProject ProjectReader::Read() {
  const DirStream dir = ReadDir();
  const ProjectText text = ReadText();
  const CodePage codePage(dir.codePage);
  project_.name = codePage.Utf8From(dir.projectName.empty() ? text.name : dir.projectName);
  project_.codePage = dir.codePage;
  project_.constants = codePage.Utf8From(dir.constants);
  project_.references = ReferencesIn(dir, codePage);
  project_.protection = text.protection;
  if (project_.protection.Locked()) return std::move(project_);
  std::vector<ModulePlan> plans = ModulePlanner(dir, codePage).Plan(text);
  if (plans.size() > kMostVbaModules) {
    plans.resize(kMostVbaModules);
    Warn("Mehr als 32767 Module: die übrigen wurden ausgelassen");
  }
  project_.modules.reserve(plans.size());
  for (const ModulePlan& plan : plans) project_.modules.push_back(ReadModule(plan, codePage));
  return std::move(project_);
}

VbaModule ProjectReader::ReadModule(const ModulePlan& plan, const CodePage& codePage) {
  VbaUnpacked text = UnpackText(plan, codePage);
  VbaModule module;
  module.name = plan.name;
  module.type = plan.type != 0 ? plan.type : TypeFromContent(plan, text.bytes);
  module.hasText = !text.bytes.empty();
  static_cast<EditorText&>(module) = EditorTextOf(std::move(text.bytes), codePage);
  return module;
}

std::optional<Storage::Id> ProjectReader::StreamOf(const ModulePlan& plan, const CodePage& codePage) const {
  std::optional<Storage::Id> stream;
  if (plan.inDir != nullptr) {
    stream = StreamIn(vba_, plan.inDir->unicodeStreamName);
    if (!stream.has_value()) stream = StreamIn(vba_, codePage.Utf8From(plan.inDir->streamName));
  }
  return stream.has_value() ? stream : StreamIn(vba_, plan.name);
}

VbaUnpacked ProjectReader::UnpackText(const ModulePlan& plan, const CodePage& codePage) {
  const std::optional<Storage::Id> id = StreamOf(plan, codePage);
  if (!id.has_value()) return Warn(plan, "Quelltext fehlt"), VbaUnpacked{};
  if (textBytesLeft_ == 0) {
    Warn(plan, "Quelltext wurde ausgelassen, weil die Texte der Datei zusammen zu groß sind");
    return {};
  }
  const Storage::Stream stream = file_.ReadStream(*id, streamBytesLeft_);
  streamBytesLeft_ -= stream.bytes.size();

  const std::optional<std::uint32_t> offset = plan.inDir == nullptr ? std::nullopt : plan.inDir->textOffset;
  VbaUnpacked text = UnpackStream(stream.bytes, offset);
  if (text.bytes.empty()) {
    Warn(plan, "Quelltext kann nicht entpackt werden");
  } else if (!text.complete || !stream.complete) {
    Warn(plan, "Quelltext ist beschädigt oder zu groß und wurde nur zum Teil gelesen");
  }
  return text;
}

/// The text of a module stream, from where dir says or from where one is found.
VbaUnpacked ProjectReader::UnpackStream(std::string_view stream, std::optional<std::uint32_t> offset) {
  const std::string_view atOffset = stream.substr(std::min<std::size_t>(offset.value_or(0), stream.size()));
  if (UnpacksTo(atOffset, kTextStart)) return Unpack(atOffset);
  const std::size_t found = FindContainer(stream, kTextStart);
  if (found != std::string_view::npos) return Unpack(stream.substr(found));
  // A text without the attribute is a text still, when dir points to it and it unpacks.
  VbaUnpacked unpacked = Unpack(atOffset);
  return unpacked.complete ? unpacked : VbaUnpacked{};
}

VbaUnpacked ProjectReader::Unpack(std::string_view container) {
  VbaUnpacked unpacked = UnpackVba(container, std::min(kLargestVbaModule, textBytesLeft_));
  textBytesLeft_ -= std::min(textBytesLeft_, unpacked.bytes.size());
  return unpacked;
}

int ProjectReader::TypeFromContent(const ModulePlan& plan, std::string_view text) const {
  if (plan.inDir == nullptr || plan.inDir->procedural) return kStdModule;
  // A form's designer data is in a storage of its name.
  if (file_.FindStorage(storage_, plan.name).has_value()) return kMSForm;
  return SummarizeModuleFile(text, "cls").type;
}

}  // namespace

namespace {

/// "a.1" is version 10.1: both parts are hexadecimal.
std::string DecimalVersion(std::string_view version) {
  std::string decimal;
  for (const std::string_view part : text::Split(version, ".")) {
    unsigned number = 0;
    const auto read = std::from_chars(part.data(), part.data() + part.size(), number, 16);
    if (read.ec != std::errc() || read.ptr != part.data() + part.size()) return std::string(version);
    decimal += (decimal.empty() ? "" : ".") + std::to_string(number);
  }
  return decimal;
}

}  // namespace

VbaReference ParseLibid(std::string_view libid) {
  constexpr std::size_t kKindLength = 3;  // "*\G"
  VbaReference reference;
  if (!libid.starts_with("*\\") || libid.size() < kKindLength) return reference;
  const char kind = libid[kKindLength - 1];
  libid.remove_prefix(kKindLength);
  if (kind != 'G' && kind != 'H') {
    reference.toProject = true;
    reference.path = libid;
    const std::size_t folder = libid.find_last_of("\\/");
    const std::string_view file = libid.substr(folder == std::string_view::npos ? 0 : folder + 1);
    reference.name = file.substr(0, file.rfind('.'));
    return reference;
  }
  const std::vector<std::string_view> parts = text::Split(libid, "#");
  const auto part = [&](std::size_t at) { return at < parts.size() ? std::string(parts[at]) : std::string(); };
  reference.version = DecimalVersion(part(1));
  reference.path = part(3);
  reference.name = part(4);
  return reference;
}

std::optional<CompoundId> FindVbaProject(const CompoundFile& file) {
  const std::optional<CompoundId> found = FindStorageWhere(file, HoldsProject);
  return found.has_value() ? found : FindStorageWhere(file, NamesProject);
}

VbaProject ReadVbaProject(const Storage& file, Storage::Id storage, std::size_t mostText) {
  return ProjectReader(file, storage, mostText).Read();
}

}  // namespace quillmate::office
