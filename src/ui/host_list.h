#pragma once

#include <QStringList>

/// The host tree on screen, and the sources behind it.
namespace quillmate::ui {

class Shell;

/// Lists the projects of the host anew, all expanded, nothing ticked, and tells the user when there is nothing to see
/// or something could not be read.
void RefreshHostProjects(Shell& shell);
/// The same after something went wrong with the modules ticked: the ticks stay.
void RefreshKeepingTicks(Shell& shell);

/// Takes the remembered sources into use.
void LoadUserSources(Shell& shell);
/// Adds files and folders to the sources and remembers those that can be read. A loaded project is left first.
void AddSources(Shell& shell, const QStringList& paths);
/// Takes the source of a project (0-based position in the tree) out of the sources.
void RemoveSourceOf(Shell& shell, int project);

}  // namespace quillmate::ui
