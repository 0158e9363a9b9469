#include "source_list.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/office_file.h>
#include <quillmate/office/text_export.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Problems named in one message; the others are counted.
constexpr std::size_t kNamedProblems = 8;

#ifdef Q_OS_WIN
constexpr bool kHostsRunHere = true;
#else
constexpr bool kHostsRunHere = false;
#endif

using Paths = std::vector<std::string>;

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity kPathCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity kPathCase = Qt::CaseSensitive;
#endif

bool Contains(const Paths& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(), [&path](const std::string& other) {
    return FromUtf8(other).compare(FromUtf8(path), kPathCase) == 0;
  });
}

/// Project text, module text and file: what tells a module apart from one listing to the next.
std::string Mark(const host::HostProjectNode& project, const host::HostModuleNode& module) {
  return project.text + '\n' + module.text + '\n' + module.file;
}

std::set<std::string> TickedModules(const host::HostTree& tree) {
  std::set<std::string> ticked;
  for (const host::HostProjectNode& project : tree.projects) {
    for (const host::HostModuleNode& module : project.modules) {
      if (module.checked) ticked.insert(Mark(project, module));
    }
  }
  return ticked;
}

void Tick(host::HostTree& tree, const std::set<std::string>& ticked) {
  for (host::HostProjectNode& project : tree.projects) {
    for (host::HostModuleNode& module : project.modules) {
      module.checked = ticked.contains(Mark(project, module));
      project.checked = project.checked || module.checked;
    }
  }
}

std::string LockedText(int locked) {
  if (locked == 0) return {};
  return locked == 1 ? "1 gesperrtes Projekt ausgelassen" : std::to_string(locked) + " gesperrte Projekte ausgelassen";
}

/// What stays on screen of a listing that is not whole.
std::string StatusText(const host::ListResult& result, int locked) {
  const std::string trouble = result.attached ? result.problem.substr(0, result.problem.find("\r\n")) : std::string();
  const std::string left = LockedText(locked);
  return trouble.empty() || left.empty() ? trouble + left : trouble + "; " + left;
}

std::string Lines(std::span<const host::SourceProblem> problems) {
  std::string lines;
  for (const host::SourceProblem& problem : problems) lines += "\r\n" + problem.source + ": " + problem.Text();
  return lines;
}

/// `ofHost`: lines about the running host, shown whole.
std::string ProblemText(const std::string& ofHost, const std::vector<host::SourceProblem>& problems) {
  if (ofHost.empty() && problems.empty()) return {};
  std::string text = "Folgendes konnte nicht gelesen werden:\r\n";
  if (!ofHost.empty()) text += "\r\n" + ofHost;
  const std::size_t named = std::min(problems.size(), kNamedProblems);
  text += Lines(std::span(problems).first(named));
  if (problems.size() > named) text += "\r\n... und " + std::to_string(problems.size() - named) + " weitere";
  return text;
}

/// All of them where the text names only some.
std::string ProblemList(const std::vector<host::SourceProblem>& problems) {
  return problems.size() > kNamedProblems ? Lines(problems).substr(2) : std::string();
}

std::string Normalized(const QString& path) {
  return ToUtf8(QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath())));
}

/// Without what the listing could not use.
Paths Usable(const Paths& added, const std::vector<host::SourceProblem>& problems) {
  Paths usable;
  std::copy_if(added.begin(), added.end(), std::back_inserter(usable), [&](const std::string& path) {
    return std::none_of(problems.begin(), problems.end(),
                        [&path](const host::SourceProblem& problem) { return problem.source == path; });
  });
  return usable;
}

/// `file` is the source or is in it.
bool IsIn(const std::string& file, const std::string& source) {
  const QString path = FromUtf8(file);
  const QString root = FromUtf8(source);
  return path.startsWith(root, kPathCase) &&
         (path.size() == root.size() || path[root.size()] == QDir::separator() || root.endsWith(QDir::separator()));
}

/// A folder takes in files of these kinds; any other is read only when it is named.
bool IsReadInFolders(const std::string& path) {
  const QFileInfo file(FromUtf8(path));
  const std::string extension = ToUtf8(file.suffix().toLower());
  return file.isDir() || extension == "vbp" || extension == office::kTextExportExtension ||
         office::IsModuleFileExtension("." + extension) ||
         std::ranges::find(office::OfficeFileExtensions(), extension) != std::end(office::OfficeFileExtensions());
}

Paths Joined(Paths first, const Paths& second) {
  for (const std::string& path : second) {
    if (!Contains(first, path)) first.push_back(path);
  }
  return first;
}

