#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Writes modules together with what is in them: every routine with its lines, every declaration and every use of a
/// name with its place and role, every line's class.
namespace quillmate::language {

struct Truth {
  std::vector<std::string> routines;      ///< "name first-last*headers"
  std::vector<std::string> uses;          ///< "name line:column role"
  std::vector<std::string> declarations;  ///< "name line:column kind"
  std::string lineClasses;                ///< a letter for each line: b, c, k, d, a
};

struct GeneratedModule {
  std::string text;
  Truth truth;
  /// Lines between the header and the End of each routine of several lines: first and last, 1-based.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> bodies;
};

class ModuleGenerator {
 public:
  explicit ModuleGenerator(std::uint32_t seed) : random_(seed) {}
  GeneratedModule Next();

 private:
  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }
  bool OneIn(std::uint32_t chances) { return Below(chances) == 0; }

  void Write(std::string_view text);
  void Word(std::string_view word);
  void Break(bool continued);
  void Blank();
  void EndLine();
  void Name(char place);
  void Template(std::string_view pattern);
  void Line(std::string_view pattern);
  void Noise();
  void Declarations();
  void Routine();
  void Header(std::string_view kind, std::string_view name);
  void Body(std::uint32_t statements, std::uint32_t depth);
  void Statement(std::uint32_t depth);
  std::string FreshName();
  void Note(std::string_view name, std::string_view kind, std::vector<std::string>& list);

  std::mt19937 random_;
  GeneratedModule module_;
  std::string_view lineEnd_;
  std::uint32_t line_ = 1, column_ = 1, names_ = 0;
  char lineClass_ = 'b';
  bool split_ = true;  ///< the line may be continued
};

}  // namespace quillmate::language
