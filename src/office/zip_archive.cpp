#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include <zip.h>

#include <quillmate/text/operations.h>

#include "zip_archive_p.h"

namespace quillmate::office {
namespace {

/// No deflated byte becomes more than this.
constexpr std::uint64_t kDeflateRatio = 1032;
constexpr std::size_t kPiece = std::size_t{64} << 10U;

/// What the zip library reads through. While it looks for its table of contents, it gets a limited number of bytes.
class Reader {
 public:
  explicit Reader(ByteSource& source) noexcept : source_(source) { zip_error_init(&error_); }
  ~Reader() { zip_error_fini(&error_); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  /// The library's callback; `state` is a Reader.
  static zip_int64_t Handle(void* state, void* data, zip_uint64_t size, zip_source_cmd_t command) {
    return static_cast<Reader*>(state)->Do(data, size, command);
  }
  void LiftLimit() noexcept { limited_ = false; }

 private:
  zip_int64_t Do(void* data, zip_uint64_t size, zip_source_cmd_t command) {
    switch (command) {
      case ZIP_SOURCE_OPEN:
        at_ = 0;
        return 0;
      case ZIP_SOURCE_CLOSE:
      case ZIP_SOURCE_FREE:
        return 0;
      case ZIP_SOURCE_READ:
        return Read(static_cast<char*>(data), size);
      case ZIP_SOURCE_SEEK:
        return Seek(data, size);
      case ZIP_SOURCE_TELL:
        return static_cast<zip_int64_t>(at_);
      case ZIP_SOURCE_STAT:
        return Stat(data);
      case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&error_, data, size);
      case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, -1);
      default:
        zip_error_set(&error_, ZIP_ER_OPNOTSUPP, 0);
        return -1;
    }
  }

  zip_int64_t Read(char* to, zip_uint64_t size) {
    read_ += size;
    if (limited_ && read_ > kLargestZipDirectory) {
      zip_error_set(&error_, ZIP_ER_READ, 0);
      return -1;
    }
    const std::size_t got = source_.Read(at_, to, static_cast<std::size_t>(size));
    at_ += got;
    return static_cast<zip_int64_t>(got);
  }
  zip_int64_t Seek(void* data, zip_uint64_t size) {
    const zip_int64_t to = zip_source_seek_compute_offset(at_, source_.Size(), data, size, &error_);
    if (to < 0) return -1;
    at_ = static_cast<std::uint64_t>(to);
    return 0;
  }
  zip_int64_t Stat(void* data) const {
    auto* stat = static_cast<zip_stat_t*>(data);
    zip_stat_init(stat);
    stat->valid = ZIP_STAT_SIZE;
    stat->size = source_.Size();
    return sizeof *stat;
  }

  ByteSource& source_;
  zip_error_t error_{};
  std::uint64_t at_ = 0;
  std::uint64_t read_ = 0;
  bool limited_ = true;
};

struct Discard {
  void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
  void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, Discard>;
using ArchiveFile = std::unique_ptr<zip_file_t, Discard>;

Archive Open(Reader& reader) {
  zip_source_t* source = zip_source_function_create(&Reader::Handle, &reader, nullptr);
  if (source == nullptr) return nullptr;
  zip_t* archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
  if (archive == nullptr) zip_source_free(source);
  return Archive(archive);
}

bool EndsWith(std::string_view name, std::string_view ending) noexcept {
  return name.size() >= ending.size() && text::EqualsIgnoreCase(name.substr(name.size() - ending.size()), ending);
}

std::string LowerCase(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return lower;
}

class EntryStream final : public ByteStream {
 public:
  explicit EntryStream(ArchiveFile file) : file_(std::move(file)) {}
  std::size_t Read(char* to, std::size_t count) override {
    const zip_int64_t got = zip_fread(file_.get(), to, count);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
  }

