#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <quillmate/export/html.h>
#include <quillmate/export/project_export.h>
#include <quillmate/export/site.h>
#include <quillmate/project/session.h>
#include <quillmate/project/understanding.h>
#include <quillmate/startup/app_globals.h>

#include "background_tasks.h"
#include "code_area.h"
#include "interaction.h"
#include "read_files.h"

namespace quillmate::ui {

/// The commands that hand code to other programs: HTML, RTF and text, on the clipboard and in files. What is selected
/// is that of the view that is seen.
class Exports {
 public:
  /// Everything must outlive it.
  Exports(Interaction& interaction, project::Session& session, const CodeArea& code, startup::AppGlobals& globals,
          const ReadFiles& readFiles, BackgroundTasks& tasks);

  // HTML
  void ExportClipboardHtml();
  void ExportSelectionHtml();
  void ExportModuleHtml();
  void ExportProjectHtml();
  void ExportZoomHtml();
  /// In the background. `known` is what the code means.
  void WriteDocumentation(std::shared_ptr<const project::Understanding> known);

  /// Where the notes for the documentation come from, by module and line.
  void TakeNotes(std::function<std::vector<output::SiteNote>()> notes) { notes_ = std::move(notes); }

  /// What the documentation says, as long as `known` lives. Folder and modules are missing: they come from the files
  /// that it is made of.
  output::SiteProject SiteOf(const project::Understanding& known) const;

  // RTF
  void ExportModuleRtf();
  void ExportProjectRtf();

  // Nur-Text, Extras
  void CopySelectionText();
  void CopyModuleText();
  void CopyOutline();

 private:
  std::string CollectHtml(const std::function<void(const output::Sink&)>& run);
  /// Puts finished HTML (Windows-1252) on the clipboard as plain text; asks for the credit line and shows the preview
  /// as the options say.
  void DeliverHtml(std::string html);
  /// Code that is in no index (Windows-1252, CR LF): marked up, turned into HTML and delivered.
  void DeliverCode(std::string_view code);
  void ShowPreview(std::string_view html);

  QString WithExtension(const QString& chosen);
  void WriteRtfInBackground(std::vector<output::ModuleEntry> modules, const text::CodeLook& look,
                            const std::filesystem::path& target);
  void ExportRtf(const std::string& fileName, std::string_view activity,
                 const std::function<void(const text::CodeLook&, const std::filesystem::path&)>& run);

  void PutOnClipboard(const QString& text, std::string_view message);

  Interaction& interaction_;
  project::Session& session_;
  const CodeArea& code_;
  startup::AppGlobals& globals_;
  const ReadFiles& readFiles_;
  BackgroundTasks& tasks_;
  std::function<std::vector<output::SiteNote>()> notes_;
};

}  // namespace quillmate::ui
