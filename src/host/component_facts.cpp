#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/host/host_automation.h>
#include <quillmate/language/parse.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"

namespace quillmate::host {
namespace {

using language::ModuleKind;

struct KindRow {
  ModuleKind kind;
  std::string_view word;
  int componentType;
};
constexpr std::array kKinds{KindRow{ModuleKind::kStandard, "standard", kStdModule},
                            KindRow{ModuleKind::kClass, "class", kClassModule},
                            KindRow{ModuleKind::kForm, "form", kMSForm},
                            KindRow{ModuleKind::kDocument, "document", kHostDocument},
                            KindRow{ModuleKind::kUserControl, "usercontrol", kOtherComponent},
                            KindRow{ModuleKind::kPropertyPage, "propertypage", 0},
                            KindRow{ModuleKind::kUserDocument, "userdocument", 0},
                            KindRow{ModuleKind::kDesigner, "designer", 0}};

/// The hidden lines one below the other, and the editor's line that each follows.
struct JoinedLines {
  std::string text;
  std::vector<std::int32_t> follows;
};

JoinedLines Join(const std::vector<codedb::HiddenLines>& hidden) {
  JoinedLines joined;
  for (const codedb::HiddenLines& lines : hidden) {
    joined.text.append(lines.text) += '\n';
    const auto count = std::count(lines.text.begin(), lines.text.end(), '\n') + 1;
    joined.follows.insert(joined.follows.end(), static_cast<std::size_t>(count), lines.line - 1);
  }
  return joined;
}

/// "Attribute A.VB_Description = ...": the member as it is spelled there, and the attribute's name.
codedb::AttributeFact AttributeOf(const language::Module& module, const language::Attribute& attribute) {
  constexpr std::size_t kWordLength = 9;
  std::string_view name = text::Trim(module.LineText(attribute.line)).substr(kWordLength);
  name = text::Trim(text::TextBefore(name, "="));
  codedb::AttributeFact fact;
  const std::size_t dot = name.find('.');
  if (dot != std::string_view::npos) {
    fact.member = name.substr(0, dot);
    name.remove_prefix(dot + 1);
  }
  fact.name = name;
  fact.value = module.Text(attribute.value);
  return fact;
}

void TakeControls(const language::Module& module, codedb::ModuleFacts& facts) {
  for (std::size_t i = 0; i < module.controls.size(); ++i) {
    const language::Control& control = module.controls[i];
    const bool ofHeader = module.lines[control.line - 1].lineClass == language::LineClass::kHeader;
    if ((i == 0 && ofHeader) || control.nameText.length == 0) continue;  // the form itself
    codedb::ControlFact fact;
    fact.name = module.Text(control.nameText);
    fact.type = module.Text(control.type);
    // "MSForms, CommandButton" of a line VB_Control.
    fact.type.erase(0, fact.type.find_first_not_of(' ', fact.type.rfind(',') + 1));
    if (control.parent != language::kNone && control.parent != 0) {
      fact.parent = module.Text(module.controls[control.parent].nameText);
    }
    fact.inArray = control.index >= 0;
    facts.controls.push_back(std::move(fact));
  }
  const bool described = !module.controls.empty() && module.Text(module.controls.front().type).starts_with("VB.");
  facts.controlsKnown = facts.controlsKnown || described || module.facts.accessExport;
}

/// The room in which hidden lines are taken apart.
struct ParseRoom {
  language::Workspace workspace;
  language::Module module;
};

/// A read asks for thousands of modules, on several threads: the room of one is kept for the next. It belongs to no
/// thread, since MinGW frees the variables of a thread before it destroys them.
class BorrowedRoom {
 public:
  BorrowedRoom() {
    const std::lock_guard lock(mutex_);
    if (idle_.empty()) {
      room_ = std::make_unique<ParseRoom>();
    } else {
      room_ = std::move(idle_.back());
      idle_.pop_back();
    }
  }
  BorrowedRoom(const BorrowedRoom&) = delete;
  BorrowedRoom& operator=(const BorrowedRoom&) = delete;
  ~BorrowedRoom() {
    const std::lock_guard lock(mutex_);
    idle_.push_back(std::move(room_));
  }
  ParseRoom* operator->() const noexcept { return room_.get(); }

 private:
  static inline std::mutex mutex_;
  static inline std::vector<std::unique_ptr<ParseRoom>> idle_;
  std::unique_ptr<ParseRoom> room_;
};

}  // namespace

std::vector<codedb::OmissionFact> HostAutomation::Omissions() const {
  std::vector<codedb::OmissionFact> omissions;
  const std::string problem = Problem();
  if (problem.empty()) return omissions;
  text::LineReader lines(problem);
  for (std::string_view line; lines.Next(line);) omissions.push_back({{}, {}, {}, std::string(line)});
  return omissions;
}

codedb::ProjectFacts HostAutomation::FactsOfProject(int project) {
  const HostProject info = Project(project);
  codedb::ProjectFacts facts;
  facts.name = text::Utf8FromCode(info.name);
  facts.file = info.fileName.value_or(std::string());
  facts.locked = info.locked;
  return facts;
}

codedb::ModuleFacts HostAutomation::FactsOfComponent(int, const std::string& name, int) {
  codedb::ModuleFacts facts;
  facts.name = text::Utf8FromCode(name);
  return facts;
}

std::function<WholeComponent()> HostAutomation::StartReading(int project, const std::string& name, int position) {
  // The host may only be asked on this thread.
  auto whole = std::make_shared<WholeComponent>();
  whole->component = ComponentByName(project, name, position);
  whole->code = Lines(project, name, position, whole->component.lineCount);
  whole->facts = FactsOfComponent(project, name, position);
  return [whole] { return std::move(*whole); };
}

std::vector<codedb::BindingFact> HostAutomation::BindingsOfProject(int) { return {}; }

codedb::ModuleFacts FactsOfFile(office::ModuleFile file) {
  codedb::ModuleFacts facts;
  facts.name = std::move(file.utf8Name);
  facts.kind = KindWord(file.type);
  facts.replacedCharacters = static_cast<std::int64_t>(file.replaced);
  if (file.replaced > 0) facts.code = std::move(file.original);
  for (office::HiddenLines& lines : file.hidden) facts.hidden.push_back({lines.line, std::move(lines.text)});
  ReadHiddenLines(facts);
  return facts;
}

std::string KindWord(int componentType) {
  const auto* row = std::find_if(kKinds.begin(), kKinds.end(),
                                 [=](const KindRow& each) { return each.componentType == componentType; });
  return row == kKinds.end() ? std::string() : std::string(row->word);
}

void ReadHiddenLines(codedb::ModuleFacts& facts) {
  if (facts.hidden.empty()) return;
  const JoinedLines joined = Join(facts.hidden);
  language::ParseOptions options;
  const auto* known =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const KindRow& each) { return each.word == facts.kind; });
  if (known != kKinds.end()) options.kind = known->kind;
  const BorrowedRoom room;
  language::Module& module = room->module;
  language::ParseModule(joined.text, options, room->workspace, module);
  const auto* kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const KindRow& each) { return each.kind == module.facts.kind; });
  facts.kind = kind->word;
  for (const language::Attribute& attribute : module.attributes) {
    codedb::AttributeFact fact = AttributeOf(module, attribute);
    fact.line = joined.follows[attribute.line - 1];
    if (fact.name == "VB_PredeclaredId") facts.predeclared = module.facts.predeclared;
    if (fact.name == "VB_Exposed") facts.exposed = module.facts.exposed;
    facts.attributes.push_back(std::move(fact));
  }
  TakeControls(module, facts);
}

}  // namespace quillmate::host
