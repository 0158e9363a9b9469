#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/module.h>

/// The front end: one module's text to everything that is in it. A pure function; modules may be parsed side by side,
/// each thread with a workspace of its own.
namespace quillmate::language {

enum class Dialect : std::uint8_t { kVba, kVb6 };

/// A constant of conditional compilation that the project sets.
struct ConditionalConstant {
  std::string name;  ///< UTF-8, any case
  std::int64_t value = 0;
};

/// "iVBVer = 6 : afDebug = 5": the constants as project files and macro containers write them. What can't be read is
/// left out.
std::vector<ConditionalConstant> ParseConditionalConstants(std::string_view text);

struct ParseOptions {
  /// Sets the constants that are there without being defined: Win32 = 1, VBA6 = 1, Win16 = Mac = 0, and VBA7 = Win64 =
  /// 1 for VBA, 0 for VB6.
  Dialect dialect = Dialect::kVba;
  /// Of the project; they go before those of the dialect, the module's own #Const before both.
  std::span<const ConditionalConstant> constants;
  /// What the caller knows of the module; words of the file itself win.
  ModuleKind kind = ModuleKind::kStandard;
  bool keepTokens = false;
  bool keepStatements = false;
};

/// Memory that one parse leaves to the next. Not for two threads at a time.
class Workspace {
 public:
  Workspace();
  ~Workspace();
  Workspace(Workspace&&) noexcept;
  Workspace& operator=(Workspace&&) noexcept;

  struct Data;
  Data& data() noexcept { return *data_; }

 private:
  std::unique_ptr<Data> data_;
};

/// Parses `text`, UTF-8 with any line breaks: code as the host's editor shows it, or a whole module file with its
/// header and Attribute lines, or an Access text export. A byte order mark is skipped, bytes that are no UTF-8 are read
/// as unknown characters. Never fails: what can't be read costs its line. Text from 4 GB on is cut.
///
/// `module` is cleared first and keeps its memory, so that one Module can be used over and over.
void ParseModule(std::string_view text, const ParseOptions& options, Workspace& workspace, Module& module);
Module ParseModule(std::string_view text, const ParseOptions& options = {});

/// The folded form of a name: no case (umlauts and other alphabets included), no brackets, no suffix. Names compare by
/// it across modules.
std::string FoldName(std::string_view name);
/// The hash that Module::NameHash gives for a folded name.
std::uint64_t HashName(std::string_view folded) noexcept;

}  // namespace quillmate::language
