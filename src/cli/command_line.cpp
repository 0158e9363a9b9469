#include "command_line.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include <quillmate/startup/edition.h>

#include "commands.h"
#include "messages.h"
#include "option_table.h"

namespace quillmate::cli {
namespace {

/// Walks the arguments and keeps which options were met, because whether they are allowed is known only when the
/// command is, and that may come after them.
class Parser {
 public:
  Parser(std::span<const std::string> arguments, Invocation& invocation)
      : arguments_(arguments), invocation_(invocation) {}

  void Run() {
    for (bool optionsEnded = false; next_ < arguments_.size();) {
      const std::string& argument = arguments_[next_++];
      if (!optionsEnded && argument == "--") {
        optionsEnded = true;
      } else if (!optionsEnded && argument.size() > 1 && argument[0] == '-') {
        TakeOption(argument);
      } else {
        TakeOperand(argument);
      }
    }
    CheckAllowed();
  }

 private:
  /// "--name", "--name=value", "--name value", "-o value" or "-ovalue".
  void TakeOption(std::string_view argument) {
    const bool isLong = argument.starts_with("--");
    const std::size_t end = isLong ? std::min(argument.find('='), argument.size()) : 2;
    const std::string_view name = argument.substr(0, end);
    const OptionSpec* const option = Find(name);
    if (option == nullptr) {
      throw UsageError("Unbekannte Option " + Quoted(name));
    }
    std::string_view value;
    if (!option->value.empty()) {
      value = end < argument.size() ? argument.substr(isLong ? end + 1 : end) : NextValue(*option);
    } else if (end < argument.size()) {
      throw UsageError("Die Option " + std::string(name) + " hat keinen Wert");
    }
    option->take(invocation_, value);
    met_.push_back(option);
  }

  /// Of several options with one name the command's own.
  const OptionSpec* Find(std::string_view name) const {
    const OptionSpec* found = nullptr;
    for (const OptionSpec& option : AllOptions()) {
      if (option.name != name) continue;
      if (invocation_.command != nullptr && (option.bit & invocation_.command->options) != 0) return &option;
      if (found == nullptr) found = &option;
    }
    return found;
  }

  std::string_view NextValue(const OptionSpec& option) {
    if (next_ == arguments_.size()) {
      throw UsageError("Der Option " + std::string(option.name) + " fehlt der Wert " + std::string(option.value));
    }
    return arguments_[next_++];
  }

  void TakeOperand(const std::string& operand) {
    if (invocation_.command != nullptr) {
      invocation_.inputs.push_back(operand);
      return;
    }
    invocation_.command = FindCommand(operand);
    if (invocation_.command == nullptr) {
      throw UsageError("Unbekannter Befehl " + Quoted(operand));
    }
  }

  void CheckAllowed() const {
    if (invocation_.help || invocation_.version) {
      return;
    }
    if (invocation_.command == nullptr) {
      throw UsageError("Es fehlt der Befehl");
    }
    for (const OptionSpec* const option : met_) {
      if ((option->bit & (invocation_.command->options | kAnyCommand)) == 0) {
        throw UsageError("Der Befehl " + std::string(invocation_.command->name) + " kennt die Option " +
                         std::string(option->name) + " nicht");
      }
    }
    const std::size_t minInputs =
        invocation_.host || invocation_.list || invocation_.filesFrom ? 0 : invocation_.command->minInputs;
    if (invocation_.inputs.size() < invocation_.command->texts + minInputs) {
      throw UsageError("Es fehlt die Eingabe");
    }
    if (std::ranges::any_of(invocation_.inputs, &std::string::empty)) {
      throw UsageError("Eine Eingabe ist leer");
    }
  }

  std::span<const std::string> arguments_;
  Invocation& invocation_;
  std::size_t next_ = 0;
  std::vector<const OptionSpec*> met_;
};

}  // namespace

void ParseCommandLine(std::span<const std::string> arguments, Invocation& invocation) {
  invocation.edition = startup::kExcel;
  Parser(arguments, invocation).Run();
}

}  // namespace quillmate::cli
