#include "view_settings.h"

#include <QWidget>
#include <algorithm>

#include "qt_text.h"
#include "splitter.h"
#include "twips.h"

namespace quillmate::ui {
namespace {

constexpr std::string_view kSection = "ansicht";
constexpr std::string_view kLineNumbers = "zeilennummern";
constexpr std::string_view kSourceOrder = "quellreihenfolge";
constexpr std::string_view kExactOutline = "genauegliederung";
constexpr std::string_view kDeclarations = "deklarationen";
constexpr std::string_view kHeader = "routinenkopf";
constexpr std::string_view kReadAtOnce = "sofortlesen";
constexpr std::string_view kFont = "schrift";
constexpr std::string_view kSplitter = "teiler";
constexpr int kMostSteps = 60;

}  // namespace

ViewSettings::ViewSettings(settings::SettingsStore& store, CodeArea& code, ProjectPanel& tree, CommandSet& commands)
    : store_(store), code_(code), tree_(tree), commands_(commands) {}

std::string ViewSettings::Read(std::string_view key) const { return store_.ReadSetting(kSection, key); }

void ViewSettings::Write(std::string_view key, const std::string& value) { store_.WriteSetting(kSection, key, value); }

void ViewSettings::Load(QSplitter& splitter) {
  ApplyLineNumbers(Read(kLineNumbers) != "0");
  ApplySourceOrder(Read(kSourceOrder) == "-1");
  ApplyExactOutline(Read(kExactOutline) == "-1");
  ApplyDeclarations(Read(kDeclarations) == "-1");
  ApplyHeader(Read(kHeader) != "0");
  commands_.Item(CommandId::kSwitchReadAtOnce).setChecked(Read(kReadAtOnce) != "0");
  code_.SetFontSteps(FontSteps());

  const double dpi = splitter.logicalDpiX();
  const int width = splitter.window()->width();
  const double left = FromUtf8(Read(kSplitter)).toDouble();
  if (!MayStandAt(left, ToTwips(width, dpi), ToTwips(splitter.handleWidth(), dpi))) return;
  const int tree = qRound(ToPixels(left, dpi));
  splitter.setSizes({tree, width - tree - splitter.handleWidth()});
}

void ViewSettings::SaveSplitterPlace(const QSplitter& splitter) {
  const int twips = qRound(ToTwips(splitter.sizes().value(0), splitter.logicalDpiX()));
  // A window that was never shown knows no sizes.
  if (twips > 0) Write(kSplitter, std::to_string(twips));
}

void ViewSettings::ApplyLineNumbers(bool on) {
  commands_.Item(CommandId::kSwitchLineNumbers).setChecked(on);
  code_.ShowLineNumbers(on);
}

void ViewSettings::SwitchLineNumbers() {
  const bool on = !commands_.Item(CommandId::kSwitchLineNumbers).isChecked();
  ApplyLineNumbers(on);
  Write(kLineNumbers, on ? "-1" : "0");
}

void ViewSettings::ApplySourceOrder(bool on) {
  tree_.OrderBySource(on);
  commands_.Item(CommandId::kSwitchSourceOrder).setChecked(on);
}

void ViewSettings::SwitchSourceOrder() {
  const bool on = !commands_.Item(CommandId::kSwitchSourceOrder).isChecked();
  ApplySourceOrder(on);
  Write(kSourceOrder, on ? "-1" : "0");
}

void ViewSettings::ApplyExactOutline(bool on) {
  tree_.ShowExactOutline(on);
  commands_.Item(CommandId::kSwitchExactOutline).setChecked(on);
}

void ViewSettings::SwitchExactOutline() {
  const bool on = !commands_.Item(CommandId::kSwitchExactOutline).isChecked();
  ApplyExactOutline(on);
  Write(kExactOutline, on ? "-1" : "0");
}

void ViewSettings::ApplyDeclarations(bool on) {
  tree_.ShowDeclarations(on);
  commands_.Item(CommandId::kSwitchDeclarations).setChecked(on);
}

void ViewSettings::SwitchDeclarations() {
  const bool on = !commands_.Item(CommandId::kSwitchDeclarations).isChecked();
  ApplyDeclarations(on);
  Write(kDeclarations, on ? "-1" : "0");
}

void ViewSettings::ApplyHeader(bool on) {
  code_.Main().KeepHeader(on);
  commands_.Item(CommandId::kSwitchHeader).setChecked(on);
}

void ViewSettings::SwitchHeader() {
  const bool on = !commands_.Item(CommandId::kSwitchHeader).isChecked();
  ApplyHeader(on);
  Write(kHeader, on ? "-1" : "0");
}

void ViewSettings::SwitchReadAtOnce() {
  const bool on = !commands_.Item(CommandId::kSwitchReadAtOnce).isChecked();
  commands_.Item(CommandId::kSwitchReadAtOnce).setChecked(on);
  Write(kReadAtOnce, on ? "-1" : "0");
}

int ViewSettings::FontSteps() const { return std::clamp(FromUtf8(Read(kFont)).toInt(), -kMostSteps, kMostSteps); }

void ViewSettings::ChangeFont(int steps) {
  const int now = steps == 0 ? 0 : std::clamp(FontSteps() + steps, -kMostSteps, kMostSteps);
  code_.SetFontSteps(now);
  Write(kFont, std::to_string(now));
}

}  // namespace quillmate::ui
