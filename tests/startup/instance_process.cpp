#include "startup/instance_process.h"

#include <algorithm>
#include <fstream>

#include <quillmate/files/paths.h>
#include <quillmate/startup/edition.h>
#include <quillmate/startup/session.h>

namespace quillmate::startup {

void RunInstance(const std::filesystem::path& programFolder, const std::function<void(const std::string&)>& tell,
                 const std::function<bool()>& awaitOrderToEnd) {
  const auto store = settings::MemorySettings();
  AppGlobals globals;
  BeginStart(globals, kExcel, {.programFolder = programFolder, .templateFile = {}}, *store);
  InstanceMark mark(globals.TempFolder);
  MakeRunFolder(globals, mark, *store);
  std::ofstream(globals.RunTempFolder / "M1.txt") << "x";
  tell((mark.IsAlone() ? "1" : "0") + files::PathText(globals.RunTempFolder));
  if (awaitOrderToEnd()) EndRun(globals);
}

void Instance::AwaitStart() {
  const std::string news = AwaitNews();
  alone = news.starts_with('1');
  folder = files::PathFromText(std::string_view(news).substr(std::min<std::size_t>(news.size(), 1)));
}

}  // namespace quillmate::startup
