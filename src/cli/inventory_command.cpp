#include "inventory_command.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/inventory/merge.h>

#include "commands.h"
#include "messages.h"
#include "output.h"
#include "progress_line.h"
#include "read_files.h"

namespace quillmate::cli {
namespace {

struct Step {
  std::string_view name;
  void (*run)(const Invocation&);
};
constexpr std::array kSteps{Step{"scan", RunInventoryScan}, Step{"merge", RunInventoryMerge},
                            Step{"report", RunInventoryReport}};

}  // namespace

void RunInventoryMerge(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") throw UsageError("Hinter merge fehlt -o BESTAND");
  std::vector<std::filesystem::path> parts;
  for (std::size_t i = 1; i < invocation.inputs.size(); ++i) {
    parts.push_back(files::PathFromText(invocation.inputs[i]));
    NoteRead(parts.back());
  }
  CheckNotRead(*invocation.output, {files::PathFromText(*invocation.output)});
  std::size_t done = 0;
  {
    ProgressLine line;
    inventory::Merge(files::PathFromText(*invocation.output), parts, [&](const std::filesystem::path&) {
      line.Show(std::to_string(++done) + " von " + std::to_string(parts.size()) + " Teilen");
    });
  }
  WriteWhole(std::nullopt, std::to_string(done) + (done == 1 ? " Teil" : " Teile") + " zusammengeführt\n");
}

void RunInventory(const Invocation& invocation) {
  const std::string& name = invocation.inputs.front();
  for (const Step& step : kSteps) {
    if (step.name == name) return step.run(invocation);
  }
  throw UsageError("inventory kennt scan, merge und report, nicht " + Quoted(name));
}

}  // namespace quillmate::cli
