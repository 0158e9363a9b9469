#include <utility>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/vba_directory.h>

#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

/// Ids of the records that are read, 2.3.4.2.
enum RecordId : std::uint16_t {
  kProjectCodePage = 0x0003,
  kProjectName = 0x0004,
  kProjectVersion = 0x0009,
  kProjectConstants = 0x000C,
  kReferenceRegistered = 0x000D,
  kReferenceProject = 0x000E,
  kReferenceName = 0x0016,
  kModuleName = 0x0019,
  kModuleStreamName = 0x001A,
  kModuleProcedural = 0x0021,
  kModuleTerminator = 0x002B,
  kReferenceControl = 0x002F,
  kReferenceExtended = 0x0030,
  kModuleOffset = 0x0031,
  kModuleStreamNameUnicode = 0x0032,
  kReferenceOriginal = 0x0033,
  kReferenceNameUnicode = 0x003E,
  kModuleNameUnicode = 0x0047
};

constexpr std::size_t kIdSize = 2;
constexpr std::size_t kHeadSize = 6;
constexpr std::uint32_t kVersionSize = 4;
constexpr std::uint32_t kVersionRealSize = 6;

struct Record {
  std::uint16_t id;
  std::string_view data;
};

class RecordReader {
 public:
  explicit RecordReader(std::string_view bytes) noexcept : bytes_(bytes) {}

  bool Next(Record& record) noexcept {
    if (bytes_.size() < kHeadSize) return false;
    record.id = LittleEndian<std::uint16_t>(bytes_, 0);
    auto size = LittleEndian<std::uint32_t>(bytes_, kIdSize);
    if (record.id == kProjectVersion && size == kVersionSize) size = kVersionRealSize;
    if (size > bytes_.size() - kHeadSize) return false;
    record.data = bytes_.substr(kHeadSize, size);
    bytes_.remove_prefix(kHeadSize + size);
    return true;
  }
  bool AtEnd() const noexcept { return bytes_.empty(); }

 private:
  std::string_view bytes_;
};

/// A text after its own length (32 bits); as much of it as there is.
std::string_view SizedText(std::string_view data) noexcept {
  constexpr std::size_t kLengthSize = 4;
  const auto length = LittleEndian<std::uint32_t>(data, 0);
  return data.size() < kLengthSize ? std::string_view() : data.substr(kLengthSize, length);
}

/// Collects the references. One begins with its name. That of a control has up to three libraries, of which the
/// original one counts, and its name again before the last.
class ReferenceReader {
 public:
  explicit ReferenceReader(std::vector<DirReference>& references) noexcept : references_(references) {}

  void Take(const Record& record) {
    switch (record.id) {
      case kReferenceName:
        if (!inControl_) Begin().name = record.data;
        break;
      case kReferenceNameUnicode:
        if (named_ && !inControl_) references_.back().unicodeName = Utf8FromUtf16Bytes(record.data);
        break;
      case kReferenceOriginal:
        Current().libid = record.data;
        break;
      case kReferenceControl:
        TakeLibrary(record);
        inControl_ = true;
        break;
      case kReferenceExtended:
      case kReferenceRegistered:
      case kReferenceProject:
        TakeLibrary(record);
        named_ = inControl_ = false;
        break;
      default:
        break;
    }
  }

 private:
  DirReference& Begin() {
    named_ = true;
    return references_.emplace_back();
  }
  DirReference& Current() { return named_ ? references_.back() : Begin(); }
  void TakeLibrary(const Record& record) {
    DirReference& reference = Current();
    if (reference.libid.empty()) reference.libid = SizedText(record.data);
  }

  std::vector<DirReference>& references_;
  bool named_ = false;
  bool inControl_ = false;
};

/// Collects the modules; one ends at its terminator or where the name of the next one begins.
class DirReader {
 public:
  explicit DirReader(DirStream& dir) noexcept : dir_(dir), references_(dir.references) {}

  void Take(const Record& record) {
    switch (record.id) {
      case kProjectCodePage:
        dir_.codePage = LittleEndian<std::uint16_t>(record.data, 0);
        break;
      case kProjectName:
        dir_.projectName = record.data;
        break;
      case kProjectConstants:
        dir_.constants = record.data;
        break;
      case kModuleTerminator:
        EndModule();
        break;
      case kModuleName:
        if (!module_.name.empty()) EndModule();
        [[fallthrough]];
      default:
        references_.Take(record);
        TakeOfModule(record);
    }
  }
  void EndModule() {
    const bool named = !module_.name.empty() || !module_.unicodeName.empty();
    if (named && dir_.modules.size() <= kMostVbaModules) dir_.modules.push_back(std::move(module_));
    module_ = {};
  }

 private:
  void TakeOfModule(const Record& record) {
    switch (record.id) {
      case kModuleName:
        module_.name = record.data;
        break;
      case kModuleNameUnicode:
        module_.unicodeName = Utf8FromUtf16Bytes(record.data);
        break;
      case kModuleStreamName:
        module_.streamName = record.data;
        break;
      case kModuleStreamNameUnicode:
        module_.unicodeStreamName = Utf8FromUtf16Bytes(record.data);
        break;
      case kModuleOffset:
        module_.textOffset = LittleEndian<std::uint32_t>(record.data, 0);
        break;
      case kModuleProcedural:
        module_.procedural = true;
        break;
      default:
        break;
    }
  }

  DirStream& dir_;
  ReferenceReader references_;
  DirModule module_;
};

}  // namespace

DirStream ParseDirStream(std::string_view bytes) {
  DirStream dir;
  DirReader reader(dir);
  RecordReader records(bytes);
  for (Record record{}; records.Next(record);) reader.Take(record);
  reader.EndModule();
  dir.complete = records.AtEnd();
  return dir;
}

}  // namespace quillmate::office
