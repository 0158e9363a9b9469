#include "source_list.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/settings/sources.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Problems named in one message; the others are counted.
constexpr std::size_t kNamedProblems = 8;

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
  for (const host::SourceProblem& problem : problems) lines += "\r\n" + problem.source + ": " + problem.reason;
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

bool Exists(const std::string& source) { return QFileInfo::exists(FromUtf8(source)); }

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

/// `file` is the source or lies in it.
bool IsIn(const std::string& file, const std::string& source) {
  const QString path = FromUtf8(file);
  const QString root = FromUtf8(source);
  return path.startsWith(root, kPathCase) &&
         (path.size() == root.size() || path[root.size()] == QDir::separator() || root.endsWith(QDir::separator()));
}

Paths Joined(Paths first, const Paths& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

SourceList::SourceList(Interaction& interaction, SourceServices services)
    : interaction_(interaction), services_(std::move(services)), tree_(new TickTree), model_(new HostTreeModel(tree_)) {
  SetUpTree(*tree_, QStringLiteral("treApp"));
  tree_->setModel(model_);
  connect(tree_, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
    tree_->setCurrentIndex(tree_->indexAt(place));
    emit MenuWanted(tree_->viewport()->mapToGlobal(place));
  });
}

host::ListResult SourceList::ReadTree(bool keepTicks) {
  const Working working(interaction_);
  host::HostTree tree;
  host::ListResult result = host::ListHostProjects(services_.host, services_.isAccess, tree);
  if (keepTicks) Tick(tree, TickedModules(model_->Tree()));
  const UpdateLock lock(*tree_);
  model_->SetTree(std::move(tree));
  tree_->expandAll();
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

/// Offers to forget sources that are of no use: nothing in the tree stands for them.
void SourceList::OfferToForget(const std::string& heading, const std::function<bool(const std::string&)>& isUseless) {
  Paths kept;
  std::string useless;
  for (const std::string& source : settings::LoadSources(services_.settings)) {
    if (isUseless(source)) {
      useless += "\r\n" + source;
    } else {
      kept.push_back(source);
    }
  }
  if (useless.empty()) return;
  const Answer answer = interaction_.Show(heading + "\r\n" + useless + "\r\n\r\nAus der Liste entfernen ?",
                                          MessageIcon::kQuestion, Buttons::kYesNo);
  if (answer == Answer::kYes) Remember(kept);
}

void SourceList::Refresh(const host::ListResult& result) {
  Tell(result);
  OfferToForget("Diese Quellen gibt es nicht mehr:", [](const std::string& source) { return !Exists(source); });
}

std::optional<int> SourceList::DocumentIndex(int project) const {
  if (project < 0) return std::nullopt;
  const std::string& key = model_->Tree().projects[static_cast<std::size_t>(project)].key;
  return services_.host.IndexIn(services_.documents, host::ProjectIndex(key));
}

void SourceList::ListAtStart() {
  host::ListResult result = List(false);
  if (result.attached) result.problem.clear();
  Refresh(result);
}

void SourceList::RefreshHostProjects() { Refresh(List(false)); }

void SourceList::RefreshKeepingTicks() { Refresh(List(true)); }

void SourceList::LoadUserSources() { UseSources(settings::LoadSources(services_.settings)); }

void SourceList::AddSources(const QStringList& paths) {
  const Paths known = settings::LoadSources(services_.settings);
  Paths added;
  for (const QString& path : paths) {
    std::string source = Normalized(path);
    if (!Contains(known, source) && !Contains(added, source)) added.push_back(std::move(source));
  }
  UseSources(Joined(known, added));
  const host::ListResult result = List(true);
  Remember(Joined(known, Usable(added, services_.documents.Problems())));
  ShowFirstOf(added);
  Tell(result);
}

/// What the user has added becomes current; there may be projects of a running host and other sources around it.
void SourceList::ShowFirstOf(const Paths& sources) {
  const int project = FindProject(sources, 0);
  if (project < 0) return;
  const QModelIndex node = model_->index(project, 0);
  tree_->setCurrentIndex(node);
  tree_->scrollTo(node, QAbstractItemView::PositionAtTop);
}

int SourceList::FindProject(const Paths& sources, int project) const {
  for (; project < model_->rowCount(); ++project) {
    const std::optional<int> document = DocumentIndex(project);
    if (!document.has_value()) continue;
    const std::string file = services_.documents.Project(*document).fileName.value_or(std::string());
    if (std::ranges::any_of(sources, [&file](const std::string& source) { return IsIn(file, source); })) return project;
  }
  return -1;
}

void SourceList::TickAll(bool ticked) {
  for (int project = 0; project < model_->rowCount(); ++project) {
    model_->setData(model_->index(project, 0), ticked ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
  }
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

void SourceList::OfferToForgetUnreadable() {
  std::set<std::string> unreadable;
  for (const host::SourceProblem& problem : services_.documents.Problems()) unreadable.insert(problem.source);
  // What could be read in part stands in the tree, and goes from there.
  const int projects = static_cast<int>(model_->Tree().projects.size());
  for (int project = 0; project < projects; ++project) {
    const std::optional<int> document = DocumentIndex(project);
    if (document.has_value()) unreadable.erase(services_.documents.Project(*document).fileName.value_or(""));
  }
  OfferToForget("Diese Quellen lassen sich nicht lesen:",
                [&unreadable](const std::string& source) { return unreadable.contains(source) && Exists(source); });
}

void SourceList::RemoveCurrentSource() {
  const std::optional<int> document = DocumentIndex(Current());
  if (!document.has_value()) return;
  const std::string source = services_.documents.Project(*document).fileName.value_or(std::string());
  Paths sources = settings::LoadSources(services_.settings);
  if (std::erase(sources, source) == 0) {
    // An Office file below a folder that was added as a whole.
    interaction_.Show("Die Datei " + source + "\r\nliegt in einem Ordner, der als Quelle hinzugefügt ist.\r\n" +
                          "Sie verschwindet erst mit diesem Ordner.",
                      MessageIcon::kInformation);
    return;
  }
  Remember(sources);
  List(true);
}

}  // namespace quillmate::ui
