#include <algorithm>
#include <stdexcept>

#include <quillmate/files/paths.h>
#include <quillmate/text/windows1252.h>

#include "project_commands.h"

namespace quillmate::ui {
namespace {

std::string NoFolderMessage(const startup::AppGlobals& globals) {
  return "Der Arbeitsordner konnte nicht angelegt werden in\r\n" +
         files::PathText(globals.ProgramFolder / startup::kScratchRoot);
}

std::string NoDatabaseMessage(const std::filesystem::path& folder) {
  return "Die Projektdatenbank konnte nicht angelegt werden in\r\n" + files::PathText(folder);
}

/// How many of the modules that are not in the project a message can hold.
constexpr std::size_t kNamed = 8;

std::string AndMore(std::size_t count) {
  return "und " + std::to_string(count) + (count == 1 ? " weiteres" : " weitere");
}

std::string LeftOutText(const std::vector<std::string>& modules, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < modules.size() && i < most; ++i) text += (i > 0 ? "\r\n" : "") + modules[i];
  if (modules.size() > most) text += "\r\n... " + AndMore(modules.size() - most);
  return text;
}

/// The first of the modules that lost characters; how many there are beside it.
std::string ReplacedText(const std::vector<std::string>& modules) {
  const std::size_t others = modules.size() - 1;
  if (others == 0) return modules.front();
  return modules.front() + ", ebenso in " + std::to_string(others) +
         (others == 1 ? " weiteren Modul" : " weiteren Modulen");
}

/// The last project of those that were read gives its name; the caption says that it is not the only one.
std::string TitleOf(const host::ReadReport& report, const host::HostTree& tree) {
  const auto isRead = [](const host::HostProjectNode& project) {
    return project.checked && std::ranges::any_of(project.modules, &host::HostModuleNode::checked);
  };
  const auto count = static_cast<std::size_t>(std::ranges::count_if(tree.projects, isRead));
  const std::string name = text::Utf8FromCode(report.projectText);
  return count < 2 ? name : name + " " + AndMore(count - 1);
}

}  // namespace

host::ReadRequest ProjectCommands::RequestOf() {
  host::ReadRequest request;
  request.folder = globals_.RunTempFolder;
  request.templateFile = globals_.TemplatePath;
  request.options = settings::LayoutOf(globals_.Options);
  request.progress = [this](const std::string& text) { interaction_.ShowProgress(text); };
  return request;
}

/// What happens after a read that did not succeed.
void ProjectCommands::TellFailure(const host::ReadReport& report) {
  switch (report.outcome) {
    case host::ReadOutcome::kNothingChecked:
      interaction_.Show(report.message, MessageIcon::kInformation);
      return;
    case host::ReadOutcome::kNoTemplate:
      interaction_.Show(report.message.empty() ? NoDatabaseMessage(globals_.RunTempFolder) : report.message,
                        MessageIcon::kCritical, Buttons::kOk, report.detail);
      return;
    case host::ReadOutcome::kFailed:
      interaction_.Show(report.message, MessageIcon::kExclamation, Buttons::kOk, report.detail);
      break;
    default:
      break;
  }
  sources_.RefreshKeepingTicks();
}

/// Reads the ticked modules and shows the project. A project on screen gives way first: the read empties the scratch
/// folder that its modules may be in.
void ProjectCommands::ReadProject(const Reader& read) {
  if (sources_.Projects().CheckedModules() > globals_.MostViews) {
    interaction_.Show(TooManyModulesText() + "\r\nBitte wählen Sie weniger aus !", MessageIcon::kExclamation);
    return;
  }
  if (sources_.Projects().AnyChecked() && !LeaveProject()) return;
  if (!session_.IsLoaded()) startup::EnsureRunFolder(globals_);
  if (globals_.RunTempFolder.empty()) {
    interaction_.Show(NoFolderMessage(globals_), MessageIcon::kExclamation);
    return;
  }
  host::ReadReport report;
  {
    const Working working(interaction_);
    report = read(RequestOf());
  }
  if (report.outcome != host::ReadOutcome::kDone) {
    TellFailure(report);
    return;
  }
  ReloadProject(globals_.RunTempFolder, TitleOf(report, sources_.Projects()), false);
  if (!report.replacedCharacters.empty()) interaction_.ShowProgress(ReplacedText(report.replacedCharacters));
  if (!report.leftOut.empty()) {
    const std::size_t all = report.leftOut.size();
    interaction_.Show(report.message, MessageIcon::kExclamation, Buttons::kOk, LeftOutText(report.leftOut, kNamed),
                      all > kNamed ? LeftOutText(report.leftOut, all) : std::string());
  }
}

void ProjectCommands::ReadCode() {
  ReadProject([this](const host::ReadRequest& request) {
    return host::ReadCheckedModules(host_, sources_.Projects(), globals_.CodeDb, request);
  });
}

void ProjectCommands::ReadVbFiles() {
  ReadProject([this](const host::ReadRequest& request) {
    return host::ReadModuleFiles(sources_.Projects(), globals_.CodeDb, request);
  });
}

}  // namespace quillmate::ui
