#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include <quillmate/office/macro_signature.h>
#include <quillmate/text/windows1252.h>

#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

// Tags of the encoding [X.690]; those with 0xA0 belong to the place where they are.
constexpr unsigned char kInteger = 0x02, kObject = 0x06, kSequence = 0x30, kSet = 0x31, kZero = 0xA0;
constexpr unsigned char kUtf8 = 0x0C, kBmp = 0x1E, kUniversal = 0x1C, kUtcTime = 0x17, kGeneralTime = 0x18;
constexpr unsigned char kKeyId = 0x80;

constexpr std::string_view kSignedData = "\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x07\x02";
constexpr std::string_view kCommonName = "\x55\x04\x03";
constexpr std::string_view kOrganization = "\x55\x04\x0A";
constexpr std::string_view kSubjectKeyId = "\x06\x03\x55\x1D\x0E";

struct Element {
  unsigned char tag = 0;
  std::string_view content;
  /// With tag and length.
  std::string_view whole;
};

/// The elements of a content, one after the other. What is cut short or has no definite length ends them.
class DerReader {
 public:
  explicit DerReader(std::string_view bytes) noexcept : rest_(bytes) {}

  std::optional<Element> Next() noexcept {
    if (rest_.size() < 2) return std::nullopt;
    const auto byte = [this](std::size_t at) { return static_cast<unsigned char>(rest_[at]); };
    std::size_t head = 2, length = byte(1);
    if (length >= 0x80) {
      const std::size_t digits = length & 0x7FU;
      if (digits == 0 || digits > 4 || rest_.size() < 2 + digits) return std::nullopt;
      length = 0;
      for (std::size_t i = 0; i < digits; ++i) length = length << 8U | byte(2 + i);
      head += digits;
    }
    if (length > rest_.size() - head) return std::nullopt;
    const Element element{byte(0), rest_.substr(head, length), rest_.substr(0, head + length)};
    rest_.remove_prefix(head + length);
    return element;
  }
  /// The next one if it has that tag; it is left where it is otherwise.
  std::optional<Element> Take(unsigned char tag) noexcept {
    if (rest_.empty() || static_cast<unsigned char>(rest_[0]) != tag) return std::nullopt;
    return Next();
  }

 private:
  std::string_view rest_;
};

std::string TextOf(const Element& value) {
  constexpr std::size_t kLongest = 1000;
  const std::string_view bytes = value.content.substr(0, kLongest);
  std::string text;
  if (value.tag == kBmp || value.tag == kUniversal) {
    // Big-endian, of two or four bytes; beyond the first plane no name goes.
    const std::size_t width = value.tag == kBmp ? 2 : 4;
    std::string utf16;
    for (std::size_t at = 0; at + width <= bytes.size(); at += width) {
      utf16 += bytes[at + width - 1];
      utf16 += bytes[at + width - 2];
    }
    text = Utf8FromUtf16Bytes(utf16);
  } else {
    text = value.tag == kUtf8 && text::IsValidUtf8(bytes) ? std::string(bytes) : Utf8FromLatin1(bytes);
  }
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return text;
}

/// "Ada Beispiel, Muster GmbH": the common name and the organisation, once where they are the same.
std::string NameOf(std::string_view name) {
  std::string common, organization;
  DerReader sets(name);
  while (const auto set = sets.Next()) {
    DerReader pairs(set->content);
    while (const auto pair = pairs.Take(kSequence)) {
      DerReader fields(pair->content);
      const auto kind = fields.Take(kObject);
      const auto value = fields.Next();
      if (!kind || !value) continue;
      if (kind->content == kCommonName) common = TextOf(*value);
      if (kind->content == kOrganization) organization = TextOf(*value);
    }
  }
  if (common.empty() || common == organization) return organization;
  return organization.empty() ? common : common + ", " + organization;
}

