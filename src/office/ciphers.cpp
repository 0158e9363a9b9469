#include <algorithm>
#include <array>

#include <mbedtls/md.h>

#include <quillmate/text/operations.h>

#include "ciphers_p.h"

namespace quillmate::office {
namespace {

constexpr std::size_t kBlock = 16;

struct NamedHash {
  std::string_view name;
  HashKind kind;
  mbedtls_md_type_t type;
};
constexpr std::array kHashes{NamedHash{"MD5", HashKind::kMd5, MBEDTLS_MD_MD5},
                             NamedHash{"SHA1", HashKind::kSha1, MBEDTLS_MD_SHA1},
                             NamedHash{"SHA-1", HashKind::kSha1, MBEDTLS_MD_SHA1},
                             NamedHash{"SHA256", HashKind::kSha256, MBEDTLS_MD_SHA256},
                             NamedHash{"SHA384", HashKind::kSha384, MBEDTLS_MD_SHA384},
                             NamedHash{"SHA512", HashKind::kSha512, MBEDTLS_MD_SHA512}};

const unsigned char* Bytes(std::string_view bytes) noexcept {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}
unsigned char* Bytes(char* bytes) noexcept { return reinterpret_cast<unsigned char*>(bytes); }

}  // namespace

Rc4::Rc4(std::string_view key) {
  mbedtls_arc4_init(&context_);
  mbedtls_arc4_setup(&context_, Bytes(key), static_cast<unsigned>(key.size()));
}

void Rc4::Apply(char* bytes, std::size_t count) { mbedtls_arc4_crypt(&context_, count, Bytes(bytes), Bytes(bytes)); }

std::string Hash(HashKind kind, std::initializer_list<std::string_view> pieces) {
  const auto* found =
      std::find_if(kHashes.begin(), kHashes.end(), [=](const NamedHash& entry) { return entry.kind == kind; });
  const mbedtls_md_info_t* info = mbedtls_md_info_from_type(found->type);
  std::string hash(mbedtls_md_get_size(info), '\0');
  mbedtls_md_context_t context;
  mbedtls_md_init(&context);
  bool done = mbedtls_md_setup(&context, info, 0) == 0 && mbedtls_md_starts(&context) == 0;
  for (const std::string_view piece : pieces) {
    done = done && mbedtls_md_update(&context, Bytes(piece), piece.size()) == 0;
  }
  done = done && mbedtls_md_finish(&context, Bytes(hash.data())) == 0;
  mbedtls_md_free(&context);
  // Out of memory: nothing fits an empty hash.
  return done ? hash : std::string();
}

std::optional<HashKind> HashNamed(std::string_view name) {
  const auto* found = std::find_if(kHashes.begin(), kHashes.end(),
                                   [&](const NamedHash& entry) { return text::EqualsIgnoreCase(entry.name, name); });
  return found == kHashes.end() ? std::nullopt : std::optional(found->kind);
}

AesDecryptor::AesDecryptor(std::string_view key) {
  mbedtls_aes_init(&context_);
  usable_ = mbedtls_aes_setkey_dec(&context_, Bytes(key), static_cast<unsigned>(key.size() * 8)) == 0;
}

void AesDecryptor::Ecb(char* bytes, std::size_t count) {
  for (std::size_t at = 0; usable_ && at + kBlock <= count; at += kBlock) {
    mbedtls_aes_crypt_ecb(&context_, MBEDTLS_AES_DECRYPT, Bytes(bytes + at), Bytes(bytes + at));
  }
}

void AesDecryptor::Cbc(std::string_view start, char* bytes, std::size_t count) {
  std::array<unsigned char, kBlock> vector{};
  std::copy_n(start.begin(), std::min(start.size(), kBlock), vector.begin());
  if (usable_) {
    mbedtls_aes_crypt_cbc(&context_, MBEDTLS_AES_DECRYPT, count / kBlock * kBlock, vector.data(), Bytes(bytes),
                          Bytes(bytes));
  }
}

}  // namespace quillmate::office
