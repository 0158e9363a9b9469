#include <array>

#include <quillmate/project/reason.h>

namespace quillmate::project {
namespace {

using enum ProjectReason;
using Words = files::ReasonWords<ProjectReason>;

constexpr std::array kWords{
    Words{kNoModule, "%1 enthält kein lesbares Modul"},
    Words{kNotRead, "%1"},
    Words{kManyModules, "Mehr als %1 Module kann das Fenster nicht zeigen."},
};
static_assert(files::IsComplete(kWords, kManyModules));

}  // namespace

std::error_code make_error_code(ProjectReason reason) noexcept {
  static const files::ReasonCategory category("project", kWords);
  return {static_cast<int>(reason), category};
}

}  // namespace quillmate::project
