#include <algorithm>
#include <array>
#include <exception>

#include <quillmate/codedb/codes.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::host {
namespace {

constexpr std::string_view kFormPrefix = "Form_";
constexpr std::size_t kReportPrefixLength = 7;
/// The first release that can refuse the access to its projects.
constexpr float kAccessSwitchVersion = 10.0F;
constexpr int kFewestLines = 3;

constexpr std::string_view kHostPlaceholder = "Excel";

constexpr std::string_view kNoProjectsText =
    "Excel ist zwar im Moment geöffnet, aber es gibt keine auslesbaren Projekte.\r\n"
    "\r\n"
    "Bitte öffnen Sie in Excel die Datei, deren Code Sie einlesen möchten und klicken Sie danach auf Aktualisieren "
    "Excel Projekte.\r\n"
    "\r\n"
    "Alternativ können Sie über Öffnen Projekte einlesen, die mit Quillmate erzeugt wurden.\r\n";

constexpr std::string_view kAccessRefusedText =
    "Sie benutzen ExcelXP.\r\n"
    "Ihre Anwendung ist zwar geöffnet, aber der Zugriff wird verweigert.\r\n"
    "Dies können Sie ändern, indem Sie in Excel bei Extras - Makro - Sicherheit -vertrauenswürdige Quellen\r\n"
    "den Zugriff auf VBA-Projekte vertrauen anhaken.\r\n"
    "Lesen Sie dazu unbedingt auch in der Hilfe die Informationen zu Office XP\r\n"
    "\r\n"
    "Klicken Sie nachdem Sie die Einstellungen vorgenommen haben auf Aktualisieren";

constexpr std::string_view kNotOpenText =
    "Excel ist im Moment nicht geöffnet. Es können daher keine Projekte aus Excel angezeigt werden. \r\n"
    "\r\n"
    "Bitte öffnen Sie Excel und öffnen Sie die Mappe, deren Code Sie einlesen möchten !\r\n"
    "Klicken Sie danach auf Aktualisieren Excel Projekte.\r\n"
    "\r\n"
    "\r\n"
    "Alternativ können Sie über Öffnen Projekte einlesen, die mit Quillmate erzeugt wurden.";

struct ComponentKind {
  int type;
  int moduleKind;
  std::string_view image;
};
constexpr std::array kComponentKinds{
    ComponentKind{kHostDocument, codedb::kDocument, "M5"}, ComponentKind{kStdModule, codedb::kStandard, "M2"},
    ComponentKind{kClassModule, codedb::kClass, "M3"}, ComponentKind{kMSForm, codedb::kForm, "M1"}};
constexpr ComponentKind kOther{0, codedb::kOtherKind, "XXX"};

const ComponentKind& KindOf(int componentType) noexcept {
  const auto* found = std::find_if(kComponentKinds.begin(), kComponentKinds.end(),
                                   [=](const ComponentKind& kind) { return kind.type == componentType; });
  return found == kComponentKinds.end() ? kOther : *found;
}

int KindOfNode(int componentType, bool accessEdition, std::string_view name) noexcept {
  const bool isForm = componentType == kHostDocument && accessEdition && name.starts_with(kFormPrefix);
  return isForm ? codedb::kForm : KindOf(componentType).moduleKind;
}

/// What the tree shows for a component: Access gives form and report modules a prefix.
std::string NodeText(int componentType, bool accessEdition, const std::string& name) {
  if (componentType != kHostDocument || !accessEdition) return name;
  const std::size_t prefix = name.starts_with(kFormPrefix) ? kFormPrefix.size() : kReportPrefixLength;
  return name.substr(std::min(prefix, name.size()));
}

/// The file name without its folder. A path of this system may hold a "\" in a name, one of Windows never a "/".
std::string_view WithoutFolder(std::string_view fileName) noexcept {
  return text::TextAfterLast(fileName, fileName.starts_with('/') ? "/" : "\\");
}

std::string ProjectText(const HostProject& project) {
  const std::string file = project.fileName.has_value() ? text::CodeFromUtf8(WithoutFolder(*project.fileName))
                                                        : std::string("Nicht gespeichert");
  return project.name + " [" + file + "]";
}

HostModuleNode ModuleNode(const std::string& projectKey, const HostComponent& component, int position,
                          bool accessEdition) {
  HostModuleNode node;
  node.name = component.name;
  node.key = projectKey + component.name;
  node.text = NodeText(component.type, accessEdition, component.name);
  node.image = HostImageKey(component.type, accessEdition, component.name);
  node.kind = KindOfNode(component.type, accessEdition, component.name);
  node.file = component.file;
  node.position = position;
  return node;
}

HostProjectNode ProjectNode(HostAutomation& host, int index, const HostProject& project, bool accessEdition,
                            bool withSmall) {
  HostProjectNode node;
  node.index = index;
  node.key = "A" + std::to_string(index) + "\\";
  node.text = ProjectText(project);
  const int components = host.ComponentCount(index);
  for (int position = 1; position <= components; ++position) {
    const HostComponent component = host.Component(index, position);
    if (IsListed(component) || (withSmall && component.lineCount > 0)) {
      node.modules.push_back(ModuleNode(node.key, component, position, accessEdition));
    }
  }
  return node;
}

HostTree ReadTree(HostAutomation& host, bool accessEdition, bool withSmall) {
  HostTree tree;
  const int projects = host.ProjectCount();
  for (int index = 1; index <= projects; ++index) {
    const HostProject project = host.Project(index);
    if (project.locked) {
      ++tree.lockedProjects;
      tree.locked.push_back({project.fileName.value_or(text::Utf8FromCode(project.name))});
    } else {
      tree.projects.push_back(ProjectNode(host, index, project, accessEdition, withSmall));
    }
  }
  return tree;
}

}  // namespace

