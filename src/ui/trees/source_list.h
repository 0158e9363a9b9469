#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/joined_host.h>
#include <quillmate/settings/settings_store.h>
#include <quillmate/settings/sources.h>

#include "host_tree_model.h"
#include "interaction.h"
#include "source_panel.h"

namespace quillmate::ui {

/// What the sources are listed from. Everything must outlive the list.
struct SourceServices {
  settings::SettingsStore& settings;
  /// The user's sources.
  host::DocumentHost& documents;
  /// What is listed and read: the documents, and the running host before them where there is one.
  host::JoinedHost& host;
  std::string hostName;
  bool isAccess = false;
};

/// The tree of what can be read, `treApp`, and the sources behind it.
class SourceList : public QObject {
  Q_OBJECT

 public:
  SourceList(Interaction& interaction, SourceServices services);

  /// What is seen of it, and the tree in it.
  SourcePanel& Panel() const { return *panel_; }
  QTreeView& Tree() const { return panel_->Tree(); }
  const host::HostTree& Projects() const { return model_->Tree(); }

  /// Lists the projects of the host anew, all expanded, nothing ticked, and tells the user when there is nothing to see
  /// or something could not be read.
  void RefreshHostProjects();
  /// The same, and what is still there stays ticked.
  void RefreshKeepingTicks();
  /// The same when the program starts: what could not be read is grey in the tree, and not worth a message at each
  /// start. Where no host can run none is missed.
  void ListAtStart();

  /// Takes the remembered sources into use.
  void LoadUserSources();
  /// Adds files and folders to the sources and remembers those that can be read.
  void AddSources(const QStringList& paths);
  /// Ticks everything, or nothing.
  void TickAll(bool ticked);
  /// Ticks what is in a source; false when there is nothing.
  bool TickSource(const QString& path);
  /// Lists a source until the next time that the sources change, without remembering it, and ticks it and nothing
  /// else. False when there is nothing to read.
  bool TakeForNow(const QString& path);
  /// The same with the source in place of the user's. When there is nothing to read it says why and lists those again.
  bool TakeAlone(const QString& path);
  /// True when the current node of the tree comes from the user's sources, not from the running host.
  bool IsCurrentFromSource() const { return !CurrentFile().empty(); }
  /// Takes the source of the current node out of the sources, after naming all that goes with it; nothing happens to a
  /// project of the running host.
  void RemoveCurrentSource();

  /// How module files are read from now on, as the settings have it. Lists anew where that is not what it was.
  void TakeReadingOptions();

 signals:
  /// What stays on screen of a listing that is not whole; empty otherwise.
  void StatusChanged(const QString& text);
  /// The context menu is wanted; the place is global.
  void MenuWanted(const QPoint& place);

 private:
  using Paths = std::vector<std::string>;

  /// 0-based position of the current project in the tree; -1 for none.
  int Current() const { return model_->ProjectOf(panel_->Current()); }
  /// The file or folder that the current node stands for; empty for none of the user's.
  std::string CurrentFile() const;
  host::ListResult List(bool keepTicks);
  host::ListResult ReadTree(bool keepTicks);
  std::vector<UnreadSource> Unread() const;
  void Tell(const host::ListResult& result);
  void UseSources(const Paths& sources);
  void Remember(const Paths& sources);
  void ShowFirstOf(const Paths& sources);
  bool MayRemove(const std::string& source, const std::string& file, const QStringList& projects);
  QStringList ProjectsIn(const std::string& source) const;
  /// The index within the documents of a project of the tree; nothing for the running host's.
  std::optional<int> DocumentIndex(int project) const;
  /// The first project at or after `project` that is in one of the sources; -1 for none.
  int FindProject(const Paths& sources, int project) const;

  Interaction& interaction_;
  SourceServices services_;
  HostTreeModel* model_;
  SourcePanel* panel_;
  settings::ReadingOptions reading_;
};

}  // namespace quillmate::ui
