#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/export/html.h>
#include <quillmate/export/project_export.h>
#include <quillmate/files/paths.h>
#include <quillmate/startup/edition.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "messages.h"
#include "names.h"
#include "output.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

struct Format {
  std::function<void(codedb::ModuleNumber module)> module;
  std::function<void(const std::vector<output::ModuleEntry>& modules)> project;
};

/// The module asked for, or else all modules with a header in front of each.
void Export(const Invocation& invocation, ProjectInput& input, const Format& format) {
  if (invocation.module) {
    format.module(FindModule(input, *invocation.module));
  } else {
    format.project(output::ReadModules(input.Database()));
  }
}

output::Sink SinkInto(Output& output) {
  return [&output](std::string_view bytes) { output.Write(bytes); };
}

/// The reason alone: the file that git hands over has another name each time.
std::string ReasonWithoutPath(const Invocation& invocation, std::string_view message) {
  const std::string name = files::PathText(files::PathFromText(invocation.inputs.front()).filename()) + ": ";
  const std::size_t at = message.find(name);
  return std::string(at == std::string_view::npos ? message : message.substr(at + name.size())) + "\n";
}

/// The code of a file for a program that shows differences of it. A file without code has to be shown as well: with a
/// failure it would show nothing at all, not even of other files.
void WriteForDifferences(const Invocation& invocation) {
  Output output(invocation.output);
  try {
    ProjectInput input(invocation, RunOptions(invocation));
    const output::Sink sink = [&](std::string_view bytes) {
      std::string lines = text::Utf8FromCode(bytes);
      std::erase(lines, '\r');
      output.Write(lines);
    };
    Export(invocation, input,
           {.module = [&](codedb::ModuleNumber number) { output::ModuleText(input.Folder(), number, sink); },
            .project = [&](const auto& modules) { output::ProjectText(input.Folder(), modules, true, sink); }});
  } catch (const UsageError&) {
    throw;
  } catch (const ReaderGone&) {
    throw;
  } catch (const std::exception& failure) {
    output.Write(ReasonWithoutPath(invocation, failure.what()));
  }
  output.Finish();
  throw CommandEnd{kExitDone};
}

}  // namespace

void RunText(const Invocation& invocation) {
  if (invocation.textconv) return WriteForDifferences(invocation);
  ProjectInput input(invocation, RunOptions(invocation));
  Output output(invocation.output, Encoding::kCode);
  const output::Sink sink = SinkInto(output);
  Export(invocation, input,
         {.module = [&](codedb::ModuleNumber number) { output::ModuleText(input.Folder(), number, sink); },
          .project = [&](const auto& modules) { output::ProjectText(input.Folder(), modules, true, sink); }});
  output.Finish();
}

void RunRtf(const Invocation& invocation) {
  const settings::Options options = RunOptions(invocation);
  const text::CodeLook look = settings::LookOf(options);
  ProjectInput input(invocation, options);
  Output output(invocation.output, Encoding::kCode);
  const output::Sink sink = SinkInto(output);
  Export(invocation, input,
         {.module = [&](codedb::ModuleNumber number) { output::ModuleRtf(input.Folder(), number, look, sink); },
          .project = [&](const auto& modules) { output::ProjectRtf(input.Folder(), modules, true, look, sink); }});
  output.Finish();
}

void RunHtml(const Invocation& invocation) {
  const settings::Options options = RunOptions(invocation);
  const text::CodeLook look = settings::LookOf(options);
  ProjectInput input(invocation, options);
  Output output(invocation.output, Encoding::kCode);
  const output::Sink sink = SinkInto(output);
  Export(invocation, input,
         {.module = [&](codedb::ModuleNumber number) { output::ModuleHtml(input.Folder(), number, look, sink); },
          .project = [&](const auto& modules) { output::ProjectHtml(input.Folder(), modules, true, look, sink); }});
  if (invocation.credit) {
    sink(output::AppendCredit({}, startup::EditionOf(invocation.edition).hostName));
  }
  output.Finish();
}

}  // namespace quillmate::cli
