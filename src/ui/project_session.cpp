#include "project_session.h"

namespace quillmate::ui {

ProjectSession::ProjectSession(codedb::CodeDatabase& index, std::filesystem::path& folder)
    : Session(index, folder, *this) {
  connect(&idle_, &QTimer::timeout, this, [this] {
    if (!ReadAhead()) idle_.stop();
  });
}

void ProjectSession::OnProjectChanged() {
  idle_.start();
  emit ProjectChanged();
}

}  // namespace quillmate::ui
