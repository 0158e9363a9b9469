#pragma once

#include <QStringList>

/// The host tree on screen, and the sources behind it.
namespace quillmate::ui {

class Shell;

/// Lists the projects of the host anew, all expanded, nothing ticked, and tells the user when there is nothing to see
/// or something could not be read.
void RefreshHostProjects(Shell& shell);
/// The same when the program starts: a running host that gives nothing beside the user's own sources is not worth a
/// message at each start, the status bar says so.
void ListAtStart(Shell& shell);
/// The same after something went wrong with the modules ticked: the ticks stay.
void RefreshKeepingTicks(Shell& shell);

/// Offers to forget sources that are there but give nothing to read, behind a listing that the user asked for.
void OfferToForgetUnreadable(Shell& shell);

/// Takes the remembered sources into use.
void LoadUserSources(Shell& shell);
/// Adds files and folders to the sources and remembers those that can be read. A loaded project is left first.
void AddSources(Shell& shell, const QStringList& paths);
/// True when a project (0-based position in the tree, -1 for none) comes from the user's sources, not from the running
/// host.
bool IsFromSource(const Shell& shell, int project);
/// Takes the source of such a project out of the sources; nothing happens to a project of the running host.
void RemoveSourceOf(Shell& shell, int project);

}  // namespace quillmate::ui
