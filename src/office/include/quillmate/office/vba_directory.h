#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The two streams that describe a macro project, after the published format [MS-OVBA]: `dir`, which the host's runtime
/// loads, and `PROJECT`, the text in which the host's editor keeps its own view.
namespace quillmate::office {

/// An index holds no more. Each of the two streams is read up to one module beyond that, so that it shows.
inline constexpr std::size_t kMostVbaModules = 32767;

/// A module's records in `dir`, 2.3.4.2.3.2. Names without "Unicode" are bytes in the project's code page.
struct DirModule {
  std::string name;
  std::string unicodeName;  // UTF-8; empty when the record is missing
  std::string streamName;
  std::string unicodeStreamName;  // UTF-8; empty when the record is missing
  /// Where the packed text begins in the module's stream.
  std::optional<std::uint32_t> textOffset;
  /// A standard module; otherwise a class, form or document module.
  bool procedural = false;
};

/// A reference, 2.3.4.2.2. Bytes in the project's code page.
struct DirReference {
  std::string name;
  std::string unicodeName;  // UTF-8; empty when the record is missing
  /// "*\G{...}#2.0#0#C:\...\stdole2.tlb#OLE Automation" of a library, "*\CC:\...\Mappe.xlsm" of a project.
  std::string libid;
};

struct DirStream {
  /// The code page of all names and texts; 0 when the stream does not say.
  int codePage = 0;
  std::string projectName;
  /// Conditional constants as they were typed: "DEBUGMODE = 1 : ALT = 0"; bytes in the code page.
  std::string constants;
  std::vector<DirReference> references;
  std::vector<DirModule> modules;
  /// False when the last record is cut off.
  bool complete = true;
};

/// Takes the unpacked stream apart. It is a row of records, each with an id (16 bits), a size (32 bits) and as many
/// bytes. Only the version record (2.3.4.2.1.11) is longer than its size says. Records that say nothing of use here are
/// skipped, known ones may come in any order.
DirStream ParseDirStream(std::string_view bytes);

/// The state of the editor's protection, 2.3.1.15 to 2.3.1.17.
struct VbaProtection {
  bool byUser = false;
  bool byHost = false;
  bool byEditor = false;
  bool password = false;
  bool visible = true;
  /// A value is there and can't be deciphered: the editor calls such a project unviewable.
  bool unclear = false;

  /// True when the editor would not show the code.
  bool Locked() const noexcept { return byUser || byHost || byEditor || !visible || unclear; }
};

struct ProjectTextModule {
  std::string name;
  /// ComponentType.
  int type = 0;
};

/// What the `PROJECT` stream says, 2.3.1; names are bytes in the project's code page.
struct ProjectText {
  std::string name;
  /// In the order in which the editor lists the modules.
  std::vector<ProjectTextModule> modules;
  VbaProtection protection;
};

/// Takes the stream apart: lines "Key=Value" up to the first one in brackets.
ProjectText ParseProjectText(std::string_view bytes);

/// Deciphers a value of CMG, DPB or GC, given in hexadecimal digits (2.4.3.3): the data bytes; nothing when the value
/// is malformed.
std::optional<std::string> DecipherVbaData(std::string_view digits);

}  // namespace quillmate::office
