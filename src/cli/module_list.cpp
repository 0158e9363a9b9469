#include "module_list.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/windows1252.h>

#include "json.h"
#include "messages.h"

namespace quillmate::cli {
namespace {

using CodeName = std::pair<int, std::string_view>;

constexpr std::array kModuleKinds{CodeName{codedb::kForm, "Userform"}, CodeName{codedb::kStandard, "Allgemeines Modul"},
                                  CodeName{codedb::kClass, "Klassenmodul"},
                                  CodeName{codedb::kDocument, "Element der Mappe"},
                                  CodeName{codedb::kOtherKind, "Anderes Modul"}};

constexpr std::array kRoutineKinds{CodeName{codedb::kSub, "Sub"},
                                   CodeName{codedb::kFunction, "Function"},
                                   CodeName{codedb::kLet, "Property Let"},
                                   CodeName{codedb::kGet, "Property Get"},
                                   CodeName{codedb::kSet, "Property Set"},
                                   CodeName{codedb::kDeclareSub, "Declare Sub"},
                                   CodeName{codedb::kDeclareFunction, "Declare Function"}};

constexpr std::array kVisibilities{CodeName{codedb::kPublic, "Public"}, CodeName{codedb::kPrivate, "Private"},
                                   CodeName{codedb::kFriend, "Friend"}};

/// The name of a code followed by the code itself: "Sub (1)".
template <std::size_t N>
std::string NameOf(const std::array<CodeName, N>& names, int code) {
  const auto found = std::ranges::find(names, code, &CodeName::first);
  const std::string name = found == names.end() ? "?" : std::string(found->second);
  return name + " (" + std::to_string(code) + ")";
}

std::string LineOrDash(const std::optional<codedb::Line>& line) { return line ? std::to_string(line->value) : "-"; }

/// Only ASCII texts go through here, so that bytes are columns.
std::string Left(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

std::string Right(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string NameText(const std::string& name) { return OneLine(text::Utf8FromCode(name)); }

std::string RoutineRow(const std::string& number, const std::string& kind, const std::string& visibility,
                       const std::string& headerLines, const std::string& start, const std::string& end,
                       const std::string& name) {
  return Right(number, 8) + "  " + Left(kind, 21) + "  " + Left(visibility, 12) + Right(headerLines, 6) +
         Right(start, 8) + Right(end, 8) + "  " + name + "\n";
}

void AppendModuleRows(std::string& table, const codedb::ModuleRecord& module) {
  table += "Modul " + std::to_string(module.number.value) + ": " + NameText(module.name) + ", " +
           NameOf(kModuleKinds, module.kind) + ", " + std::to_string(module.lines) + " Zeilen\n";
  if (module.routines.empty()) {
    return;
  }
  table += RoutineRow("Nr", "Art", "Sichtbarkeit", "Kopf", "Beginn", "Ende", "Name");
  for (const codedb::RoutineRecord& routine : module.routines) {
    table += RoutineRow(std::to_string(routine.number.value), NameOf(kRoutineKinds, routine.kind),
                        NameOf(kVisibilities, routine.visibility), std::to_string(routine.headerLines),
                        LineOrDash(routine.start), LineOrDash(routine.end), NameText(routine.name));
  }
}

std::optional<std::int64_t> LineOf(const std::optional<codedb::Line>& line) {
  return line ? std::optional<std::int64_t>(line->value) : std::nullopt;
}

void AppendRoutine(std::string& json, const codedb::RoutineRecord& routine, std::optional<std::int64_t> sourceLine) {
  JsonObject(json)
      .Number("rou_num", routine.number.value)
      .Text("rou_name", routine.name)
      .Number("rou_typ", routine.kind)
      .Number("rou_open", routine.visibility)
      .Number("anz_dec_zeilen", routine.headerLines)
      .Number("rou_start", LineOf(routine.start))
      .Number("rou_ende", LineOf(routine.end))
      .Number("source_line", sourceLine)
      .End();
}

void AppendModule(std::string& json, const codedb::ModuleRecord& module, const Provenance& provenance) {
  JsonObject object(json);
  object.Number("mod_num", module.number.value)
      .Text("mod_name", module.name)
      .Number("mod_typ", module.kind)
      .Number("mod_zeilen", module.lines);
  provenance.Append(object, json, module.number);
  object.Key("routines");
  JsonLines lines(json);
  for (const codedb::RoutineRecord& routine : module.routines) {
    lines.Next();
    AppendRoutine(json, routine, provenance.SourceLine(module.number, routine.start));
  }
  lines.End();
  object.End();
}

}  // namespace

std::string ModuleJson(const std::vector<codedb::ModuleRecord>& modules, const Provenance& provenance) {
  std::string json;
  JsonObject object(json);
  object.Key("modules");
  JsonLines lines(json);
  for (const codedb::ModuleRecord& module : modules) {
    lines.Next();
    AppendModule(json, module, provenance);
  }
  lines.End();
  provenance.AppendSources(object, json);
  object.End();
  return json += '\n';
}

std::string ModuleTable(const std::vector<codedb::ModuleRecord>& modules) {
  std::string table;
  for (const codedb::ModuleRecord& module : modules) {
    if (!table.empty()) {
      table += '\n';
    }
    AppendModuleRows(table, module);
  }
  return table;
}

}  // namespace quillmate::cli
