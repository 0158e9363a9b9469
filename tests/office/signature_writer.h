#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Writes signatures of macro projects: the message with its certificates, whose sums are made up, since nobody
/// verifies them.
namespace quillmate::office {

struct WrittenName {
  /// UTF-8.
  std::string common, organization;
  /// Big-endian UTF-16 instead; of characters below 256 only.
  bool wide = false;
};

struct WrittenCertificate {
  WrittenName subject, issuer;
  std::string serial = "\x01";
  /// "240531120000Z", or "20510531120000Z".
  std::string from = "240101000000Z", until = "271231235959Z";
  /// Its key's sum, where it tells one.
  std::string keyId = {};
};

struct WrittenSignature {
  std::vector<WrittenCertificate> certificates;
  /// The one that has signed.
  std::size_t signer = 0;
  /// The signer is named by its key instead of by issuer and number.
  bool byKey = false;

  /// The message alone.
  std::string Message() const;
  /// As it is in a part "vbaProjectSignature.bin", or a property of a compound file.
  std::string Blob() const;
  /// The stream "\5DocumentSummaryInformation" that has it.
  std::string Summary() const;
};

}  // namespace quillmate::office
