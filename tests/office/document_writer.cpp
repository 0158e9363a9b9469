#include "office/document_writer.h"

#include <algorithm>
#include <array>
#include <functional>

#include <mbedtls/aes.h>
#include <mbedtls/arc4.h>
#include <mbedtls/md.h>

namespace quillmate::office {
namespace {

std::string Number(std::uint64_t number, std::size_t width) {
  std::string bytes = Bytes<8>(number);
  bytes.resize(width);
  return bytes;
}

std::u16string Wide(std::string_view latin1) {
  std::u16string wide;
  for (const char c : latin1) wide += static_cast<unsigned char>(c);
  return wide;
}

// Ciphers ------------------------------------------------------------------------------------------------------------

const unsigned char* Raw(std::string_view bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }
unsigned char* Raw(std::string& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

std::string HashOf(mbedtls_md_type_t type, std::string_view bytes) {
  const mbedtls_md_info_t* info = mbedtls_md_info_from_type(type);
  std::string hash(mbedtls_md_get_size(info), '\0');
  mbedtls_md(info, Raw(bytes), bytes.size(), Raw(hash));
  return hash;
}

std::string Rc4With(std::string_view key, std::string bytes) {
  mbedtls_arc4_context context;
  mbedtls_arc4_init(&context);
  mbedtls_arc4_setup(&context, Raw(key), static_cast<unsigned>(key.size()));
  mbedtls_arc4_crypt(&context, bytes.size(), Raw(bytes), Raw(bytes));
  return bytes;
}

/// In blocks one by one, or each mixed with the one before.
std::string AesWith(std::string_view key, std::string bytes, std::string_view start) {
  bytes.resize((bytes.size() + 15) / 16 * 16, '\0');
  mbedtls_aes_context context;
  mbedtls_aes_init(&context);
  mbedtls_aes_setkey_enc(&context, Raw(key), static_cast<unsigned>(key.size() * 8));
  if (start.empty()) {
    for (std::size_t at = 0; at < bytes.size(); at += 16) {
      mbedtls_aes_crypt_ecb(&context, MBEDTLS_AES_ENCRYPT, Raw(bytes) + at, Raw(bytes) + at);
    }
  } else {
    std::array<unsigned char, 16> vector{};
    std::copy_n(start.begin(), 16, vector.begin());
    mbedtls_aes_crypt_cbc(&context, MBEDTLS_AES_ENCRYPT, bytes.size(), vector.data(), Raw(bytes), Raw(bytes));
  }
  return bytes;
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8U | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    }
    for (unsigned i = 0; i < 4; ++i) text += at + i <= bytes.size() ? kDigits[bits >> (18 - 6 * i) & 63U] : '=';
  }
  return text;
}

std::string Spun(mbedtls_md_type_t type, std::string hash, unsigned count) {
  for (unsigned i = 0; i < count; ++i) hash = HashOf(type, Bytes<4>(i) + hash);
  return hash;
}

// Workbooks ----------------------------------------------------------------------------------------------------------

constexpr std::string_view kSalt = "0123456789abcdef";
constexpr std::string_view kVerifier = "fedcba9876543210";

/// The key of a block of 1,024 bytes.
std::string BlockKey(WrittenCipher cipher, std::string_view password, unsigned block) {
  const std::string wide = Utf16Bytes(Wide(password));
  if (cipher == WrittenCipher::kRc4Api) {
    return HashOf(MBEDTLS_MD_SHA1, HashOf(MBEDTLS_MD_SHA1, std::string(kSalt) + wide) + Bytes<4>(block)).substr(0, 16);
  }
  const std::string first = HashOf(MBEDTLS_MD_MD5, wide).substr(0, 5);
  std::string sixteen;
  for (int i = 0; i < 16; ++i) sixteen += first + std::string(kSalt);
  return HashOf(MBEDTLS_MD_MD5, HashOf(MBEDTLS_MD_MD5, sixteen).substr(0, 5) + Bytes<4>(block));
}

std::string FilePass(WrittenCipher cipher, std::string_view password) {
  if (cipher == WrittenCipher::kXor) {
    return password == "VelvetSweatshop" ? Bytes<2>(0) + Bytes<2>(0xB359) + Bytes<2>(0x9A0A) : Bytes<6>(0);
  }
  const bool api = cipher == WrittenCipher::kRc4Api;
  const std::string verifier(kVerifier);
  const std::string mixed =
      Rc4With(BlockKey(cipher, password, 0), verifier + HashOf(api ? MBEDTLS_MD_SHA1 : MBEDTLS_MD_MD5, verifier));
  if (!api) return Bytes<2>(1) + Bytes<2>(1) + Bytes<2>(1) + std::string(kSalt) + mixed;
  const std::string header = Bytes<8>(4) + Bytes<8>(0x0000800400006801) + Bytes<4>(128) + Bytes<8>(1) + Bytes<6>(0);
  return Bytes<2>(1) + Bytes<2>(4) + Bytes<2>(2) + Bytes<4>(4) + Bytes<4>(header.size()) + header + Bytes<4>(16) +
         std::string(kSalt) + mixed.substr(0, 16) + Bytes<4>(20) + mixed.substr(16);
}

char XorByte(char byte, std::size_t at) {
  constexpr std::array<unsigned, 16> kArray{0x87, 0x6B, 0x9A, 0xE2, 0x1E, 0xE3, 0x05, 0x62,
                                            0x1E, 0x69, 0x96, 0x60, 0x98, 0x6E, 0x94, 0x04};
  const unsigned plain = static_cast<unsigned char>(byte);
  return static_cast<char>((plain >> 3U | plain << 5U) ^ kArray[at % 16]);
}

}  // namespace

