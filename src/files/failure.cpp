#include <array>
#include <cerrno>
#include <new>
#include <optional>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr auto kReasons = std::to_array<std::pair<int, const char*>>({
    {ENOENT, "Datei oder Ordner existiert nicht"},
    {EACCES, "Zugriff verweigert"},
    {EPERM, "Zugriff verweigert"},
    {EROFS, "Der Datenträger ist schreibgeschützt"},
    {ENOSPC, "Der Datenträger ist voll"},
#ifdef EDQUOT
    {EDQUOT, "Der Platz, der Ihnen auf dem Datenträger zusteht, ist belegt"},
#endif
    {EFBIG, "Die Datei ist zu groß"},
    {EIO, "Der Datenträger meldet einen Fehler"},
    {EISDIR, "Das ist ein Ordner"},
    {ENOTDIR, "Der Weg führt durch eine Datei"},
    {ENOTEMPTY, "Der Ordner ist nicht leer"},
    {EEXIST, "Der Name ist schon vergeben"},
    {ENAMETOOLONG, "Der Name ist zu lang"},
    {EINVAL, "Der Name ist nicht erlaubt"},
    {ELOOP, "Die Verknüpfungen laufen im Kreis"},
    {EMFILE, "Zu viele offene Dateien"},
    {ENFILE, "Zu viele offene Dateien"},
    {EBUSY, "Ein anderes Programm benutzt die Datei oder den Ordner"},
    {ETXTBSY, "Ein anderes Programm benutzt die Datei oder den Ordner"},
    {EXDEV, "Das Ziel liegt auf einem anderen Datenträger"},
    {EBADF, "Geschlossen"},
    {ENOTSUP, "Das ist keine gewöhnliche Datei"},
    {ENOMEM, "Der Arbeitsspeicher reicht nicht aus"},
});

constexpr std::array kWords{
    ReasonWords<FileReason>{FileReason::kNoFolder, "Das ist kein Ordner"},
    ReasonWords<FileReason>{FileReason::kIsInput, "Aus dieser Datei wird gelesen, sie wird nicht überschrieben:\r\n%p"},
};
static_assert(IsComplete(kWords, FileReason::kIsInput));

constexpr const char* ActionText(FileAction action) noexcept {
  switch (action) {
    case FileAction::kRead:
      return "gelesen";
    case FileAction::kWrite:
      return "geschrieben";
    case FileAction::kMakeFolder:
      return "angelegt";
    case FileAction::kList:
      return "aufgelistet";
    case FileAction::kRemove:
      return "entfernt";
  }
  return "";
}

bool IsSystemCode(const std::error_code& code) noexcept {
  return code.category() == std::generic_category() || code.category() == std::system_category();
}

}  // namespace

struct Failure::State {
  std::error_code code;
  fs::path path;
  std::vector<std::string> details;
  std::optional<Failure> cause;
  std::string text;

  std::string Place(char sign) const {
    if (sign == 'p') return PathText(path);
    if (sign == 'c') return cause ? cause->what() : std::string();
    const auto number = static_cast<std::size_t>(sign - '1');
    return number < details.size() ? details[number] : std::string();
  }

  /// What is around the words goes by them: a place in a detail is none.
  std::string Text(const char* separator) const {
    const std::string words = ReasonText(code);
    const bool namesPath = words.find("%p") != std::string::npos;
    std::string out = path.empty() || namesPath ? std::string() : PathText(path) + separator;
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] == '%' && i + 1 < words.size()) {
        out += Place(words[++i]);
      } else {
        out += words[i];
      }
    }
    if (cause && words.find("%c") == std::string::npos) out.append(": ").append(cause->what());
    return out;
  }
};

namespace {

template <typename State>
std::shared_ptr<const State> WithText(State state) {
  state.text = state.Text(": ");
  return std::make_shared<const State>(std::move(state));
}

}  // namespace

Failure::Failure(const std::error_code& code, fs::path path, std::vector<std::string> details)
    : state_(WithText(State{code, std::move(path), std::move(details), {}, {}})) {}

Failure::Failure(const std::error_code& code, const Failure& cause, fs::path path, std::vector<std::string> details)
    : state_(WithText(State{code, std::move(path), std::move(details), cause, {}})) {}

Failure::Failure(FileAction action, fs::path path, const std::error_code& code) {
  std::string text = PathText(path) + " kann nicht " + ActionText(action) + " werden: " + ReasonText(code);
  state_ = std::make_shared<const State>(State{code, std::move(path), {}, {}, std::move(text)});
}

Failure::Failure(FileAction action, fs::path path, int code)
    : Failure(action, std::move(path), std::error_code(code, std::generic_category())) {}

const char* Failure::what() const noexcept { return state_->text.c_str(); }

const std::error_code& Failure::Code() const noexcept { return state_->code; }

const fs::path& Failure::Path() const noexcept { return state_->path; }

bool Failure::Is(const std::error_code& code) const noexcept {
  return state_->code == code || (state_->cause && state_->cause->Is(code));
}

Failure Failure::At(fs::path path) const {
  Failure copy = *this;
  State state = *state_;
  state.path = std::move(path);
  copy.state_ = WithText(std::move(state));
  return copy;
}

std::string Failure::Text(const char* separator) const { return state_->Text(separator); }

std::error_code make_error_code(FileReason reason) noexcept {
  static const ReasonCategory category("files", kWords);
  return {static_cast<int>(reason), category};
}

std::string ReasonText(const std::error_code& code) {
  const std::error_condition condition = code.default_error_condition();
  if (condition.category() == std::generic_category()) {
    for (const auto& [known, text] : kReasons) {
      if (known == condition.value()) return text;
    }
  }
  if (!code) return "Der Grund ist unbekannt";
  if (!IsSystemCode(code)) return code.message();
  return "Fehler " + std::to_string(code.value()) + " des Betriebssystems";
}

std::string ReasonText(int code) { return ReasonText(std::error_code(code, std::generic_category())); }

std::string FailureText(const std::exception& failure, const char* separator) {
  if (const auto* refused = dynamic_cast<const Failure*>(&failure)) return refused->Text(separator);
  if (const auto* refused = dynamic_cast<const fs::filesystem_error*>(&failure)) {
    return PathText(refused->path1()) + separator + ReasonText(refused->code());
  }
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) return ReasonText(ENOMEM);
  return failure.what();
}

bool IsOfSystem(const std::exception& failure) noexcept {
  const auto* refused = dynamic_cast<const Failure*>(&failure);
  return refused != nullptr ? IsSystemCode(refused->Code())
                            : dynamic_cast<const fs::filesystem_error*>(&failure) != nullptr ||
                                  dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
}

}  // namespace quillmate::files
