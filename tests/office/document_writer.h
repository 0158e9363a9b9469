#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "office/office_writer.h"

/// Writes documents around macro projects: parts with relations, records of workbooks, designer data of forms, and
/// encrypts them with the password that every host tries.
namespace quillmate::office {

/// A document in the open formats. A part whose name begins with a path belongs to it; "" is the document.
struct PackageWriter {
  std::vector<ZipFile> parts;

  PackageWriter& Add(std::string_view part, std::string bytes);
  /// `type` is what is after the last "/"; a target with ":" in it leads out of the document.
  PackageWriter& Relate(std::string_view from, std::string_view type, std::string_view target);
  std::string File() const;

 private:
  std::map<std::string, std::string> relations_;
};

/// A record of a workbook: id and size of 16 bits.
std::string XlsRecord(unsigned id, std::string_view data);
/// A text with a flag in front, of one byte for each character.
std::string XlsText(std::string_view text);
/// A record of a workbook in parts: id and size of 7 bits for each byte.
std::string XlsbRecord(unsigned id, std::string_view data);
/// A count of 32 bits and UTF-16.
std::string XlsbText(std::string_view text);

/// A block of properties of a form's designer.
class DesignerBlock {
 public:
  explicit DesignerBlock(unsigned major, std::size_t maskBytes = 4) : major_(major), maskBytes_(maskBytes) {}

  /// Properties come in the order of their bits.
  DesignerBlock& Number(unsigned bit, std::size_t bytes, std::uint64_t value);
  /// Its length is among the numbers.
  DesignerBlock& Text(unsigned bit, std::string_view latin1);
  DesignerBlock& WideText(unsigned bit, std::u16string_view text);
  DesignerBlock& Point(unsigned bit, std::int32_t x, std::int32_t y);
  std::string Bytes() const;

 private:
  unsigned major_;
  std::size_t maskBytes_;
  std::uint64_t mask_ = 0;
  std::vector<std::pair<std::size_t, std::uint64_t>> numbers_;
  std::vector<std::string> extras_;
};

/// A control's site in a form, and what it puts into the stream "o".
struct DesignerSite {
  std::string site;
  std::string object = {};
};
/// The stream "f" of a form or frame; `classes` is its class table.
std::string DesignerForm(const std::string& caption, const std::vector<DesignerSite>& sites,
                         const std::vector<std::string>& classes = {});
std::string DesignerObjects(const std::vector<DesignerSite>& sites);

enum class WrittenCipher { kXor, kRc4, kRc4Api };
/// A workbook's stream, of records with a first one that FilePass is put after, encrypted.
std::string EncryptedWorkbook(std::string_view records, WrittenCipher cipher, std::string_view password);
/// The compound file of a zip that is encrypted; `agile` in the newer way.
std::string EncryptedPackageOf(std::string_view zip, bool agile, std::string_view password);

}  // namespace quillmate::office