// Packages -----------------------------------------------------------------------------------------------------------

PackageWriter& PackageWriter::Add(std::string_view part, std::string bytes) {
  parts.push_back({std::string(part), std::move(bytes)});
  return *this;
}

PackageWriter& PackageWriter::Relate(std::string_view from, std::string_view type, std::string_view target) {
  std::string& relations = relations_[std::string(from)];
  const auto number = static_cast<unsigned>(std::count(relations.begin(), relations.end(), '<')) + 1;
  relations.append("<Relationship Id=\"rId").append(std::to_string(number)).append("\" Type=\"http://x/");
  relations.append(type).append("\" Target=\"").append(target).append("\"");
  relations += target.find(':') == std::string_view::npos ? "/>" : " TargetMode=\"External\"/>";
  return *this;
}

std::string PackageWriter::File() const {
  std::vector<ZipFile> files{{"[Content_Types].xml", "<Types/>"}};
  files.insert(files.end(), parts.begin(), parts.end());
  for (const auto& [part, relations] : relations_) {
    const std::size_t name = part.rfind('/') + 1;
    files.push_back({part.substr(0, name) + "_rels/" + part.substr(name) + ".rels",
                     "<?xml version=\"1.0\"?><Relationships>" + relations + "</Relationships>"});
  }
  return ZipOf(files);
}

// Records ------------------------------------------------------------------------------------------------------------

std::string XlsRecord(unsigned id, std::string_view data) {
  return Bytes<2>(id) + Bytes<2>(data.size()) + std::string(data);
}

std::string XlsText(std::string_view text) { return std::string(1, '\0') + std::string(text); }

std::string XlsbRecord(unsigned id, std::string_view data) {
  std::string record = id < 128 ? Bytes<1>(id) : Bytes<1>((id & 0x7FU) | 0x80U) + Bytes<1>(id >> 7U);
  std::size_t size = data.size();
  for (; size > 127; size >>= 7U) record += Bytes<1>((size & 0x7FU) | 0x80U);
  return record + Bytes<1>(size) + std::string(data);
}

std::string XlsbText(std::string_view text) { return Bytes<4>(text.size()) + Utf16Bytes(Wide(text)); }

// Forms --------------------------------------------------------------------------------------------------------------

