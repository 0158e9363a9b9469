#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// How documents name the macro that a button, a key or a call-back starts.
namespace quillmate::office {

/// [book "!"] [project "."] [module "."] routine [blank and arguments], all UTF-8.
struct MacroTarget {
  /// Without quotes; empty when none is named or it is the own one, "[0]".
  std::string book;
  /// True when another document is meant, whose code is not here.
  bool foreign = false;
  std::string project;
  std::string module;
  std::string routine;
};

/// Takes a text apart, XML entities already replaced. `fileName` is the document's own, without its folder: a text that
/// names it means this document. Nothing for a text that names no routine.
std::optional<MacroTarget> ParseMacroTarget(std::string_view text, std::string_view fileName);

/// A routine that could be meant.
struct MacroCandidate {
  enum class Home { kStandard, kDocument, kOther };

  std::string_view module;
  std::string_view routine;
  Home home = Home::kStandard;
  bool isPrivate = false;
  /// Property procedures never count.
  bool isProperty = false;
};

/// Finds the routine that the host would run. Names compare without case. With a module it is that module's routine.
/// Without one the public routines of standard modules come first, then their private ones, then document modules;
/// classes and forms never count.
class MacroResolver {
 public:
  explicit MacroResolver(std::span<const MacroCandidate> candidates);

  /// The candidate's index; nothing when there is none, when there are several, and for a foreign target.
  std::optional<std::size_t> Find(const MacroTarget& target) const;

 private:
  struct Entry {
    /// In upper case.
    std::string module;
    int rank;
    std::size_t index;
  };
  /// By the routine's name in upper case.
  std::unordered_map<std::string, std::vector<Entry>> byRoutine_;
};

}  // namespace quillmate::office