 private:
  ArchiveFile file_;
};

/// Reads until the end, an error or the limit.
void ReadAll(zip_file_t& file, std::size_t limit, ZipEntry& entry) {
  std::array<char, kPiece> piece;
  zip_int64_t got = 0;
  while ((got = zip_fread(&file, piece.data(), piece.size())) > 0) {
    if (static_cast<std::size_t>(got) > limit - entry.bytes.size()) {
      entry.state = ZipEntry::State::kTooLarge;
      return;
    }
    entry.bytes.append(piece.data(), static_cast<std::size_t>(got));
  }
  entry.complete = got == 0;
  entry.state = entry.bytes.empty() ? ZipEntry::State::kDamaged : ZipEntry::State::kRead;
}

}  // namespace

struct ZipArchive::State {
  explicit State(ByteSource& source) : reader(source), archive(Open(reader)) {}

  std::string_view NameOf(Index index) const {
    const char* name = zip_get_name(archive.get(), index, ZIP_FL_ENC_RAW);
    return name == nullptr ? std::string_view() : name;
  }
  Index Count() const {
    const zip_int64_t count = archive == nullptr ? 0 : zip_get_num_entries(archive.get(), 0);
    return count < 0 ? 0 : static_cast<Index>(count);
  }

  Reader reader;
  Archive archive;
  std::unordered_map<std::string, Index> byName;
};

ZipArchive::ZipArchive(ByteSource& source) : state_(std::make_unique<State>(source)) {
  if (!Opened()) return;
  state_->reader.LiftLimit();
  for (Index index = 0; index < state_->Count(); ++index) {
    state_->byName.try_emplace(LowerCase(state_->NameOf(index)), index);
  }
}

ZipArchive::~ZipArchive() = default;

bool ZipArchive::Opened() const noexcept { return state_->archive != nullptr; }

std::optional<ZipArchive::Index> ZipArchive::Find(std::string_view name) const {
  const auto found = state_->byName.find(LowerCase(name));
  return found == state_->byName.end() ? std::nullopt : std::optional(found->second);
}

std::optional<ZipArchive::Index> ZipArchive::FindEnding(std::string_view ending) const {
  for (Index index = 0; index < state_->Count(); ++index) {
    if (EndsWith(state_->NameOf(index), ending)) return index;
  }
  return std::nullopt;
}

bool ZipArchive::HoldsFolder(std::string_view folder) const {
  return std::any_of(state_->byName.begin(), state_->byName.end(),
                     [&](const auto& entry) { return std::string_view(entry.first).starts_with(folder); });
}

std::string ZipArchive::Name(Index index) const { return std::string(state_->NameOf(index)); }

ZipEntry ZipArchive::Read(Index index, std::size_t limit) const {
  zip_stat_t stat;
  zip_stat_init(&stat);
  ZipEntry entry;
  entry.state = ZipEntry::State::kDamaged;
  if (zip_stat_index(state_->archive.get(), index, 0, &stat) != 0) return entry;
  if (stat.encryption_method != ZIP_EM_NONE) {
    entry.state = ZipEntry::State::kEncrypted;
  } else if (stat.size > limit) {
    entry.state = ZipEntry::State::kTooLarge;
  } else if (const ArchiveFile file(zip_fopen_index(state_->archive.get(), index, 0)); file != nullptr) {
    entry.bytes.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(stat.size, stat.comp_size * kDeflateRatio)));
    ReadAll(*file, limit, entry);
  }
  return entry;
}

std::unique_ptr<ByteStream> ZipArchive::Stream(Index index) const {
  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_stat_index(state_->archive.get(), index, 0, &stat) != 0) return nullptr;
  if (stat.encryption_method != ZIP_EM_NONE) return nullptr;
  ArchiveFile file(zip_fopen_index(state_->archive.get(), index, 0));
  return file == nullptr ? nullptr : std::make_unique<EntryStream>(std::move(file));
}

}  // namespace quillmate::office