/// "2024-05-31"; empty for what is no time.
std::string DayOf(const std::optional<Element>& time) {
  if (!time || (time->tag != kUtcTime && time->tag != kGeneralTime)) return {};
  std::string digits(time->content);
  // Years of two digits end with 2049 [RFC 5280].
  if (time->tag == kUtcTime && !digits.empty()) digits.insert(0, digits[0] < '5' ? "20" : "19");
  constexpr std::size_t kDay = 8;
  if (digits.size() < kDay || digits.find_first_not_of("0123456789") < kDay) return {};
  return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2);
}

struct Certificate {
  std::string_view whole, serial, issuer, subject;
  std::optional<Element> from, until;
};

std::optional<Certificate> ReadCertificate(const Element& element) {
  DerReader outer(element.content);
  const auto body = outer.Take(kSequence);
  if (!body) return std::nullopt;
  DerReader fields(body->content);
  fields.Take(kZero);
  const auto serial = fields.Take(kInteger);
  const auto algorithm = fields.Take(kSequence);
  const auto issuer = fields.Take(kSequence);
  const auto validity = fields.Take(kSequence);
  const auto subject = fields.Take(kSequence);
  if (!serial || !algorithm || !issuer || !validity || !subject) return std::nullopt;
  DerReader times(validity->content);
  const auto from = times.Next();
  const auto until = times.Next();
  return Certificate{body->content, serial->content, issuer->content, subject->content, from, until};
}

/// How the signer names its certificate: by issuer and number, or by the key's sum.
struct SignerId {
  std::string_view issuer, serial, key;

  bool Names(const Certificate& certificate) const {
    if (key.empty()) return certificate.issuer == issuer && certificate.serial == serial;
    const std::size_t at = certificate.whole.find(kSubjectKeyId);
    constexpr std::size_t kFrame = 16;
    return at != std::string_view::npos &&
           certificate.whole.substr(at, kSubjectKeyId.size() + kFrame + key.size()).find(key) != std::string_view::npos;
  }
};

std::optional<SignerId> ReadSignerId(std::string_view signers) {
  const auto signer = DerReader(signers).Take(kSequence);
  if (!signer) return std::nullopt;
  DerReader fields(signer->content);
  fields.Take(kInteger);
  if (const auto key = fields.Take(kKeyId)) return SignerId{{}, {}, key->content};
  const auto named = fields.Take(kSequence);
  if (!named) return std::nullopt;
  DerReader parts(named->content);
  const auto issuer = parts.Take(kSequence);
  const auto serial = parts.Take(kInteger);
  if (!issuer || !serial) return std::nullopt;
  return SignerId{issuer->content, serial->content, {}};
}

/// What follows the object identifier.
MacroSignature ReadSignedData(std::string_view bytes) {
  const auto wrapped = DerReader(bytes).Take(kZero);
  const auto message = wrapped ? DerReader(wrapped->content).Take(kSequence) : std::nullopt;
  if (!message) return {};
  DerReader fields(message->content);
  fields.Take(kInteger);
  fields.Take(kSet);
  fields.Take(kSequence);
  const auto certificates = fields.Take(kZero);
  constexpr unsigned char kRevoked = 0xA1;
  fields.Take(kRevoked);
  const auto signers = fields.Take(kSet);
  const auto id = signers ? ReadSignerId(signers->content) : std::nullopt;
  if (!certificates || !id) return {};
  DerReader list(certificates->content);
  while (const auto element = list.Next()) {
    const auto certificate = element->tag == kSequence ? ReadCertificate(*element) : std::nullopt;
    if (!certificate || !id->Names(*certificate)) continue;
    return {NameOf(certificate->subject), NameOf(certificate->issuer), DayOf(certificate->from),
            DayOf(certificate->until)};
  }
  return {};
}

}  // namespace

MacroSignature ReadMacroSignature(std::string_view bytes) {
  // Stamps of time inside a signature are messages of the same kind, and come after it.
  constexpr int kMostMessages = 8;
  std::size_t at = bytes.find(kSignedData);
  for (int i = 0; i < kMostMessages && at != std::string_view::npos; ++i) {
    MacroSignature signature = ReadSignedData(bytes.substr(at + kSignedData.size()));
    if (!signature.signer.empty()) return signature;
    at = bytes.find(kSignedData, at + 1);
  }
  return {};
}

}  // namespace quillmate::office
