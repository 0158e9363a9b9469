#include <quillmate/files/file_bytes.h>
#include <quillmate/settings/display_size.h>
#include <quillmate/settings/options.h>
#include <quillmate/settings/settings_store.h>
#include <quillmate/settings/sources.h>

#include "fuzz.h"
#include "scratch.h"

namespace quillmate::fuzz {

/// The input is a settings file as somebody may have edited it.
void Check(std::string_view bytes) {
  static const Scratch scratch;
  const std::filesystem::path file = scratch.Path() / "Qm_Quill_Excel.ini";
  files::WriteWholeFile(file, bytes);
  const auto store = settings::OpenSettingsFile(file);
  for (const std::string_view section :
       {settings::kOptionsSection, settings::kProjectSection, settings::kRecentSection, settings::kSourcesSection}) {
    for (const std::string& key : store->SettingKeys(section)) store->ReadSetting(section, key);
  }
  settings::Options options;
  settings::LoadOptions(*store, options);
  if (const auto size = settings::ParseDisplaySize(options.bis)) {
    Expect(settings::ParseDisplaySize(settings::FormatDisplaySize(*size)).has_value());
  }

  const auto copy = settings::MemorySettings();
  settings::SaveOptions(*copy, options);
  settings::SaveSources(*copy, settings::LoadSources(*store));
  settings::Options again;
  settings::LoadOptions(*copy, again);
  Expect(again.fkey == options.fkey && again.einr == options.einr && again.tab == options.tab);
  Expect(settings::LoadSources(*copy) == settings::LoadSources(*store));
}

}  // namespace quillmate::fuzz
