#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/export/module_header.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/rtf.h>
#include <quillmate/export/sink.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

/// Turns marked-up text into a format, piece by piece. Every call begins at the start of a line.
using Converter = std::function<void(std::string_view markedText, const output::Sink&)>;

struct Module {
  int number;
  /// Windows-1252.
  std::string name;
  int kind;
};

/// Modules by number; `condition` is empty or a WHERE clause with a blank in front.
std::vector<Module> SelectModules(codedb::CodeDatabase& database, const std::string& condition) {
  auto records =
      database.OpenRecordset("SELECT mod_num, mod_name, mod_typ FROM td_mod" + condition + " ORDER BY mod_num;");
  std::vector<Module> modules;
  while (records.Next()) {
    modules.push_back({static_cast<int>(records.Number(0).value_or(0)), records.Text(1),
                       static_cast<int>(records.Number(2).value_or(0))});
  }
  return modules;
}

/// A name from the command line as Windows-1252; nothing when no module can have that name.
std::optional<std::string> CodeName(const std::string& name) {
  if (!text::IsValidUtf8(name)) {
    return name;  // a terminal that is not UTF-8
  }
  std::string code = text::CodeFromUtf8(name);
  return text::Utf8FromCode(code) == name ? std::optional(std::move(code)) : std::nullopt;
}

/// The module of that name, compared as the database does; the first one of several.
Module FindModule(codedb::CodeDatabase& database, const std::string& name) {
  if (const auto code = CodeName(name)) {
    const auto found = SelectModules(database, " WHERE mod_name='" + codedb::QuoteLiteral(*code) + "'");
    if (!found.empty()) {
      return found.front();
    }
  }
  throw CommandFailure("Es gibt kein Modul " + Quoted(name));
}

/// The module asked for, or else all modules with a header in front of each.
void Export(const Invocation& invocation, ProjectInput& input, const Converter& convert, const output::Sink& sink) {
  if (invocation.module) {
    const Module module = FindModule(input.Database(), *invocation.module);
    convert(codedb::ReadModuleText(input.Folder(), module.number), sink);
    return;
  }
  for (const Module& module : SelectModules(input.Database(), "")) {
    convert(output::HeaderBlock(module.name, codedb::ModuleKey(module.kind)), sink);
    convert(codedb::ReadModuleText(input.Folder(), module.number), sink);
  }
}

}  // namespace

void RunText(const Invocation& invocation) {
  ProjectInput input(invocation, RunOptions(invocation));
  Output output(invocation.output);
  const output::Sink sink = [&](std::string_view bytes) { output.Write(bytes); };
  Export(
      invocation, input, [](std::string_view text, const output::Sink& to) { output::PlainText(text, to); }, sink);
  output.Finish();
}

void RunRtf(const Invocation& invocation) {
  const settings::Options options = RunOptions(invocation);
  const output::RtfOptions rtf = RtfOptionsOf(options);
  ProjectInput input(invocation, options);
  Output output(invocation.output);
  const output::Sink sink = [&](std::string_view bytes) { output.Write(bytes); };
  const Converter convert = [&](std::string_view text, const output::Sink& to) {
    output::ColourBody(text, rtf.boldRoutines, to);
  };
  sink(output::DocumentHead(rtf));
  Export(invocation, input, convert, sink);
  sink(output::kDocumentEnd);
  output.Finish();
}

}  // namespace quillmate::cli