/// Without files and folders that are in a folder of the list, and would be read with it.
Paths WithoutInner(const Paths& paths) {
  Paths folders;
  std::ranges::copy_if(paths, std::back_inserter(folders),
                       [](const std::string& path) { return QFileInfo(FromUtf8(path)).isDir(); });
  Paths outer;
  for (const std::string& path : paths) {
    const bool isInner = std::ranges::any_of(folders, [&path](const std::string& folder) {
      return folder != path && IsIn(path, folder) && IsReadInFolders(path);
    });
    if (!isInner) outer.push_back(path);
  }
  return outer;
}

}  // namespace

SourceList::SourceList(Interaction& interaction, SourceServices services)
    : interaction_(interaction),
      services_(std::move(services)),
      model_(new HostTreeModel(this)),
      panel_(new SourcePanel(*model_)) {
  connect(panel_, &SourcePanel::MenuWanted, this, &SourceList::MenuWanted);
}

/// What the last listing could not read, in the order of the sources; locked projects after it.
std::vector<UnreadSource> SourceList::Unread() const {
  std::vector<UnreadSource> unread;
  for (const host::SourceProblem& problem : services_.documents.Problems()) {
    unread.push_back({problem.source, problem.Text()});
  }
  return unread;
}

host::ListResult SourceList::ReadTree(bool keepTicks) {
  const Working working(interaction_);
  host::HostTree tree;
  host::ListResult result = host::ListHostProjects(services_.host, services_.isAccess, tree);
  if (keepTicks) Tick(tree, TickedModules(model_->Tree()));
  const UpdateLock lock(*panel_);
  std::vector<UnreadSource> unread = Unread();
  for (const host::LockedProject& locked : tree.locked) unread.push_back({locked.file, "gesperrtes Projekt"});
  model_->SetTree(std::move(tree), std::move(unread));
  panel_->Refresh();
  return result;
}

host::ListResult SourceList::List(bool keepTicks) {
  host::ListResult result = ReadTree(keepTicks);
  emit StatusChanged(FromUtf8(StatusText(result, model_->Tree().lockedProjects)));
  return result;
}

/// One message about a listing: what the host says, and what of it and of the sources could not be read.
void SourceList::Tell(const host::ListResult& result) {
  const std::string text = host::RefreshMessage(result, model_->Tree(), services_.hostName);
  const std::string problems = ProblemText(result.problem, services_.documents.Problems());
  const std::string list = ProblemList(services_.documents.Problems());
  if (!text.empty()) {
    interaction_.Show(text, MessageIcon::kInformation, Buttons::kOk, problems, list);
  } else if (!problems.empty()) {
    interaction_.Show(problems, MessageIcon::kExclamation, Buttons::kOk, {}, list);
  }
}

void SourceList::UseSources(const Paths& sources) {
  std::vector<std::filesystem::path> paths;
  for (const std::string& source : sources) paths.push_back(files::PathFromText(source));
  services_.documents.SetSources(std::move(paths));
}

void SourceList::Remember(const Paths& sources) {
  settings::SaveSources(services_.settings, sources);
  UseSources(sources);
}

std::optional<int> SourceList::DocumentIndex(int project) const {
  if (project < 0) return std::nullopt;
  return services_.host.IndexIn(services_.documents, model_->Tree().projects[static_cast<std::size_t>(project)].index);
}

void SourceList::ListAtStart() {
  const host::ListResult result = List(false);
  if (!kHostsRunHere) return;
  const std::string text = host::RefreshMessage(result, model_->Tree(), services_.hostName);
  if (!text.empty()) interaction_.Show(text, MessageIcon::kInformation);
}

void SourceList::RefreshHostProjects() { Tell(List(false)); }

void SourceList::RefreshKeepingTicks() { Tell(List(true)); }

void SourceList::LoadUserSources() {
  reading_ = settings::LoadReadingOptions(services_.settings);
  services_.documents.SetExcel4(reading_.excel4);
  services_.documents.SetCodePage(reading_.codePage);
  UseSources(WithoutInner(settings::LoadSources(services_.settings)));
}

void SourceList::TakeReadingOptions() {
  const settings::ReadingOptions before = reading_;
  LoadUserSources();
  if (before.excel4 != reading_.excel4 || before.codePage != reading_.codePage) List(true);
}

void SourceList::AddSources(const QStringList& paths) {
  const Paths known = settings::LoadSources(services_.settings);
  Paths added;
  for (const QString& path : paths) {
    std::string source = Normalized(path);
    if (!Contains(added, source)) added.push_back(std::move(source));
  }
  UseSources(WithoutInner(Joined(known, added)));
  const host::ListResult result = List(true);
  const Paths usable = Usable(added, services_.documents.Problems());
  Remember(WithoutInner(Joined(known, usable)));
  Tell(result);
  if (usable.size() < added.size()) List(true);
  ShowFirstOf(added);
}

