#include "inventory_command.h"

#include <array>
#include <string_view>

#include "commands.h"
#include "messages.h"

namespace quillmate::cli {
namespace {

struct Step {
  std::string_view name;
  void (*run)(const Invocation&);
};
constexpr std::array kSteps{Step{"scan", RunInventoryScan}, Step{"merge", RunInventoryMerge},
                            Step{"report", RunInventoryReport}};

}  // namespace

void RunInventory(const Invocation& invocation) {
  const std::string& name = invocation.inputs.front();
  for (const Step& step : kSteps) {
    if (step.name == name) return step.run(invocation);
  }
  throw UsageError("inventory kennt scan, merge und report, nicht " + Quoted(name));
}

}  // namespace quillmate::cli
