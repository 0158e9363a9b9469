#include "symbols/changed_project.h"

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace quillmate::symbols::testing {
namespace {

using Lines = std::vector<std::string>;

struct Routine {
  std::string name;
  int module = 0;
  bool function = false;
  Lines body;
};

struct Constant {
  std::string name;
  int module = 0;
  int value = 0;
};

/// What happens to the text of a routine.
enum class TextEdit { kNone, kLayout, kComment, kCase, kCode };

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  ChangedProject Run() {
    moduleCount_ = 2 + Below(3);
    for (int module = 0; module < moduleCount_; ++module) {
      for (int i = Below(3); i-- > 0;) constants_.push_back({NewName("K"), module, Below(1000000)});
      for (int i = 2 + Below(4); i-- > 0;) routines_.push_back(NewRoutine(module));
    }
    WriteAll(project_.oldSources, routines_, constants_, {});
    ChangeModules();
    ChangeConstants();
    ChangeRoutines();
    WriteAll(project_.newSources, changed_, changedConstants_, moduleNames_);
    return std::move(project_);
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }
  std::string NewName(const char* prefix) { return prefix + std::to_string(++names_) + "Ä"; }

  /// Some lines are in many routines, all others in one.
  std::string Statement(const Routine& routine) {
    const std::string number = std::to_string(Below(100000000));
    switch (Below(7)) {
      case 0:
        return "If Wert > " + number + " Then Summe = Summe - 1";
      case 1:
        return "Text = \"Text " + number + " 'kein Kommentar\" & Text";
      case 2:
        return "Debug.Print Wert, Summe, \"" + number + "\"";
      case 3:
        return "Range(\"A" + number + "\").Value = Wert * " + number;
      case 4:
        return "Summe = Summe + 1";
      case 5:
        return routine.function ? routine.name + " = Summe + " + number : "Feld(" + number + ") = Summe";
      default:
        return "Call Objekt.Tue(Wert + " + number + ")";
    }
  }

  Routine NewRoutine(int module) {
    Routine routine{NewName("R"), module, Below(2) == 0, {}};
    routine.body = {"Dim Wert As Long", "Wert = " + std::to_string(Below(100000000))};
    for (int i = 6 + Below(6); i-- > 0;) routine.body.push_back(Statement(routine));
    return routine;
  }

  std::size_t SomeLine(const Routine& routine) {
    return static_cast<std::size_t>(Below(static_cast<int>(routine.body.size())));
  }

  void Indent(Routine& routine) { routine.body[SomeLine(routine)].insert(0, "   "); }

  /// A difference that changes nothing of what the code does; its name.
  std::string ChangeText(Routine& routine, TextEdit edit) {
    std::string& line = routine.body[SomeLine(routine)];
    switch (edit) {
      case TextEdit::kNone:
        return "";
      case TextEdit::kLayout:
        if (const int kind = Below(4); kind == 0) {
          Indent(routine);
        } else if (kind == 1) {
          routine.body.insert(routine.body.begin() + Below(static_cast<int>(routine.body.size())), "");
        } else if (kind == 2) {
          routine.body.front() = "Dim _\r\n  Wert As Long";
        } else {
          routine.body[1].insert(routine.body[1].find('='), "  ");
        }
        return " layout";
      case TextEdit::kComment:
        line += Below(2) == 0 ? " ' neu" : " ' \"anders\"";
        return " comment";
      case TextEdit::kCase:
        routine.body.front() = Below(2) == 0 ? "DIM Wert As Long" : "Dim wert AS Long";
        return " case";
      case TextEdit::kCode:
        routine.body[SomeLine(routine)] = "Neu = " + std::to_string(Below(100000000));
        return " changed";
    }
    return "";
  }

  std::string ModuleName(int module) const {
    return moduleNames_.empty() ? "M" + std::to_string(module) : moduleNames_[static_cast<std::size_t>(module)];
  }

  /// One module may get another name, another one may go with all that it holds.
  void ChangeModules() {
    moduleNames_.clear();
    for (int module = 0; module < moduleCount_; ++module) moduleNames_.push_back("M" + std::to_string(module));
    if (Below(4) == 0) {
      renamed_ = Below(moduleCount_);
      moduleNames_[static_cast<std::size_t>(renamed_)] = "Anders";
      project_.modules["Anders"] = "renamed M" + std::to_string(renamed_);
    }
    if (Below(5) == 0) {
      gone_ = Below(moduleCount_);
      if (gone_ == renamed_ || moduleCount_ < 3) gone_ = -1;
    }
    if (gone_ < 0) return;
    const std::string name = "M" + std::to_string(gone_);
    project_.modules[name] = "gone";
    project_.declarations[name + ".Stand" + std::to_string(gone_)] = project_.declarations[name + ".Feld"] = "gone";
  }

  void ChangeConstants() {
    for (const Constant& constant : constants_) {
      const std::string before = "M" + std::to_string(constant.module) + ".";
      Constant changed = constant;
      const int target = Target();
      // A renamed module is told by its lines, so most of them stay.
      const int kind = constant.module == renamed_ ? 9 : Below(8);
      if (constant.module == gone_ || kind == 0) {
        project_.declarations[before + constant.name] = "gone";
        continue;
      }
      if (kind == 1) {
        ++changed.value;
        project_.declarations[ModuleName(changed.module) + "." + constant.name] = "changed";
      } else if (kind == 2 && target != constant.module) {
        changed.module = target;
        project_.declarations[ModuleName(target) + "." + constant.name] = "moved " + before;
      }
      changedConstants_.push_back(changed);
    }
    if (Below(3) == 0) {
      const Constant added{NewName("K"), Target(), 7};
      project_.declarations[ModuleName(added.module) + "." + added.name] = "new";
      changedConstants_.push_back(added);
    }
  }

  /// A module that stays and keeps its name.
  int Target() {
    int target = Below(moduleCount_);
    while (target == gone_ || target == renamed_) target = Below(moduleCount_);
    return target;
  }

  void ChangeRoutines() {
    for (const Routine& routine : routines_) {
      const std::string before = "M" + std::to_string(routine.module) + "." + routine.name;
      Routine changed = routine;
      std::string state;
      const int kind = routine.module == gone_ ? (Below(2) == 0 ? 0 : 2) : routine.module == renamed_ ? 9 : Below(12);
      if (kind == 0) {
        project_.routines[before] = "gone";
        continue;
      }
      if (kind == 1 || kind == 3) Rename(changed);
      if (kind == 2 || kind == 3) changed.module = Target();
      const bool isRenamed = changed.name != routine.name;
      const bool isMoved = changed.module != routine.module;
      const auto edit = static_cast<TextEdit>(routine.module == renamed_ ? Below(4) : Below(5));
      const std::string text = ChangeText(changed, edit);
      if (isMoved) {
        state = "moved " + before;
      } else if (isRenamed) {
        state = "renamed " + before;
      } else if (text.empty()) {
        state = "same";
      } else {
        state = text == " changed" ? "changed" : "layout";
      }
      // The header of a renamed one is another text.
      project_.routines[ModuleName(changed.module) + "." + changed.name] = state + (isRenamed            ? " changed"
                                                                                    : state == "changed" ? ""
                                                                                                         : text);
      changed_.push_back(changed);
    }
    for (int i = Below(3); i-- > 0;) {
      const Routine added = NewRoutine(Target());
      project_.routines[ModuleName(added.module) + "." + added.name] = "new";
      changed_.push_back(added);
    }
  }

  void Rename(Routine& routine) {
    const std::string name = NewName("N");
    for (std::string& line : routine.body) {
      if (line.starts_with(routine.name + " ")) line.replace(0, routine.name.size(), name);
    }
    routine.name = name;
  }

  void WriteAll(Sources& sources, const std::vector<Routine>& routines, const std::vector<Constant>& constants,
                const std::vector<std::string>& names) {
    sources.projects.emplace_back().host = Host::kExcel;
    for (int module = 0; module < moduleCount_; ++module) {
      if (!names.empty() && module == gone_) continue;
      ModuleSource source;
      source.name = names.empty() ? "M" + std::to_string(module) : names[static_cast<std::size_t>(module)];
      source.text = "Option Explicit\r\nPrivate Stand" + std::to_string(module) + " As Long, Feld(9)\r\n";
      for (const Constant& constant : constants) {
        if (constant.module != module) continue;
        source.text += "Public Const " + constant.name + " = " + std::to_string(constant.value) + "\r\n";
      }
      for (const Routine& routine : routines) {
        if (routine.module == module) Write(source.text, routine);
      }
      sources.modules.push_back(std::move(source));
    }
  }

  static void Write(std::string& text, const Routine& routine) {
    const std::string kind = routine.function ? "Function" : "Sub";
    text += "\r\n' Tut etwas\r\nPublic " + kind + " " + routine.name + "()\r\n";
    for (const std::string& line : routine.body) text += (line.empty() ? "" : "  ") + line + "\r\n";
    text += "End " + kind + "\r\n";
  }

  std::mt19937 random_;
  ChangedProject project_;
  int names_ = 0;
  int moduleCount_ = 0;
  int renamed_ = -1;
  int gone_ = -1;
  std::vector<std::string> moduleNames_;
  std::vector<Routine> routines_, changed_;
  std::vector<Constant> constants_, changedConstants_;
};

}  // namespace

ChangedProject ChangeProject(std::uint32_t seed) { return Generator(seed).Run(); }

}  // namespace quillmate::symbols::testing