/// What the user has added becomes current; there may be projects of a running host and other sources around it.
void SourceList::ShowFirstOf(const Paths& sources) {
  const int project = FindProject(sources, 0);
  if (project < 0) return;
  panel_->SetCurrent(model_->index(project, 0));
}

int SourceList::FindProject(const Paths& sources, int project) const {
  for (; project < static_cast<int>(model_->Tree().projects.size()); ++project) {
    const std::optional<int> document = DocumentIndex(project);
    if (!document.has_value()) continue;
    const std::string file = services_.documents.Project(*document).fileName.value_or(std::string());
    if (std::ranges::any_of(sources, [&file](const std::string& source) { return IsIn(file, source); })) return project;
  }
  return -1;
}

void SourceList::TickAll(bool ticked) { panel_->TickShown(ticked); }

bool SourceList::TakeForNow(const QString& path) {
  UseSources(WithoutInner(Joined(settings::LoadSources(services_.settings), {Normalized(path)})));
  List(false);
  ShowFirstOf({Normalized(path)});
  return TickSource(path);
}

bool SourceList::TakeAlone(const QString& path) {
  UseSources({Normalized(path)});
  List(false);
  if (TickSource(path)) return true;
  const std::string problem = ProblemText({}, services_.documents.Problems());
  LoadUserSources();
  List(false);
  interaction_.Show(problem.empty() ? "In dieser Datei ist kein Code:\r\n" + Normalized(path) : problem,
                    MessageIcon::kExclamation);
  return false;
}

bool SourceList::TickSource(const QString& path) {
  const Paths source = {Normalized(path)};
  bool found = false;
  for (int project = FindProject(source, 0); project >= 0; project = FindProject(source, project + 1)) {
    const QModelIndex node = model_->index(project, 0);
    model_->setData(node, Qt::Checked, Qt::CheckStateRole);
    found = found || model_->rowCount(node) > 0;
  }
  return found;
}

std::string SourceList::CurrentFile() const {
  if (const UnreadSource* unread = model_->UnreadAt(panel_->Current())) {
    // A locked project of the running host is nobody's source.
    const bool isOurs = std::ranges::any_of(settings::LoadSources(services_.settings),
                                            [&](const std::string& source) { return IsIn(unread->source, source); });
    return isOurs ? unread->source : std::string();
  }
  const std::optional<int> document = DocumentIndex(Current());
  return document ? services_.documents.Project(*document).fileName.value_or(std::string()) : std::string();
}

/// What the tree shows of a source.
QStringList SourceList::ProjectsIn(const std::string& source) const {
  QStringList projects;
  for (int project = FindProject({source}, 0); project >= 0; project = FindProject({source}, project + 1)) {
    projects << model_->index(project, 0).data().toString();
  }
  return projects;
}

/// Asks before more goes than the user has pointed at.
bool SourceList::MayRemove(const std::string& source, const std::string& file, const QStringList& projects) {
  constexpr qsizetype kNamed = 8;
  QString question = QStringLiteral("Diese Quelle aus der Liste nehmen ?\r\n") + FromUtf8(source);
  if (!projects.isEmpty()) {
    question +=
        QStringLiteral("\r\n\r\nMit ihr verschwinden:\r\n") + projects.mid(0, kNamed).join(QStringLiteral("\r\n"));
  }
  if (projects.size() == kNamed + 1) question += QStringLiteral("\r\n... und 1 weiteres");
  if (projects.size() > kNamed + 1) question += QStringLiteral("\r\n... und %1 weitere").arg(projects.size() - kNamed);
  if (file != source) {
    question +=
        QStringLiteral("\r\n\r\n") + FromUtf8(file) + QStringLiteral("\r\nliegt darin und hat keinen eigenen Eintrag.");
  }
  return interaction_.Show(ToUtf8(question), MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes;
}

void SourceList::RemoveCurrentSource() {
  const std::string file = CurrentFile();
  if (file.empty()) return;
  Paths sources = settings::LoadSources(services_.settings);
  const auto found = std::ranges::find_if(sources, [&file](const std::string& source) { return IsIn(file, source); });
  // What was listed for once goes with the next listing.
  const std::string source = found == sources.end() ? file : *found;
  const QStringList projects = ProjectsIn(source);
  if ((projects.size() > 1 || file != source) && !MayRemove(source, file, projects)) return;
  std::erase_if(sources, [&source](const std::string& other) { return other == source; });
  Remember(WithoutInner(sources));
  List(true);
  emit StatusChanged(QStringLiteral("Aus der Liste genommen: ") + FromUtf8(source));
}

}  // namespace quillmate::ui
