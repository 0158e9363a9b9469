#include "view_settings.h"

#include <algorithm>
#include <string>

#include "qt_text.h"
#include "shell.h"
#include "tree_filter.h"

namespace quillmate::ui {
namespace {

constexpr std::string_view kSection = "ansicht";
constexpr std::string_view kLineNumbers = "zeilennummern";
constexpr std::string_view kSourceOrder = "quellreihenfolge";
constexpr std::string_view kFont = "schrift";
constexpr int kMostSteps = 60;

std::string Read(Shell& shell, std::string_view key) { return shell.around.settings.ReadSetting(kSection, key); }

void Write(Shell& shell, std::string_view key, const std::string& value) {
  shell.around.settings.WriteSetting(kSection, key, value);
}

void ApplyLineNumbers(Shell& shell, bool on) {
  shell.commands->Item(CommandId::kSwitchLineNumbers).setChecked(on);
  for (CodeEditor* editor : {shell.rtbHaupt, shell.rtbZoom}) editor->ShowLineNumbers(on);
}

void ApplySourceOrder(Shell& shell, bool on) {
  shell.commands->Item(CommandId::kSwitchSourceOrder).setChecked(on);
  shell.treeFilter->OrderBySource(on);
}

int FontSteps(Shell& shell) { return std::clamp(FromUtf8(Read(shell, kFont)).toInt(), -kMostSteps, kMostSteps); }

void ApplyFont(Shell& shell, int steps) {
  for (CodeEditor* editor : {shell.rtbHaupt, shell.rtbZoom}) editor->SetFontSteps(steps);
}

}  // namespace

void LoadViewSettings(Shell& shell) {
  ApplyLineNumbers(shell, Read(shell, kLineNumbers) != "0");
  ApplySourceOrder(shell, Read(shell, kSourceOrder) == "-1");
  ApplyFont(shell, FontSteps(shell));
  const auto wheel = [&shell](int steps) { ChangeFont(shell, steps); };
  shell.rtbHaupt->onFontSteps = wheel;
  shell.rtbZoom->onFontSteps = wheel;
}

void SetLineNumbers(Shell& shell, bool on) {
  ApplyLineNumbers(shell, on);
  Write(shell, kLineNumbers, on ? "-1" : "0");
}

void SetSourceOrder(Shell& shell, bool on) {
  ApplySourceOrder(shell, on);
  Write(shell, kSourceOrder, on ? "-1" : "0");
}

void ChangeFont(Shell& shell, int steps) {
  const int now = steps == 0 ? 0 : std::clamp(FontSteps(shell) + steps, -kMostSteps, kMostSteps);
  ApplyFont(shell, now);
  Write(shell, kFont, std::to_string(now));
}

}  // namespace quillmate::ui
