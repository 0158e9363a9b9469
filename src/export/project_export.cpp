#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/export/module_header.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/project_export.h>
#include <quillmate/files/replacement.h>

#include "text_work_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

/// Converts every module's marked-up text, a header block separately: it ends at a line's end.
void ConvertTexts(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                  TextWork::Converter convert, const Sink& sink) {
  TextWork work(std::move(convert), sink);
  for (const ModuleEntry& module : modules) {
    if (headers) work.AddShortText(HeaderBlock(module.name, module.imageKey));
    work.AddModule(folder, module.number);
  }
  work.Finish();
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
  const auto convert = [bold = look.boldRoutines](std::string_view text, const Sink& to) {
    ColourBody(text, bold, to);
  };
  ConvertTexts(folder, modules, headers, convert, sink);
  sink(kDocumentEnd);
}

void ModuleText(const fs::path& folder, codedb::ModuleNumber module, const Sink& sink) {
  ProjectText(folder, {{module, {}, {}}}, false, sink);
}

void ProjectText(const fs::path& folder, const std::vector<ModuleEntry>& modules, bool headers, const Sink& sink) {
  const auto convert = [](std::string_view text, const Sink& to) { PlainText(text, to); };
  ConvertTexts(folder, modules, headers, convert, sink);
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
