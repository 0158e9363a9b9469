#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include <quillmate/text/operations.h>

#include "byte_stream_p.h"
#include "encryption_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

/// "VelvetSweatshop" in UTF-16, as the format has it.
constexpr std::string_view kPassword("V\0e\0l\0v\0e\0t\0S\0w\0e\0a\0t\0s\0h\0o\0p\0", 30);
constexpr std::uint32_t kMostSpins = 10'000'000;
constexpr std::size_t kSegment = 4096;
constexpr std::size_t kLargestInfo = std::size_t{1} << 20U;

std::string Bytes4(std::uint32_t number) {
  std::string bytes(4, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(number & 0xFFU);
    number >>= 8U;
  }
  return bytes;
}

std::string_view Part(std::string_view bytes, std::size_t at, std::size_t size) noexcept {
  return at > bytes.size() ? std::string_view() : bytes.substr(at, size);
}

// Workbooks ----------------------------------------------------------------------------------------------------------

constexpr std::uint64_t kBlock = 1024;
constexpr std::uint16_t kXorKey = 0xB359;
constexpr std::uint16_t kXorVerifier = 0x9A0A;
constexpr std::array<unsigned char, 16> kXorArray{0x87, 0x6B, 0x9A, 0xE2, 0x1E, 0xE3, 0x05, 0x62,
                                                  0x1E, 0x69, 0x96, 0x60, 0x98, 0x6E, 0x94, 0x04};

/// Records whose data is never enciphered.
bool IsPlain(std::uint16_t record) noexcept {
  constexpr std::array<std::uint16_t, 7> kPlain{0x0809, 0x002F, 0x00E1, 0x0194, 0x0195, 0x0196, 0x0138};
  return std::find(kPlain.begin(), kPlain.end(), record) != kPlain.end();
}

/// The place of the sheet in BoundSheet8 is not enciphered.
std::size_t PlainStart(std::uint16_t record) noexcept {
  constexpr std::uint16_t kSheet = 0x0085;
  return record == kSheet ? 4 : 0;
}

}  // namespace

std::optional<WorkbookCipher> WorkbookCipher::Open(std::string_view filePass) {
  constexpr std::size_t kTruncated = 5;
  WorkbookCipher cipher;
  if (LittleEndian<std::uint16_t>(filePass, 0) == 0) {
    const bool known =
        LittleEndian<std::uint16_t>(filePass, 2) == kXorKey && LittleEndian<std::uint16_t>(filePass, 4) == kXorVerifier;
    return known ? std::optional(std::move(cipher)) : std::nullopt;
  }
  const unsigned minor = LittleEndian<std::uint16_t>(filePass, 4);
  if (minor == 1) {
    cipher.method_ = Method::kRc4;
    const std::string_view salt = Part(filePass, 6, 16);
    const std::string first = Hash(HashKind::kMd5, {kPassword}).substr(0, kTruncated);
    std::string sixteen;
    for (int i = 0; i < 16; ++i) sixteen.append(first).append(salt);
    cipher.base_ = Hash(HashKind::kMd5, {sixteen}).substr(0, kTruncated);
    cipher.keyBytes_ = 16;
    return cipher.Verify(Part(filePass, 22, 16), Part(filePass, 38, 16)) ? std::optional(std::move(cipher))
                                                                         : std::nullopt;
  }
  if (minor != 2) return std::nullopt;
  cipher.method_ = Method::kRc4Api;
  constexpr std::size_t kHeaderAt = 14;
  const std::size_t verifierAt = kHeaderAt + LittleEndian<std::uint32_t>(filePass, 10);
  const std::uint32_t bits = LittleEndian<std::uint32_t>(filePass, kHeaderAt + 16);
  // The format has 40 bits where it says 0.
  cipher.keyBytes_ = bits == 0 ? 5 : bits / 8;
  if (cipher.keyBytes_ < 5 || cipher.keyBytes_ > 16) return std::nullopt;
  cipher.base_ = Hash(HashKind::kSha1, {Part(filePass, verifierAt + 4, 16), kPassword});
  const bool fits = cipher.Verify(Part(filePass, verifierAt + 20, 16), Part(filePass, verifierAt + 40, 20));
  return fits ? std::optional(std::move(cipher)) : std::nullopt;
}