DesignerBlock& DesignerBlock::Number(unsigned bit, std::size_t bytes, std::uint64_t value) {
  mask_ |= std::uint64_t{1} << bit;
  numbers_.emplace_back(bytes, value);
  return *this;
}

DesignerBlock& DesignerBlock::Text(unsigned bit, std::string_view latin1) {
  extras_.emplace_back(latin1);
  return Number(bit, 4, latin1.size() | 0x80000000U);
}

DesignerBlock& DesignerBlock::WideText(unsigned bit, std::u16string_view text) {
  extras_.push_back(Utf16Bytes(text));
  return Number(bit, 4, text.size() * 2);
}

DesignerBlock& DesignerBlock::Point(unsigned bit, std::int32_t x, std::int32_t y) {
  mask_ |= std::uint64_t{1} << bit;
  extras_.push_back(office::Bytes<4>(static_cast<std::uint32_t>(x)) + office::Bytes<4>(static_cast<std::uint32_t>(y)));
  return *this;
}

std::string DesignerBlock::Bytes() const {
  std::string bytes(4, '\0');
  bytes += office::Number(mask_, maskBytes_);
  const auto align = [&](std::size_t to) { bytes.resize((bytes.size() + to - 1) / to * to, '\0'); };
  for (const auto& [width, value] : numbers_) {
    align(width);
    bytes += office::Number(value, width);
  }
  for (const std::string& extra : extras_) {
    align(4);
    bytes += extra;
  }
  align(4);
  bytes[1] = static_cast<char>(major_);
  bytes.replace(2, 2, office::Bytes<2>(bytes.size() - 4));
  return bytes;
}

std::string DesignerForm(const std::string& caption, const std::vector<DesignerSite>& sites,
                         const std::vector<std::string>& classes) {
  std::string font("\x03\x52\xE3\x0B\x91\x8F\xCE\x11\x9D\xE3\x00\xAA\x00\x4B\xB8\x51", 16);
  font += std::string(10, 'f') + "\x06Tahoma";
  std::string form = DesignerBlock(4).Number(3, 4, 9).Text(19, caption).Number(20, 2, 0xFFFF).Bytes() + font;
  form += Bytes<2>(classes.size());
  for (const std::string& entry : classes) form += Bytes<2>(0) + Bytes<2>(entry.size()) + entry;
  std::string blocks;
  for (const DesignerSite& site : sites) blocks += site.site;
  // One run of sites of the same kind.
  const std::string run = Bytes<1>(0) + Bytes<1>(0x80U | sites.size()) + Bytes<1>(1) + '\0';
  return form + Bytes<4>(sites.size()) + Bytes<4>(run.size() + blocks.size()) + run + blocks;
}

std::string DesignerObjects(const std::vector<DesignerSite>& sites) {
  std::string objects;
  for (const DesignerSite& site : sites) objects += site.object;
  return objects;
}

// Encryption ---------------------------------------------------------------------------------------------------------

std::string EncryptedWorkbook(std::string_view records, WrittenCipher cipher, std::string_view password) {
  std::string stream;
  std::string plain;
  for (std::size_t at = 0; at + 4 <= records.size();) {
    const auto size = static_cast<unsigned char>(records[at + 2]) + 256U * static_cast<unsigned char>(records[at + 3]);
    stream += records.substr(at, 4 + size);
    if (at == 0) stream += XlsRecord(0x2F, FilePass(cipher, password));
    at += 4 + size;
  }
  const std::string whole = stream;
  for (std::size_t at = 0; at + 4 <= whole.size();) {
    const unsigned id = static_cast<unsigned char>(whole[at]) + 256U * static_cast<unsigned char>(whole[at + 1]);
    const std::size_t size =
        static_cast<unsigned char>(whole[at + 2]) + 256U * static_cast<unsigned char>(whole[at + 3]);
    const bool clear = id == 0x809 || id == 0x2F;
    for (std::size_t i = id == 0x85 ? 4 : 0; i < size && !clear; ++i) {
      const std::size_t place = at + 4 + i;
      if (cipher == WrittenCipher::kXor) {
        stream[place] = XorByte(whole[place], at + 4 + size + i);
      } else {
        // As slow as it is plain: the key stream of the block up to this byte.
        const std::string mask = Rc4With(BlockKey(cipher, password, static_cast<unsigned>(place / 1024)),
                                         std::string(place % 1024 + 1, '\0'));
        stream[place] = static_cast<char>(whole[place] ^ mask.back());
      }
    }
    at += 4 + size;
  }
  return stream;
}