bool HostTree::AnyChecked() const noexcept {
  return std::any_of(projects.begin(), projects.end(), [](const HostProjectNode& project) {
    return project.checked || std::any_of(project.modules.begin(), project.modules.end(),
                                          [](const HostModuleNode& module) { return module.checked; });
  });
}

std::size_t HostTree::CheckedModules() const noexcept {
  std::size_t count = 0;
  for (const HostProjectNode& project : projects) {
    count += static_cast<std::size_t>(std::count_if(project.modules.begin(), project.modules.end(),
                                                    [](const HostModuleNode& module) { return module.checked; }));
  }
  return count;
}

ListResult ListHostProjects(HostAutomation& host, bool accessEdition, HostTree& tree, bool withSmall) {
  tree = HostTree{};
  ListResult result;
  result.attached = host.AttachHost();
  result.version = host.HostVersion();
  if (result.attached) {
    try {
      tree = ReadTree(host, accessEdition, withSmall);
    } catch (const std::exception& error) {
      // A host that switched the access to its projects off may let itself be attached and refuse here.
      result.attached = false;
      result.problem = error.what();
    }
  }
  if (result.problem.empty()) result.problem = host.Problem();
  host.Release();
  return result;
}

std::string RefreshMessage(const ListResult& result, const HostTree& tree, std::string_view hostName) {
  if (result.attached && !tree.projects.empty()) return {};
  const std::string_view message = result.attached                          ? kNoProjectsText
                                   : result.version >= kAccessSwitchVersion ? kAccessRefusedText
                                                                            : kNotOpenText;
  return text::ReplaceAll(message, kHostPlaceholder, hostName);
}

bool IsListed(const HostComponent& component) noexcept { return component.lineCount >= kFewestLines; }

int ModuleKindOf(int componentType) noexcept { return KindOf(componentType).moduleKind; }

std::string HostImageKey(int componentType, bool accessEdition, std::string_view name) {
  if (componentType == kHostDocument && accessEdition) return name.starts_with(kFormPrefix) ? "M1" : "M6";
  return std::string(KindOf(componentType).image);
}

}  // namespace quillmate::host
