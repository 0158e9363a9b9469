#include <algorithm>
#include <array>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/office_facts.h>
#include <quillmate/host/vb_project.h>
#include <quillmate/inventory/content.h>
#include <quillmate/office/byte_source.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/office_file.h>
#include <quillmate/text/operations.h>

#include "code_rows_p.h"

namespace quillmate::inventory {
namespace {

using office::OfficeFile;

constexpr std::string_view kProjectExtension = "vbp";

constexpr std::array<std::string_view, kStateCount> kWords{"makros",        "keine",      "excel4",     "gesperrt",
                                                           "verschlüsselt", "kompiliert", "beschädigt", "zeitlimit",
                                                           "abgestürzt",    "unlesbar",   "fremd"};

std::string_view FormatOf(office::OfficeHost host) {
  const std::string_view word = office::WordOf(host);
  return word.empty() ? "office" : word;
}

State StateOf(const OfficeFile& file) {
  using office::Cause;
  if (file.state == OfficeFile::State::kRead) {
    return file.project.protection.Locked() ? State::kLocked : State::kMacros;
  }
  if (!file.facts.excel4.empty()) return State::kExcel4;
  if (file.state != OfficeFile::State::kFailed) return State::kNone;
  switch (office::CauseOf(file.reason)) {
    case Cause::kEncrypted:
      return State::kEncrypted;
    case Cause::kCompiled:
      return State::kCompiled;
    case Cause::kUnsupported:
    case Cause::kUnreadable:
      return State::kUnreadable;
    default:
      return State::kDamaged;
  }
}

std::string ProtectionOf(const office::VbaProtection& protection) {
  if (protection.Locked()) return protection.password ? "gesperrt, mit Kennwort" : "gesperrt";
  return protection.password ? "Kennwort" : "";
}

std::string Joined(const std::vector<std::string>& lines) {
  constexpr std::size_t kMost = 2000;
  std::string text;
  for (const std::string& line : lines) {
    if (text.size() > kMost) return text + "; ...";
    text.append(text.empty() ? "" : "; ").append(line);
  }
  return text;
}

void TakeDocument(const OfficeFile& file, Content& content) {
  const office::DocumentProperties& properties = file.facts.properties;
  content.format = FormatOf(file.host);
  content.reason = file.reason == office::Reason::kNone ? Joined(file.project.warnings) : file.ReasonText();
  content.codePage = file.project.codePage;
  content.project = file.project.name;
  content.protection = ProtectionOf(file.project.protection);
  content.isSigned = file.facts.isSigned;
  content.signer = file.facts.signature.signer;
  content.signerIssuer = file.facts.signature.issuer;
  content.signedFrom = file.facts.signature.from;
  content.signedUntil = file.facts.signature.until;
  content.title = properties.title;
  content.author = properties.author;
  content.lastAuthor = properties.lastAuthor;
  content.company = properties.company;
  content.application = properties.application;
  content.created = properties.created;
  content.modified = properties.modified;
  content.excel4Sheets = static_cast<std::uint32_t>(file.facts.excel4.size());
  for (const office::VbaReference& reference : file.project.references) {
    content.references.push_back({reference.name, reference.version, reference.path, reference.toProject});
  }
  for (const std::string& link : file.facts.externalLinks) content.links.push_back({"verknüpfung", link});
  for (const office::LinkedTable& table : file.facts.linkedTables) {
    if (!table.database.empty()) content.links.push_back({"tabelle", table.database});
  }
}

Content OfficeContent(OfficeFile file) {
  Content content;
  content.state = StateOf(file);
  TakeDocument(file, content);
  if (content.state == State::kMacros) {
    // By no name at all: copies under other names are the same content.
    codedb::Facts facts = host::TakeOfficeFacts(file, {});
    for (const codedb::BindingFact& binding : facts.bindings) {
      content.bindings.push_back({binding.kind, binding.module, binding.text, binding.place});
    }
    TakeCode(std::move(facts), content);
  }
  return content;
}

/// A module file that was not in memory; what is too large for one is no module.
std::string LargeFile(const std::filesystem::path& file) {
  constexpr std::size_t kMost = std::size_t{128} << 20U;
  try {
    return files::ReadWholeFile(file, kMost);
  } catch (const files::Failure&) {
    return {};
  }
}

/// The project alone: the files with its modules are contents of their own.
Content ProjectContent(std::string_view bytes) {
  const host::VbProject project = host::ParseVbProject(bytes);
  Content content;
  content.format = "projekt";
  content.state = project.modules.empty() ? State::kNone : State::kMacros;
  content.project = project.name;
  for (const office::VbaReference& reference : project.references) {
    content.references.push_back({reference.name, reference.version, reference.path, reference.toProject});
  }
  for (const host::VbProjectModule& module : project.modules) content.links.push_back({"modul", module.file});
  return content;
}

Content ModuleContent(std::string bytes, const std::string& extension) {
  Content content;
  content.format = "modul";
  office::Reason reason;
  std::optional<codedb::Facts> facts = host::ModuleFileFacts(std::move(bytes), extension, {}, reason);
  content.reason = office::ReasonText(reason);
  content.state = facts ? State::kMacros : State::kNone;
  if (facts) TakeCode(std::move(*facts), content);
  return content;
}

}  // namespace

std::string_view Word(State state) noexcept { return kWords[static_cast<std::size_t>(state)]; }

std::optional<State> StateFromWord(std::string_view word) noexcept {
  const auto* const found = std::find(kWords.begin(), kWords.end(), word);
  if (found == kWords.end()) return std::nullopt;
  return static_cast<State>(found - kWords.begin());
}

bool IsUnread(State state) noexcept { return state >= State::kLocked && state <= State::kUnreadable; }

NameHint HintOf(const std::filesystem::path& file) {
  std::string extension = files::PathText(file.extension());
  NameHint hint;
  // Beside an open document Office puts a file that only says who has it open.
  if (extension.empty() || files::PathText(file.filename()).starts_with("~$")) return hint;
  extension.erase(0, 1);
  const auto known = office::OfficeFileExtensions();
  hint.office = std::any_of(known.begin(), known.end(),
                            [&](std::string_view each) { return text::EqualsIgnoreCase(each, extension); });
  if (office::IsModuleFileExtension(extension) || text::EqualsIgnoreCase(extension, kProjectExtension)) {
    for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    hint.module = extension;
  }
  return hint;
}

bool MayHoldMacros(std::string_view head, const NameHint& hint) noexcept {
  return hint.office || !hint.module.empty() || office::LooksLikeOffice(head);
}

Content ReadContent(std::string_view bytes, const std::filesystem::path& file, const NameHint& hint) {
  const office::ReadOptions options{.facts = true};
  OfficeFile read;
  if (bytes.empty()) {
    read = office::ReadOfficeFile(file, options);
  } else {
    office::MemorySource source(bytes);
    read = office::ReadOfficeFile(source, options);
  }
  // A packed file of another kind, whatever it is called.
  if (read.recognized && read.state == OfficeFile::State::kNotOffice) return {};
  if (read.recognized || hint.office) return OfficeContent(std::move(read));
  if (hint.module.empty()) return {};
  if (hint.module == kProjectExtension) return ProjectContent(bytes.empty() ? LargeFile(file) : std::string(bytes));
  return ModuleContent(bytes.empty() ? LargeFile(file) : std::string(bytes), hint.module);
}

}  // namespace quillmate::inventory