std::string WorkbookCipher::KeyOf(std::uint32_t block) const {
  constexpr std::size_t kShortKey = 5;
  constexpr std::size_t kFullKey = 16;
  std::string key = Hash(method_ == Method::kRc4 ? HashKind::kMd5 : HashKind::kSha1, {base_, Bytes4(block)});
  key.resize(keyBytes_);
  if (keyBytes_ == kShortKey) key.resize(kFullKey, '\0');
  return key;
}

bool WorkbookCipher::Verify(std::string_view verifier, std::string_view hash) {
  std::string plain = std::string(verifier).append(hash);
  Rc4 rc4(KeyOf(0));
  rc4.Apply(plain.data(), plain.size());
  const HashKind kind = method_ == Method::kRc4 ? HashKind::kMd5 : HashKind::kSha1;
  const std::string expected = Hash(kind, {std::string_view(plain).substr(0, verifier.size())});
  return !hash.empty() && std::string_view(plain).substr(verifier.size()) == expected;
}

void WorkbookCipher::Apply(std::uint16_t record, std::uint64_t dataAt, std::string& data) {
  if (IsPlain(record)) return;
  if (method_ == Method::kXor) {
    const std::string plain = data.substr(0, PlainStart(record));
    ApplyXor(dataAt, data);
    data.replace(0, plain.size(), plain);
  } else {
    ApplyRc4(dataAt, data, PlainStart(record));
  }
}

void WorkbookCipher::ApplyXor(std::uint64_t dataAt, std::string& data) const {
  for (std::size_t i = 0; i < data.size(); ++i) {
    const unsigned mixed =
        static_cast<unsigned char>(data[i]) ^ kXorArray[(dataAt + data.size() + i) % kXorArray.size()];
    data[i] = static_cast<char>((mixed << 3U | mixed >> 5U) & 0xFFU);
  }
}

/// Every byte of the stream moves the cipher on, also one that is not enciphered; each 1,024 have a key of their own.
void WorkbookCipher::MoveTo(std::uint64_t at) {
  const auto block = static_cast<std::uint32_t>(at / kBlock);
  if (!rc4_.has_value() || block != block_ || at < at_) {
    rc4_.emplace(KeyOf(block));
    block_ = block;
    at_ = block * kBlock;
  }
  std::array<char, kBlock> unused{};
  rc4_->Apply(unused.data(), static_cast<std::size_t>(at - at_));
  at_ = at;
}

void WorkbookCipher::ApplyRc4(std::uint64_t dataAt, std::string& data, std::size_t plain) {
  for (std::size_t done = std::min(plain, data.size()); done < data.size();) {
    MoveTo(dataAt + done);
    const std::size_t inBlock = static_cast<std::size_t>(kBlock - at_ % kBlock);
    const std::size_t count = std::min(inBlock, data.size() - done);
    rc4_->Apply(data.data() + done, count);
    at_ += count;
    done += count;
    // The next byte is another block's.
    if (at_ % kBlock == 0) rc4_.reset();
  }
}

// Packages -----------------------------------------------------------------------------------------------------------

namespace {

/// Hashes a hash again and again with a number in front.
std::string Spin(HashKind kind, std::string hash, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i) hash = Hash(kind, {Bytes4(i), hash});
  return hash;
}

/// What opens the package.
struct PackageKey {
  std::string key;
  std::optional<HashKind> segmentHash;
  std::string segmentSalt;
};

