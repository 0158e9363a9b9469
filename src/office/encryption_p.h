#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/compound_file.h>

#include "ciphers_p.h"

/// Files that are encrypted with the password that the hosts try by themselves before they ask anybody: a structure
/// was to be protected and not a secret. After the published format [MS-OFFCRYPTO]. With any other password a file
/// stays closed.
namespace quillmate::office {

/// The records of a workbook in a compound file [MS-XLS] 2.2.10.
class WorkbookCipher {
 public:
  /// From the content of the record FilePass; nothing when the password is another one or the method is not known.
  static std::optional<WorkbookCipher> Open(std::string_view filePass);

  /// Deciphers a record in place. `dataAt` is where its data is in the stream; records come in the order of the file.
  void Apply(std::uint16_t record, std::uint64_t dataAt, std::string& data);

 private:
  enum class Method { kXor, kRc4, kRc4Api };

  std::string KeyOf(std::uint32_t block) const;
  bool Verify(std::string_view verifier, std::string_view hash);
  void ApplyXor(std::uint64_t dataAt, std::string& data) const;
  void ApplyRc4(std::uint64_t dataAt, std::string& data, std::size_t plain);
  void MoveTo(std::uint64_t at);

  Method method_ = Method::kXor;
  /// What the keys of the blocks are made of.
  std::string base_;
  std::size_t keyBytes_ = 0;
  std::optional<Rc4> rc4_;
  std::uint32_t block_ = 0;
  std::uint64_t at_ = 0;
};

/// A document in the open formats that is encrypted in a compound file.
///
///     EncryptionInfo     how, 2.3.4: version, then a description in binary (x.2, "standard") or XML (4.4, "agile")
///     EncryptedPackage   size of the document (64 bits), then the document, in segments of 4,096 bytes
class PackageSource final : public ByteSource {
 public:
  /// Nothing when the password is another one or the method is not known. `file` has to outlive the source.
  static std::unique_ptr<PackageSource> Open(const CompoundFile& file);

  std::uint64_t Size() const noexcept override { return size_; }
  std::size_t Read(std::uint64_t offset, char* to, std::size_t count) override;

 private:
  PackageSource(PiecedSource package, std::string key) : package_(std::move(package)), aes_(key) {}
  void LoadSegment(std::uint64_t segment);

  PiecedSource package_;
  AesDecryptor aes_;
  /// With "agile" each segment has a start of its own, made of this.
  std::optional<HashKind> segmentHash_;
  std::string segmentSalt_;
  std::uint64_t size_ = 0;
  std::uint64_t segment_ = UINT64_MAX;
  std::string bytes_;
};

}  // namespace quillmate::office
