#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include <quillmate/files/paths.h>
#include <quillmate/startup/edition.h>

#include "findings_output.h"
#include "json.h"
#include "messages.h"

namespace quillmate::cli {
namespace {

using checks::Check;
using checks::Finding;
using symbols::ReferenceIndex;

std::string_view Level(checks::Severity severity) {
  constexpr std::string_view kLevels[] = {"error", "warning", "note"};
  return kLevels[static_cast<std::size_t>(severity)];
}

void AppendText(std::string& json, std::string_view key, std::string_view utf8) {
  json.append("\"").append(key).append("\":{\"text\":");
  AppendJsonUtf8(json, utf8);
  json += '}';
}

bool IsUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-._~/").find(c) != std::string_view::npos;
}

/// A path as the path of a URI.
std::string Escaped(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri;
  for (const char c : path) {
    const auto code = static_cast<unsigned char>(c);
    if (IsUnreserved(c)) {
      uri += c;
    } else {
      ((uri += '%') += kDigits[code >> 4U]) += kDigits[code & 0xFU];
    }
  }
  return uri;
}

/// Relative to the current folder for what is below it, else "file:///...".
std::string UriOf(const std::string& file) {
  const std::filesystem::path path = files::NormalPath(files::AbsolutePath(files::PathFromText(file)));
  const std::filesystem::path here = files::NormalPath(files::AbsolutePath(files::PathFromText(".")));
  std::string text = files::PathText(path);
  std::string folder = files::PathText(here);
  std::ranges::replace(text, '\\', '/');
  std::ranges::replace(folder, '\\', '/');
  if (!folder.ends_with('/')) folder += '/';
  if (text.starts_with(folder)) return Escaped(std::string_view(text).substr(folder.size()));
  if (text.starts_with("//")) return "file:" + Escaped(text);
  // A drive's colon stays.
  const bool drive = text.size() > 1 && text[1] == ':';
  return drive ? "file:///" + text.substr(0, 2) + Escaped(std::string_view(text).substr(2)) : "file://" + Escaped(text);
}

void AppendRules(std::string& json) {
  JsonLines lines(json);
  for (const Check& check : checks::AllChecks()) {
    lines.Next();
    json += "{\"id\":";
    AppendJsonUtf8(json, check.id);
    json += ',';
    AppendText(json, "shortDescription", check.title);
    json += ',';
    AppendText(json, "fullDescription", std::string(check.title) + ".");
    json += ',';
    AppendText(json, "help", check.advice);
    json.append(",\"defaultConfiguration\":{\"level\":\"").append(Level(check.severity)).append("\",\"enabled\":");
    json.append(check.byDefault ? "true" : "false").append("},\"properties\":{\"category\":");
    AppendJsonUtf8(json, checks::Word(check.group));
    json += "}}";
  }
  lines.End();
}

class Locations {
 public:
  explicit Locations(const ReferenceIndex& index) : index_(index) {}

  void Append(std::string& json, const Finding& finding) {
    const symbols::ModuleInfo& module = index_.Modules()[finding.module];
    const symbols::ProjectInfo& project = index_.Projects()[module.project];
    const std::string& file = module.file.empty() ? project.file : module.file;
    json += "\"locations\":[{";
    if (!file.empty()) {
      json += "\"physicalLocation\":{\"artifactLocation\":{\"uri\":";
      AppendJsonUtf8(json, Uri(file));
      json += '}';
      const std::uint32_t line = index_.SourceLine(finding.module, finding.line);
      // A document has no lines: the place in it is in the logical location and in the message.
      if (line != 0 && !module.file.empty()) {
        json.append(",\"region\":{\"startLine\":").append(std::to_string(line)).append(",\"startColumn\":");
        json.append(std::to_string(std::max(finding.column, 1U))).append("}");
      }
      json += "},";
    }
    AppendLogical(json, finding, project.name, module.name);
    json += "}]";
  }

 private:
  void AppendLogical(std::string& json, const Finding& finding, const std::string& project, const std::string& module) {
    std::string name = project.empty() ? module : project + "." + module;
    std::string_view kind = "module";
    std::string_view shortName = module;
    const language::Module& code = index_.Code(finding.module);
    if (finding.routine != symbols::kNone) {
      shortName = code.Spelling(code.declarations[code.routines[finding.routine].declaration]);
      name.append(".").append(shortName);
      kind = "function";
    }
    json += "\"logicalLocations\":[{\"name\":";
    AppendJsonUtf8(json, shortName);
    json += ",\"fullyQualifiedName\":";
    AppendJsonUtf8(json, name);
    json.append(",\"kind\":\"").append(kind).append("\"}]");
  }

  const std::string& Uri(const std::string& file) {
    const auto [known, isNew] = uris_.try_emplace(file);
    if (isNew) known->second = UriOf(file);
    return known->second;
  }

  const ReferenceIndex& index_;
  std::map<std::string, std::string> uris_;
};

/// The same for the same thing in later runs, wherever its lines went.
std::string Fingerprint(const std::string& key, unsigned nth) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char c : key) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (int shift = 60; shift >= 0; shift -= 4) text += kDigits[hash >> static_cast<unsigned>(shift) & 0xFU];
  return text + ":" + std::to_string(nth);
}

}  // namespace

std::string FindingsSarif(const ReferenceIndex& index, std::span<const Finding> findings) {
  std::string json =
      "{\"$schema\":\"https://json.schemastore.org/sarif-2.1.0.json\",\"version\":\"2.1.0\",\"runs\":[{\n";
  json.append("\"tool\":{\"driver\":{\"name\":\"Quillmate\",\"version\":\"").append(startup::ProgramVersion());
  json += "\",\"language\":\"de\",\"rules\":";
  AppendRules(json);
  json += "}},\n\"columnKind\":\"unicodeCodePoints\",\n\"results\":";
  JsonLines lines(json);
  Locations locations(index);
  std::map<std::string, unsigned> keys;
  for (const Finding& finding : findings) {
    const Check& check = checks::InfoOf(finding.check);
    lines.Next();
    json += "{\"ruleId\":";
    AppendJsonUtf8(json, check.id);
    json.append(",\"ruleIndex\":").append(std::to_string(static_cast<unsigned>(finding.check)));
    json.append(",\"level\":\"").append(Level(check.severity)).append("\",");
    const std::uint32_t line = index.EditorLine(finding.module, finding.line);
    const std::string place = index.Modules()[finding.module].file.empty() && line != 0
                                  ? index.Modules()[finding.module].name + ", Zeile " + std::to_string(line) + ": "
                                  : std::string();
    AppendText(json, "message", place + finding.text + " " + finding.advice);
    json += ',';
    locations.Append(json, finding);
    const std::string key = FindingKey(index, finding);
    json += ",\"partialFingerprints\":{\"quillmate/v1\":";
    AppendJsonUtf8(json, Fingerprint(key, ++keys[key]));
    json += "}}";
  }
  lines.End();
  return json += "\n}]}\n";
}

}  // namespace quillmate::cli
