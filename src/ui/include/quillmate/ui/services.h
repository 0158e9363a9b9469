#pragma once

#include <quillmate/host/document_host.h>
#include <quillmate/host/joined_host.h>
#include <quillmate/settings/settings_store.h>
#include <quillmate/startup/app_globals.h>
#include <quillmate/startup/session.h>
#include <quillmate/ui/platform.h>

namespace quillmate::ui {

/// What the window works with. Everything must outlive it.
struct Services {
  startup::AppGlobals& globals;
  startup::InstanceMark& mark;
  settings::SettingsStore& settings;
  Platform& platform;
  /// The user's sources.
  host::DocumentHost& documents;
  /// What is listed and read: the documents, and the running host before them where there is one.
  host::JoinedHost& host;
};

}  // namespace quillmate::ui