std::optional<PackageKey> StandardKey(std::string_view info) {
  constexpr std::size_t kHeaderAt = 12;
  constexpr std::uint32_t kSpins = 50'000;
  constexpr std::uint32_t kAes128 = 0x660E;
  constexpr std::uint32_t kAes256 = 0x6610;
  const std::size_t verifierAt = kHeaderAt + LittleEndian<std::uint32_t>(info, 8);
  const auto algorithm = LittleEndian<std::uint32_t>(info, kHeaderAt + 8);
  const std::size_t keyBytes = LittleEndian<std::uint32_t>(info, kHeaderAt + 16) / 8;
  if (algorithm < kAes128 || algorithm > kAes256 || keyBytes > 32) return std::nullopt;
  const std::string spun =
      Spin(HashKind::kSha1, Hash(HashKind::kSha1, {Part(info, verifierAt + 4, 16), kPassword}), kSpins);
  const std::string last = Hash(HashKind::kSha1, {spun, Bytes4(0)});
  std::string key;
  for (const char pad : {'\x36', '\x5C'}) {
    std::string block(64, pad);
    for (std::size_t i = 0; i < last.size(); ++i) block[i] = static_cast<char>(block[i] ^ last[i]);
    key += Hash(HashKind::kSha1, {block});
  }
  key.resize(keyBytes);
  AesDecryptor aes(key);
  std::string verifier(Part(info, verifierAt + 20, 16));
  std::string hash(Part(info, verifierAt + 40, 32));
  aes.Ecb(verifier.data(), verifier.size());
  aes.Ecb(hash.data(), hash.size());
  const bool fits = aes.Usable() && hash.starts_with(Hash(HashKind::kSha1, {verifier}));
  return fits ? std::optional(PackageKey{std::move(key), std::nullopt, {}}) : std::nullopt;
}

std::string FromBase64(std::string_view text) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned bits = 0;
  unsigned count = 0;
  for (const char c : text) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) continue;
    bits = (bits << 6U | static_cast<unsigned>(digit)) & 0xFFFFU;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFFU);
  }
  return bytes;
}

/// The attributes of "keyData" and of the password's "encryptedKey" that are needed.
struct AgileInfo {
  std::optional<HashKind> dataHash;
  std::string dataSalt;
  std::optional<HashKind> keyHash;
  std::string keySalt;
  std::uint32_t spins = 0;
  std::size_t keyBytes = 0;
  std::string verifierInput;
  std::string verifierHash;
  std::string keyValue;
  bool isAes = true;
};

std::uint32_t NumberOf(std::string_view text) noexcept {
  std::uint32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

AgileInfo ReadAgileInfo(std::string_view xmlText) {
  MemoryStream stream(xmlText);
  XmlReader xml(stream);
  AgileInfo info;
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone; tag = xml.Next()) {
    const bool data = xml.Name() == "keyData";
    if (tag != XmlReader::Tag::kStart || (!data && xml.Name() != "encryptedKey")) continue;
    const std::optional<HashKind> hash = HashNamed(xml.RawAttribute("hashAlgorithm"));
    info.isAes = info.isAes && xml.RawAttribute("cipherAlgorithm") == "AES" &&
                 xml.RawAttribute("cipherChaining") == "ChainingModeCBC" && xml.RawAttribute("blockSize") == "16";
    (data ? info.dataHash : info.keyHash) = hash;
    (data ? info.dataSalt : info.keySalt) = FromBase64(xml.RawAttribute("saltValue"));
    if (data) continue;
    info.spins = NumberOf(xml.RawAttribute("spinCount"));
    info.keyBytes = NumberOf(xml.RawAttribute("keyBits")) / 8;
    info.verifierInput = FromBase64(xml.RawAttribute("encryptedVerifierHashInput"));
    info.verifierHash = FromBase64(xml.RawAttribute("encryptedVerifierHashValue"));
    info.keyValue = FromBase64(xml.RawAttribute("encryptedKeyValue"));
  }
  return info;
}

