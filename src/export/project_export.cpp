#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/export/module_header.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/project_export.h>
#include <quillmate/files/replacement.h>

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

/// Hands every module's marked-up text to `convert`, a header block separately: it ends at a line's end.
template <typename Converter>
void ForEachText(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers, Converter convert) {
  for (const ModuleEntry& module : modules) {
    if (headers) convert(HeaderBlock(module.name, module.imageKey));
    convert(codedb::ReadModuleText(folder, module.number));
  }
}

}  // namespace

std::vector<ModuleEntry> ReadModules(codedb::CodeDatabase& database) {
  std::vector<ModuleEntry> modules;
  for (codedb::ModuleRecord& module : database.Modules()) {
    modules.push_back({module.number, std::move(module.name), codedb::ModuleImageKey(module.kind)});
  }
  return modules;
}

void ModuleRtf(const fs::path& folder, codedb::ModuleNumber module, const text::CodeLook& look, const Sink& sink) {
  ProjectRtf(folder, {{module, {}, {}}}, false, look, sink);
}

void ProjectRtf(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                const text::CodeLook& look, const Sink& sink) {
  sink(DocumentHead(look));
  ForEachText(folder, modules, headers, [&](std::string_view marked) { ColourBody(marked, look.boldRoutines, sink); });
  sink(kDocumentEnd);
}

void ModuleText(const fs::path& folder, codedb::ModuleNumber module, const Sink& sink) {
  PlainText(codedb::ReadModuleText(folder, module), sink);
}

void ProjectText(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers, const Sink& sink) {
  ForEachText(folder, modules, headers, [&](std::string_view marked) { PlainText(marked, sink); });
}

void ExportModuleRtf(const fs::path& folder, codedb::ModuleNumber module, const text::CodeLook& look,
                     const fs::path& target) {
  files::ReplaceFile(target, [&](const Sink& sink) { ModuleRtf(folder, module, look, sink); });
}

void ExportProjectRtf(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                      const text::CodeLook& look, const fs::path& target) {
  files::ReplaceFile(target, [&](const Sink& sink) { ProjectRtf(folder, modules, headers, look, sink); });
}

}  // namespace quillmate::output
