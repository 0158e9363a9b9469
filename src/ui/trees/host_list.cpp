#include "host_list.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/settings/sources.h>
#include <quillmate/startup/edition.h>

#include "project_view.h"
#include "qt_text.h"
#include "shell.h"

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

host::ListResult ReadTree(Shell& shell, bool keepTicks) {
  const Working working(shell);
  host::HostTree tree;
  host::ListResult result =
      host::ListHostProjects(shell.around.host, shell.Globals().hostSelector == startup::kAccess, tree);
  if (keepTicks) Tick(tree, TickedModules(shell.hostModel->Tree()));
  const UpdateLock lock(*shell.treApp);
  shell.hostModel->SetTree(std::move(tree));
  shell.treApp->expandAll();
  return result;
}

host::ListResult List(Shell& shell, bool keepTicks) {
  host::ListResult result = ReadTree(shell, keepTicks);
  shell.staBar->SetText(StatusPanels::kProgress, FromUtf8(StatusText(result, shell.hostModel->Tree().lockedProjects)));
  return result;
}

/// `ofHost`: lines about the running host, shown whole.
std::string ProblemText(const std::string& ofHost, const std::vector<host::SourceProblem>& problems) {
  if (ofHost.empty() && problems.empty()) return {};
  std::string text = "Folgendes konnte nicht gelesen werden:\r\n";
  if (!ofHost.empty()) text += "\r\n" + ofHost;
  const std::size_t named = std::min(problems.size(), kNamedProblems);
  for (std::size_t i = 0; i < named; ++i) text += "\r\n" + problems[i].source + ": " + problems[i].reason;
  if (problems.size() > named) text += "\r\n... und " + std::to_string(problems.size() - named) + " weitere";
  return text;
}

/// One message about a listing: what the host says, and what of it and of the sources could not be read.
void Tell(Shell& shell, const host::ListResult& result) {
  const std::string text = host::RefreshMessage(result, shell.hostModel->Tree(), shell.Globals().HostName);
  const std::string problems = ProblemText(result.problem, shell.around.documents.Problems());
  if (!text.empty()) {
    shell.Show(text, MessageIcon::kInformation, Buttons::kOk, problems);
  } else if (!problems.empty()) {
    shell.Show(problems, MessageIcon::kExclamation);
  }
}

void UseSources(Shell& shell, const Paths& sources) {
  std::vector<std::filesystem::path> paths;
  for (const std::string& source : sources) paths.push_back(files::PathFromText(source));
  shell.around.documents.SetSources(std::move(paths));
}

void Remember(Shell& shell, const Paths& sources) {
  settings::SaveSources(shell.around.settings, sources);
  UseSources(shell, sources);
}

bool Exists(const std::string& source) { return QFileInfo::exists(FromUtf8(source)); }

/// Offers to forget sources that are of no use: nothing in the tree stands for them.
void OfferToForget(Shell& shell, const std::string& heading, const std::function<bool(const std::string&)>& isUseless) {
  Paths kept;
  std::string useless;
  for (const std::string& source : settings::LoadSources(shell.around.settings)) {
    if (isUseless(source)) {
      useless += "\r\n" + source;
    } else {
      kept.push_back(source);
    }
  }
  if (useless.empty()) return;
  const Answer answer = shell.Show(heading + "\r\n" + useless + "\r\n\r\nAus der Liste entfernen ?",
                                   MessageIcon::kQuestion, Buttons::kYesNo);
  if (answer == Answer::kYes) Remember(shell, kept);
}

void OfferToForgetLost(Shell& shell) {
  OfferToForget(shell, "Diese Quellen gibt es nicht mehr:", [](const std::string& source) { return !Exists(source); });
}

void Refresh(Shell& shell, const host::ListResult& result) {
  Tell(shell, result);
  OfferToForgetLost(shell);
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

/// The index within the documents of a project of the tree; nothing for the running host's.
std::optional<int> DocumentIndex(const Shell& shell, int project) {
  if (project < 0) return std::nullopt;
  const std::string& key = shell.hostModel->Tree().projects[static_cast<std::size_t>(project)].key;
  return shell.around.host.IndexIn(shell.around.documents, host::ProjectIndex(key));
}

Paths Joined(Paths first, const Paths& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

void ListAtStart(Shell& shell) {
  host::ListResult result = List(shell, false);
  if (result.attached) result.problem.clear();
  Refresh(shell, result);
}

void RefreshHostProjects(Shell& shell) { Refresh(shell, List(shell, false)); }

void RefreshKeepingTicks(Shell& shell) { Refresh(shell, List(shell, true)); }

void LoadUserSources(Shell& shell) { UseSources(shell, settings::LoadSources(shell.around.settings)); }

void AddSources(Shell& shell, const QStringList& paths) {
  if (shell.mode != 0) {
    if (!ConfirmUnsaved(shell)) return;
    ResetProject(shell);
  }
  const Paths known = settings::LoadSources(shell.around.settings);
  Paths added;
  for (const QString& path : paths) {
    std::string source = Normalized(path);
    if (!Contains(known, source) && !Contains(added, source)) added.push_back(std::move(source));
  }
  UseSources(shell, Joined(known, added));
  const host::ListResult result = List(shell, true);
  Remember(shell, Joined(known, Usable(added, shell.around.documents.Problems())));
  shell.treApp->scrollToBottom();
  Tell(shell, result);
}

void OfferToForgetUnreadable(Shell& shell) {
  std::set<std::string> unreadable;
  for (const host::SourceProblem& problem : shell.around.documents.Problems()) unreadable.insert(problem.source);
  // What could be read in part stands in the tree, and goes from there.
  const int projects = static_cast<int>(shell.hostModel->Tree().projects.size());
  for (int project = 0; project < projects; ++project) {
    const std::optional<int> document = DocumentIndex(shell, project);
    if (document.has_value()) unreadable.erase(shell.around.documents.Project(*document).fileName.value_or(""));
  }
  OfferToForget(shell, "Diese Quellen lassen sich nicht lesen:", [&unreadable](const std::string& source) {
    return unreadable.contains(source) && Exists(source);
  });
}

bool IsFromSource(const Shell& shell, int project) { return DocumentIndex(shell, project).has_value(); }

void RemoveSourceOf(Shell& shell, int project) {
  const std::optional<int> document = DocumentIndex(shell, project);
  if (!document.has_value()) return;
  const std::string source = shell.around.documents.Project(*document).fileName.value_or(std::string());
  Paths sources = settings::LoadSources(shell.around.settings);
  if (std::erase(sources, source) == 0) {
    // An Office file below a folder that was added as a whole.
    shell.Show("Die Datei " + source + "\r\nliegt in einem Ordner, der als Quelle hinzugefügt ist.\r\n" +
                   "Sie verschwindet erst mit diesem Ordner.",
               MessageIcon::kInformation);
    return;
  }
  Remember(shell, sources);
  List(shell, true);
}

}  // namespace quillmate::ui
