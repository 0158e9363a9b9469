#include <cstring>
#include <new>

#include <quillmate/files/paths.h>
#include <quillmate/files/sha256.h>
#include <quillmate/inventory/content.h>
#include <quillmate/inventory/scan.h>
#include <quillmate/office/byte_source.h>
#include <quillmate/office/office_file.h>

#include "folder_walk_p.h"
#include "packing_p.h"
#include "reader_p.h"
#include "worker_process_p.h"

namespace quillmate::inventory {
namespace {

/// Up to that size a file is read once and stays in memory while its content is read.
constexpr std::uint64_t kSmallFile = std::uint64_t{16} << 20U;
constexpr std::size_t kHead = 4096;
constexpr std::size_t kBlock = std::size_t{1} << 18U;
constexpr int kMemoryEnd = 99;

/// The file at hand, from its first look to its content.
class FileAtHand {
 public:
  FileAtHand(std::filesystem::path path, Pipes& pipes) : path_(std::move(path)), pipes_(pipes) {}

  /// False when the scan has gone.
  bool Read() {
    if (!StampOf(path_, stamp_)) return pipes_.Send('V');
    office::FileSource source(path_);
    if (source.Problem() != office::Reason::kNone) return Unreadable(source);
    const NameHint hint = HintOf(path_);
    bytes_ = office::ReadBytes(source, 0, kHead);
    if (!MayHoldMacros(bytes_, hint)) {
      return source.Problem() == office::Reason::kNone ? pipes_.Send('X') : Unreadable(source);
    }
    const std::string hash = HashOf(source);
    if (source.Problem() != office::Reason::kNone) return Unreadable(source);
    const bool small = bytes_.size() == source.Size();
    if (!small) bytes_.clear();
    std::string head(sizeof(Stamp), '\0');
    std::memcpy(head.data(), &stamp_, sizeof(stamp_));
    if (!pipes_.Send('H', head + hash + ReadingOf(hint))) return false;
    const auto answer = pipes_.Receive();
    if (!answer) return false;
    return answer->kind != 'G' || Answer(hint);
  }

 private:
  bool Unreadable(const office::FileSource& source) { return pipes_.Send('U', office::ReasonText(source.Problem())); }

  /// What is taken for a module file only by its name is a content of its own.
  std::string ReadingOf(const NameHint& hint) const {
    if (office::LooksLikeOffice(bytes_.substr(0, 64)) || hint.module.empty()) return {};
    return hint.module;
  }

  std::string HashOf(office::FileSource& source) {
    files::Sha256 sum;
    const bool keeps = source.Size() <= kSmallFile;
    sum.Add(bytes_);
    std::string block;
    for (std::uint64_t at = bytes_.size(); at < source.Size(); at += block.size()) {
      block = office::ReadBytes(source, at, kBlock);
      if (block.empty()) break;
      sum.Add(block);
      if (keeps) bytes_ += block;
    }
    return sum.Digits();
  }

  bool Answer(const NameHint& hint) {
    Content content = ReadContent(bytes_, path_, hint);
    Stamp now;
    if (!StampOf(path_, now)) return pipes_.Send('V');
    // What lay in memory is of one piece.
    if (bytes_.empty() && now != stamp_) return pipes_.Send('U', "Datei wurde beim Lesen geändert");
    Packer packer;
    Fields(packer, content);
    return pipes_.Send('R', packer.Take());
  }

  std::filesystem::path path_;
  Pipes& pipes_;
  Stamp stamp_;
  std::string bytes_;
};

}  // namespace

std::filesystem::path PathFromMessage(std::string_view bytes) {
  std::filesystem::path::string_type name(bytes.size() / sizeof(std::filesystem::path::value_type), 0);
  std::memcpy(name.data(), bytes.data(), name.size() * sizeof(std::filesystem::path::value_type));
  return name;
}

std::string MessageOf(const std::filesystem::path& path) {
  const auto& name = path.native();
  return {reinterpret_cast<const char*>(name.data()), name.size() * sizeof(std::filesystem::path::value_type)};
}

int RunReader() { return RunReader({}); }

int RunReader(const std::function<void(const std::filesystem::path&)>& before) {
  const std::unique_ptr<Pipes> pipes = ReaderPipes();
  try {
    for (;;) {
      const auto message = pipes->Receive();
      if (!message || message->kind != 'F') return 0;
      std::filesystem::path path = PathFromMessage(message->bytes);
      if (before) before(path);
      if (!FileAtHand(std::move(path), *pipes).Read()) return 0;
    }
  } catch (const std::bad_alloc&) {
    return kMemoryEnd;
  }
}

}  // namespace quillmate::inventory
