#include "office/signature_writer.h"

#include "office/office_writer.h"

namespace quillmate::office {
namespace {

std::string Der(unsigned char tag, std::string_view content) {
  std::string element(1, static_cast<char>(tag));
  if (content.size() < 0x80) {
    element += static_cast<char>(content.size());
  } else {
    element += "\x82";
    element += static_cast<char>(content.size() >> 8U);
    element += static_cast<char>(content.size() & 0xFFU);
  }
  return element.append(content);
}

constexpr unsigned char kSequence = 0x30, kSet = 0x31, kObject = 0x06, kInteger = 0x02;

std::string Name(const WrittenName& name) {
  const auto field = [&](const char* last, const std::string& text) {
    if (text.empty()) return std::string();
    std::string value = text;
    if (name.wide) {
      value.clear();
      for (const char c : text) value.append(1, '\0').append(1, c);
    }
    return Der(kSet,
               Der(kSequence, Der(kObject, std::string("\x55\x04") + last) + Der(name.wide ? 0x1E : 0x0C, value)));
  };
  return Der(kSequence, field("\x0A", name.organization) + field("\x03", name.common));
}

std::string Time(const std::string& text) { return Der(text.size() > 13 ? 0x18 : 0x17, text); }

std::string Certificate(const WrittenCertificate& certificate) {
  std::string body = Der(0xA0, Der(kInteger, "\x02")) + Der(kInteger, certificate.serial) +
                     Der(kSequence, Der(kObject, "\x2A\x03")) + Name(certificate.issuer) +
                     Der(kSequence, Time(certificate.from) + Time(certificate.until)) + Name(certificate.subject);
  if (!certificate.keyId.empty()) {
    body += Der(0xA3,
                Der(kSequence, Der(kSequence, Der(kObject, "\x55\x1D\x0E") + Der(0x04, Der(0x04, certificate.keyId)))));
  }
  return Der(kSequence, Der(kSequence, body) + Der(kSequence, Der(kObject, "\x2A\x03")) + Der(0x03, "sum"));
}

}  // namespace

std::string WrittenSignature::Message() const {
  std::string list;
  for (const WrittenCertificate& each : certificates) list += Certificate(each);
  const WrittenCertificate& own = certificates[signer];
  const std::string id = byKey ? Der(0x80, own.keyId) : Der(kSequence, Name(own.issuer) + Der(kInteger, own.serial));
  const std::string data = Der(kInteger, "\x01") + Der(kSet, {}) +
                           Der(kSequence, Der(kObject, "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x01")) + Der(0xA0, list) +
                           Der(kSet, Der(kSequence, Der(kInteger, "\x01") + id));
  return Der(kSequence, Der(kObject, "\x2A\x86\x48\x86\xF7\x0D\x01\x07\x02") + Der(0xA0, Der(kSequence, data)));
}

std::string WrittenSignature::Blob() const {
  constexpr unsigned kHead = 8, kInfo = 36;
  const std::string message = Message();
  std::string info = Bytes<4>(message.size()) + Bytes<4>(kHead + kInfo);
  info.resize(kInfo, '\0');
  return Bytes<4>(kInfo + message.size()) + Bytes<4>(kHead) + info + message;
}

std::string WrittenSignature::Summary() const {
  constexpr unsigned kSet1 = 48, kProperty = 16;
  const std::string blob = Blob();
  const std::string set = Bytes<4>(kProperty + 8 + blob.size()) + Bytes<4>(1) + Bytes<4>(24) + Bytes<4>(kProperty) +
                          Bytes<4>(0x41) + Bytes<4>(blob.size()) + blob;
  return Bytes<2>(0xFFFE) + Bytes<2>(0) + Bytes<4>(0) + std::string(16, '\0') + Bytes<4>(1) + std::string(16, 'f') +
         Bytes<4>(kSet1) + set;
}

}  // namespace quillmate::office
