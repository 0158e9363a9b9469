#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/office/compound_file.h>
#include <quillmate/office/office_file.h>

#include "access_pages_p.h"
#include "office_result_p.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;
constexpr std::array<std::string_view, 24> kExtensions{
    "xlsm", "xlsb", "xltm", "xlam", "xls", "xla", "xlt", "docm", "dotm",  "doc",   "dot",   "pptm",
    "potm", "ppam", "ppsm", "ppt",  "pps", "pot", "mdb", "mda",  "accdb", "accda", "accde", "mde"};

// First bytes --------------------------------------------------------------------------------------------------------

enum class Kind { kUnknown, kZip, kCompound, kAccess };

constexpr std::size_t kHeadSize = 32;

Kind KindOf(std::string_view head) noexcept {
  if (head.starts_with("PK\3\4") || head.starts_with("PK\5\6")) return Kind::kZip;
  if (CompoundFile::HasSignature(head)) return Kind::kCompound;
  return AccessPages::HasSignature(head) ? Kind::kAccess : Kind::kUnknown;
}

OfficeFile ReadKind(Kind kind, ByteSource& source, const ReadOptions& options) {
  switch (kind) {
    case Kind::kZip:
      return ReadZipFile(source, options);
    case Kind::kCompound:
      return ReadCompoundFile(source, options);
    case Kind::kAccess:
      return ReadAccessFile(source, options);
    default:
      return Without(State::kNotOffice, Reason::kNotOffice);
  }
}

}  // namespace

std::string_view WordOf(OfficeHost host) noexcept {
  constexpr std::array<std::string_view, 5> kWords{"", "excel", "word", "powerpoint", "access"};
  return kWords[static_cast<std::size_t>(host)];
}

OfficeFile ReadOfficeFile(ByteSource& source, const ReadOptions& options) {
  if (source.Size() == 0) return Without(State::kFailed, Reason::kEmpty);
  const Kind kind = KindOf(ReadBytes(source, 0, kHeadSize));
  ReadOptions bounded = options;
  bounded.mostText = std::min(options.mostText, MostVbaText(source.Size()));
  OfficeFile file = ReadKind(kind, source, bounded);
  file.recognized = kind != Kind::kUnknown;
  return file;
}

OfficeFile ReadOfficeFile(const std::filesystem::path& file, const ReadOptions& options) {
  FileSource source(file);
  OfficeFile result;
  if (source.Problem() == Reason::kNone) result = ReadOfficeFile(source, options);
  // What a file that can't be read seems to lack says nothing.
  if (source.Problem() != Reason::kNone) {
    const bool recognized = result.recognized;
    result = Without(State::kFailed, source.Problem());
    result.recognized = recognized;
  }
  return result;
}

bool LooksLikeOffice(std::string_view head) noexcept { return KindOf(head) != Kind::kUnknown; }

std::span<const std::string_view> OfficeFileExtensions() noexcept { return kExtensions; }

}  // namespace quillmate::office
