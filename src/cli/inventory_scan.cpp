#include <string>

#include <quillmate/files/paths.h>
#include <quillmate/inventory/scan.h>
#include <quillmate/startup/edition.h>

#include "inventory_command.h"
#include "messages.h"
#include "output.h"
#include "platform.h"
#include "progress_line.h"

namespace quillmate::cli {
namespace {

std::string Duration(std::int64_t seconds) {
  if (seconds < 60) return std::to_string(seconds) + " s";
  const std::int64_t minutes = seconds / 60;
  if (minutes < 60) return std::to_string(minutes) + " min";
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

/// "12345 Dateien, 820/s, noch 1203, etwa 2 min"
std::string ProgressText(const inventory::ScanProgress& progress) {
  std::string text = std::to_string(progress.found) + " Dateien, gelesen " + std::to_string(progress.read);
  const std::int64_t time = progress.time.count();
  const std::int64_t rate = time > 0 ? progress.read * 1000 / time : 0;
  if (rate > 0) text += ", " + std::to_string(rate) + "/s";
  // What no folder has shown yet is told by the run before.
  std::int64_t rest = progress.waiting;
  if (!progress.listed && progress.expected > progress.found) rest += progress.expected - progress.found;
  text += progress.listed || progress.expected > 0 ? ", noch " : ", noch mindestens ";
  text += std::to_string(rest);
  if (rate > 0 && rest > 0) text += ", etwa " + Duration(rest / rate);
  return text;
}

inventory::ScanOptions OptionsOf(const Invocation& invocation) {
  inventory::ScanOptions options;
  for (std::size_t i = 1; i < invocation.inputs.size(); ++i) {
    options.roots.push_back(files::PathFromText(invocation.inputs[i]));
  }
  options.exclude = invocation.exclude;
  options.shard = invocation.shard;
  options.shards = invocation.shards;
  options.jobs = invocation.jobs;
  if (invocation.timeLimit > 0) options.timeLimit = std::chrono::seconds(invocation.timeLimit);
  if (invocation.memoryLimit > 0) options.memoryLimit = std::uint64_t{invocation.memoryLimit} << 20U;
  options.retry = invocation.retry;
  options.readerCommand = inventory::ReaderCommand(ExecutableFolder());
  options.program = "Quillmate " + startup::ProgramVersion();
  return options;
}

}  // namespace

void RunInventoryScan(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") throw UsageError("Hinter scan fehlt -o BESTAND");
  inventory::ScanOptions options = OptionsOf(invocation);
  inventory::ScanResult result;
  {
    ProgressLine line;
    options.progress = [&line](const inventory::ScanProgress& progress) { line.Show(ProgressText(progress)); };
    result = inventory::Scan(files::PathFromText(*invocation.output), options);
  }
  for (const std::string& problem : result.problems) Complain(problem);
  if (result.cancelled) throw CommandFailure("Abgebrochen; der nächste Lauf macht weiter");
  if (!result.problems.empty()) MarkIncomplete();
  WriteWhole(std::nullopt, std::to_string(result.found) + " Dateien: " + std::to_string(result.read) + " gelesen, " +
                               std::to_string(result.unchanged) + " unverändert, " + std::to_string(result.vanished) +
                               " verschwunden; von den gelesenen unlesbar: " + std::to_string(result.unread) + "\n");
}

}  // namespace quillmate::cli
