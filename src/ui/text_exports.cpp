#include <vector>

#include <quillmate/export/outline.h>

#include "code_clip.h"
#include "exports.h"
#include "qt_text.h"

namespace quillmate::ui {

Exports::Exports(Interaction& interaction, project::Session& session, const CodeArea& code,
                 startup::AppGlobals& globals, const ReadFiles& readFiles, BackgroundTasks& tasks)
    : interaction_(interaction),
      session_(session),
      code_(code),
      globals_(globals),
      readFiles_(readFiles),
      tasks_(tasks) {}

void Exports::PutOnClipboard(const QString& text, std::string_view message) {
  interaction_.Desktop().ClearClipboard();
  interaction_.Desktop().SetClipboard({text, {}, {}});
  if (globals_.Options.meld) interaction_.Show(message);
}

void Exports::CopySelectionText() {
  const std::string code = code_.Selection();
  if (code.empty()) {
    interaction_.Show(output::kNothingSelected);
    return;
  }
  PutOnClipboard(ClipText(code), "Text in Zwischenablage");
}

void Exports::CopyModuleText() {
  const std::string& code = session_.View().Text();
  if (!code.empty()) PutOnClipboard(ClipText(code), "Text in Zwischenablage");
}

void Exports::CopyOutline() {
  std::vector<output::OutlineNode> nodes;
  for (const navigation::TreeNode& node : session_.Tree()->nodes) nodes.push_back({node.text, node.parent});
  PutOnClipboard(FromCode(output::BuildOutline(nodes)), "Struktur in der Zwischenablage erstellt");
}

}  // namespace quillmate::ui