std::optional<PackageKey> AgileKey(std::string_view xmlText) {
  const AgileInfo info = ReadAgileInfo(xmlText);
  const bool usable = info.isAes && info.dataHash.has_value() && info.keyHash.has_value() && info.spins <= kMostSpins &&
                      info.keyBytes >= 16 && info.keyBytes <= 32 && !info.keyValue.empty();
  if (!usable) return std::nullopt;
  const HashKind kind = *info.keyHash;
  const std::string spun = Spin(kind, Hash(kind, {info.keySalt, kPassword}), info.spins);
  const auto opened = [&](std::string_view blockKey, std::string bytes) {
    std::string key = Hash(kind, {spun, blockKey});
    key.resize(info.keyBytes, '\x36');
    AesDecryptor(key).Cbc(info.keySalt, bytes.data(), bytes.size());
    return bytes;
  };
  std::string verifier = opened("\xFE\xA7\xD2\x76\x3B\x4B\x9E\x79", info.verifierInput);
  verifier.resize(std::min(verifier.size(), info.keySalt.size()));
  const std::string hash = opened("\xD7\xAA\x0F\x6D\x30\x61\x34\x4E", info.verifierHash);
  if (verifier.empty() || !hash.starts_with(Hash(kind, {verifier}))) return std::nullopt;
  std::string key = opened("\x14\x6E\x0B\xE7\xAB\xAC\xD0\xD6", info.keyValue);
  key.resize(std::min(key.size(), info.keyBytes));
  return PackageKey{std::move(key), info.dataHash, info.dataSalt};
}

std::optional<PackageKey> KeyOfPackage(std::string_view info) {
  constexpr std::size_t kXmlAt = 8;
  const unsigned major = LittleEndian<std::uint16_t>(info, 0);
  const unsigned minor = LittleEndian<std::uint16_t>(info, 2);
  if (major == 4 && minor == 4) return AgileKey(Part(info, kXmlAt, info.size()));
  return minor == 2 ? StandardKey(info) : std::nullopt;
}

}  // namespace

std::unique_ptr<PackageSource> PackageSource::Open(const CompoundFile& file) {
  constexpr std::size_t kSizeBytes = 8;
  const auto info = file.FindStream(CompoundFile::kRoot, "EncryptionInfo");
  const auto package = file.FindStream(CompoundFile::kRoot, "EncryptedPackage");
  if (!info.has_value() || !package.has_value()) return nullptr;
  std::optional<PackageKey> key = KeyOfPackage(file.ReadStream(*info, kLargestInfo).bytes);
  if (!key.has_value()) return nullptr;
  std::unique_ptr<PackageSource> source(new PackageSource(file.OpenStream(*package, file.Size()), key->key));
  if (!source->aes_.Usable()) return nullptr;
  source->segmentHash_ = key->segmentHash;
  source->segmentSalt_ = std::move(key->segmentSalt);
  const std::uint64_t stored = source->package_.Size() - std::min<std::uint64_t>(source->package_.Size(), kSizeBytes);
  source->size_ = std::min(stored, LittleEndian<std::uint64_t>(ReadBytes(source->package_, 0, kSizeBytes), 0));
  return source;
}

void PackageSource::LoadSegment(std::uint64_t segment) {
  constexpr std::size_t kSizeBytes = 8;
  if (segment == segment_) return;
  bytes_ = ReadBytes(package_, kSizeBytes + segment * kSegment, kSegment);
  if (segmentHash_.has_value()) {
    std::string start = Hash(*segmentHash_, {segmentSalt_, Bytes4(static_cast<std::uint32_t>(segment))});
    start.resize(16, '\x36');
    aes_.Cbc(start, bytes_.data(), bytes_.size());
  } else {
    aes_.Ecb(bytes_.data(), bytes_.size());
  }
  segment_ = segment;
}

std::size_t PackageSource::Read(std::uint64_t offset, char* to, std::size_t count) {
  std::size_t done = 0;
  while (done < count && offset + done < size_) {
    const std::uint64_t at = offset + done;
    LoadSegment(at / kSegment);
    const auto inside = static_cast<std::size_t>(at % kSegment);
    if (inside >= bytes_.size()) break;
    const std::size_t got =
        static_cast<std::size_t>(std::min<std::uint64_t>({count - done, bytes_.size() - inside, size_ - at}));
    std::memcpy(to + done, bytes_.data() + inside, got);
    done += got;
  }
  return done;
}

}  // namespace quillmate::office