std::string EncryptedPackageOf(std::string_view zip, bool agile, std::string_view password) {
  const std::string wide = Utf16Bytes(Wide(password));
  const std::string verifier(kVerifier);
  std::string package = Bytes<8>(zip.size());
  std::string info;
  if (agile) {
    constexpr mbedtls_md_type_t kHash = MBEDTLS_MD_SHA512;
    const std::string spun = Spun(kHash, HashOf(kHash, std::string(kSalt) + wide), 100);
    const auto sealed = [&](std::string_view block, const std::string& bytes) {
      return Base64(AesWith(HashOf(kHash, spun + std::string(block)).substr(0, 32), bytes, kSalt));
    };
    const std::string key(32, 'k');
    const std::string common =
        " saltSize=\"16\" blockSize=\"16\" keyBits=\"256\" hashSize=\"64\" cipherAlgorithm=\"AES\" "
        "cipherChaining=\"ChainingModeCBC\" hashAlgorithm=\"SHA512\" saltValue=\"" +
        Base64(kSalt) + "\"";
    info = Bytes<2>(4) + Bytes<2>(4) + Bytes<4>(0x40) + "<encryption><keyData" + common +
           "/><keyEncryptors><keyEncryptor><p:encryptedKey spinCount=\"100\"" + common +
           " encryptedVerifierHashInput=\"" + sealed("\xFE\xA7\xD2\x76\x3B\x4B\x9E\x79", verifier) +
           "\" encryptedVerifierHashValue=\"" + sealed("\xD7\xAA\x0F\x6D\x30\x61\x34\x4E", HashOf(kHash, verifier)) +
           "\" encryptedKeyValue=\"" + sealed("\x14\x6E\x0B\xE7\xAB\xAC\xD0\xD6", key) +
           "\"/></keyEncryptor></keyEncryptors></encryption>";
    for (std::size_t at = 0; at < zip.size(); at += 4096) {
      const std::string start = HashOf(kHash, std::string(kSalt) + Bytes<4>(at / 4096)).substr(0, 16);
      package += AesWith(key, std::string(zip.substr(at, 4096)), start);
    }
  } else {
    constexpr mbedtls_md_type_t kHash = MBEDTLS_MD_SHA1;
    const std::string last = HashOf(kHash, Spun(kHash, HashOf(kHash, std::string(kSalt) + wide), 50000) + Bytes<4>(0));
    std::string block(64, '\x36');
    for (std::size_t i = 0; i < last.size(); ++i) block[i] = static_cast<char>(block[i] ^ last[i]);
    const std::string key = HashOf(kHash, block).substr(0, 16);
    const std::string header = Bytes<4>(0x24) + Bytes<4>(0) + Bytes<4>(0x660E) + Bytes<4>(0x8004) + Bytes<4>(128) +
                               Bytes<4>(0x18) + Bytes<8>(0) + Bytes<2>(0);
    info = Bytes<2>(4) + Bytes<2>(2) + Bytes<4>(0x24) + Bytes<4>(header.size()) + header + Bytes<4>(16) +
           std::string(kSalt) + AesWith(key, verifier, "") + Bytes<4>(20) + AesWith(key, HashOf(kHash, verifier), "");
    package += AesWith(key, std::string(zip), "");
  }
  CompoundWriter file;
  file.Add("EncryptionInfo", info);
  file.Add("EncryptedPackage", package);
  return file.File();
}

}  // namespace quillmate::office
