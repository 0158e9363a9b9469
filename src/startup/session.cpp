#include <algorithm>

#include <quillmate/startup/edition.h>
#include <quillmate/startup/session.h>
#include <quillmate/text/operations.h>

namespace quillmate::startup {
namespace {

constexpr std::string_view kStartFolder = "C:\\";

std::ptrdiff_t CharacterCount(std::string_view utf8) {
  return std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
}

void SetTitles(AppGlobals& globals, int selector) {
  const Edition edition = EditionOf(selector);
  globals.hostSelector = selector;
  globals.HostName = edition.hostName;
  globals.EditionCode = edition.editionCode;
  globals.SettingsRoot = SettingsRootOf(selector);
  globals.AppTitle = globals.HostName + " Quillmate " + ProgramVersion();
}

void MakeScratchRoot(AppGlobals& globals, const ProgramPlaces& places) {
  globals.ProgramFolder = places.programFolder;
  globals.TemplatePath = places.templateFile;
  globals.TempFolder = places.programFolder / kScratchRoot;
  std::error_code ignored;
  std::filesystem::create_directories(globals.TempFolder, ignored);
}

void SetProjectFolders(AppGlobals& globals, const settings::SettingsStore& store) {
  globals.LastProjectFolder = globals.DefaultFolder = kStartFolder;
  const std::string stored = store.ReadSetting(settings::kProjectSection, "proj_pf");
  if (CharacterCount(stored) > 1) globals.LastProjectFolder = stored;
}

}  // namespace

bool IsMiniWindowCommand(std::string_view commandLine) noexcept { return text::EqualsIgnoreCase(commandLine, "/a"); }

void BeginStart(AppGlobals& globals, int selector, const ProgramPlaces& places, const settings::SettingsStore& store) {
  SetTitles(globals, selector);
  globals.Options = {};
  MakeScratchRoot(globals, places);
  SetProjectFolders(globals, store);
}

std::string RefreshCaption(std::string_view hostName) {
  return "&Aktualisieren " + std::string(hostName) + " VBA Projekte";
}

std::string RefreshTooltip(std::string_view hostName) {
  return "Aktualisieren " + std::string(hostName) + " VBA Projekte (F5)";
}

}  // namespace quillmate::startup
