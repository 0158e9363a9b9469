#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/joined_host.h>
#include <quillmate/settings/settings_store.h>

#include "host_tree_model.h"
#include "interaction.h"
#include "node_tree.h"

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

  QTreeView& Tree() const { return *tree_; }
  const host::HostTree& Projects() const { return model_->Tree(); }

  /// Lists the projects of the host anew, all expanded, nothing ticked, and tells the user when there is nothing to see
  /// or something could not be read.
  void RefreshHostProjects();
  /// The same when the program starts: a running host that gives nothing beside the user's own sources is not worth a
  /// message at each start, the status bar says so.
  void ListAtStart();
  /// The same after something went wrong with the modules ticked: the ticks stay.
  void RefreshKeepingTicks();
  /// Offers to forget sources that are there but give nothing to read, behind a listing that the user asked for.
  void OfferToForgetUnreadable();

  /// Takes the remembered sources into use.
  void LoadUserSources();
  /// Adds files and folders to the sources and remembers those that can be read.
  void AddSources(const QStringList& paths);
  /// Ticks everything, or nothing.
  void TickAll(bool ticked);
  /// Ticks what lies in a source; false when there is nothing.
  bool TickSource(const QString& path);
  /// True when the current project of the tree comes from the user's sources, not from the running host.
  bool IsCurrentFromSource() const { return DocumentIndex(Current()).has_value(); }
  /// Takes the source of the current project out of the sources; nothing happens to a project of the running host.
  void RemoveCurrentSource();

 signals:
  /// What stays on screen of a listing that is not whole; empty otherwise.
  void StatusChanged(const QString& text);
  /// The context menu is wanted; the place is global.
  void MenuWanted(const QPoint& place);

 private:
  using Paths = std::vector<std::string>;

  /// 0-based position of the current project in the tree; -1 for none.
  int Current() const { return model_->ProjectOf(tree_->currentIndex()); }
  host::ListResult List(bool keepTicks);
  host::ListResult ReadTree(bool keepTicks);
  void Refresh(const host::ListResult& result);
  void Tell(const host::ListResult& result);
  void UseSources(const Paths& sources);
  void Remember(const Paths& sources);
  void ShowFirstOf(const Paths& sources);
  void OfferToForget(const std::string& heading, const std::function<bool(const std::string&)>& isUseless);
  /// The index within the documents of a project of the tree; nothing for the running host's.
  std::optional<int> DocumentIndex(int project) const;
  /// The first project at or behind `project` that lies in one of the sources; -1 for none.
  int FindProject(const Paths& sources, int project) const;

  Interaction& interaction_;
  SourceServices services_;
  TickTree* tree_;
  HostTreeModel* model_;
};

}  // namespace quillmate::ui
