#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include <mbedtls/aes.h>
#include <mbedtls/arc4.h>

/// The ciphers and hashes of encrypted files, out of a library, in the shapes that the readers need. They only ever
/// open what the hosts themselves open without asking.
namespace quillmate::office {

class Rc4 {
 public:
  explicit Rc4(std::string_view key);
  /// Deciphers in place and goes on where the last call ended.
  void Apply(char* bytes, std::size_t count);

 private:
  mbedtls_arc4_context context_;
};

enum class HashKind { kMd5, kSha1, kSha256, kSha384, kSha512 };

/// The hash of the pieces one after the other, as bytes.
std::string Hash(HashKind kind, std::initializer_list<std::string_view> pieces);
/// By its name in a description, "SHA-1" or "SHA1" and the like; nothing for others.
std::optional<HashKind> HashNamed(std::string_view name);

class AesDecryptor {
 public:
  /// A key of 16, 24 or 32 bytes; with any other nothing can be deciphered.
  explicit AesDecryptor(std::string_view key);
  /// False for a key of no use.
  bool Usable() const noexcept { return usable_; }
  /// Whole blocks of 16 bytes in place; what is left over at the end stays.
  void Ecb(char* bytes, std::size_t count);
  /// `start` has 16 bytes, or is cut or filled up to them.
  void Cbc(std::string_view start, char* bytes, std::size_t count);

 private:
  mbedtls_aes_context context_;
  bool usable_ = false;
};

}  // namespace quillmate::office
