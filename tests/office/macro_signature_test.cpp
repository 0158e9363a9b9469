#include <string>

#include <gtest/gtest.h>

#include <quillmate/office/macro_signature.h>
#include <quillmate/office/office_file.h>

#include "office/document_writer.h"
#include "office/signature_writer.h"
#include "office/vba_writer.h"

namespace quillmate::office {
namespace {

/// Made by another program: of an own certificate, over five bytes.
constexpr std::string_view kForeign =
    "308202e706092a864886f70d010702a08202d8308202d4020101310d300b0609608648016503040201301506092a864886f70d010701"
    "a008040668616c6c6f0aa08201de308201da30820181a0030201020214474502b6e5be8039078fb5e696f5dfc6121066dc300a06082a"
    "8648ce3d0403023043310b3009060355040613024445311d301b060355040a0c144d757374657220262053c3b6686e6520476d624831"
    "15301306035504030c0c42c3bc726f204d616b726f73301e170d3236313132323039343435395a170d3336313131393039343435395a"
    "3043310b3009060355040613024445311d301b060355040a0c144d757374657220262053c3b6686e6520476d62483115301306035504"
    "030c0c42c3bc726f204d616b726f733059301306072a8648ce3d020106082a8648ce3d030107034200046649f39d453a3b088793452c"
    "04754c4957f679d0723fa0b7037e6ad04d59e06a47ab0457aff423806870830b11ffde013cc51dfee3164dc82eb101d704ddbfc8a353"
    "3051301d0603551d0e041604145f34dabc081c0fc49c529b46c1e4c602ff69a716301f0603551d230418301680145f34dabc081c0fc4"
    "9c529b46c1e4c602ff69a716300f0603551d130101ff040530030101ff300a06082a8648ce3d0403020347003044022067ffe6325eb1"
    "376e855933e08faadde02b1ce912d0b4ee91b1b37436820d6bf7022040bb6f58727e30b975eab7df1fd4c73a4e8fa806e2eb7a6e2219"
    "1baf8683aada3181c63081c3020101305b3043310b3009060355040613024445311d301b060355040a0c144d757374657220262053c3"
    "b6686e6520476d62483115301306035504030c0c42c3bc726f204d616b726f730214474502b6e5be8039078fb5e696f5dfc6121066dc"
    "300b0609608648016503040201300a06082a8648ce3d04030204483046022100ab1a90b5e91f017d75d83b14c74d1a5715c7ac34c852"
    "f8447c16c5fbb5dc3be2022100ccffd7e621649a2d07476568fedf6406c6e9ce400d3180b91e8455d4ea9cdd0c";

std::string FromHex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

std::string Told(const MacroSignature& signature) {
  return signature.signer + "|" + signature.issuer + "|" + signature.from + "|" + signature.until;
}

const WrittenName kAda{"Ada Beispiel", "Muster GmbH"};
const WrittenName kRoot{"Wurzel", "Amt"};

TEST(MacroSignature, NamesTheSigner) {
  const WrittenCertificate ada{kAda, kRoot, "\x07", "240531120000Z", "20510101000000Z", "12345678901234567890"};
  const WrittenCertificate root{kRoot, kRoot, "\x06", "490101000000Z", "500101000000Z", "09876543210987654321"};
  const std::string told = "Ada Beispiel, Muster GmbH|Wurzel, Amt|2024-05-31|2051-01-01";
  const struct {
    const char* what;
    std::string bytes, told;
  } cases[] = {
      {"made elsewhere", FromHex(kForeign),
       "B\xC3\xBCro Makros, Muster & S\xC3\xB6hne GmbH|B\xC3\xBCro Makros, Muster & S\xC3\xB6hne "
       "GmbH|2026-11-22|2036-11-19"},
      {"by issuer and number", WrittenSignature{{root, ada}, 1}.Blob(), told},
      {"the other one", WrittenSignature{{root, ada}, 0}.Blob(), "Wurzel, Amt|Wurzel, Amt|2049-01-01|1950-01-01"},
      {"by key", WrittenSignature{{root, ada}, 1, true}.Blob(), told},
      {"wide letters", WrittenSignature{{{{"M\xFCller", "", true}, {"", "Amt"}}}}.Blob(),
       "M\xC3\xBCller|Amt|2024-01-01|2027-12-31"},
      {"name and organisation are one", WrittenSignature{{{{"Amt", "Amt"}, kRoot}}}.Blob(),
       "Amt|Wurzel, Amt|2024-01-01|2027-12-31"},
      {"a stamp of time before it", WrittenSignature{{{{}, kRoot}}}.Message() + WrittenSignature{{ada}}.Message(),
       told},
      {"no message", std::string(500, 'x'), "|||"},
      {"nothing", "", "|||"},
  };
  for (const auto& each : cases) EXPECT_EQ(Told(ReadMacroSignature(each.bytes)), each.told) << each.what;
}

TEST(MacroSignature, StandsEveryCutAndChange) {
  const std::string bytes = WrittenSignature{{{kRoot, kRoot}, {kAda, kRoot, "\x02"}}, 1}.Blob();
  const std::string told = Told(ReadMacroSignature(bytes));
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ(Told(ReadMacroSignature(bytes.substr(0, size))), "|||") << size;
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    std::string changed = bytes;
    changed[at] = static_cast<char>(0xFF);
    EXPECT_LE(Told(ReadMacroSignature(changed)).size(), told.size() + bytes.size());
  }
}

TEST(MacroSignature, IsReadFromBothKindsOfDocuments) {
  WrittenProject project;
  project.modules = {{"Module", "Modul1", StandardModule("Modul1", "Sub A()\r\nEnd Sub\r\n")}};
  const WrittenSignature signature{{{kAda, kRoot}}};
  for (const bool isSigned : {false, true}) {
    PackageWriter package;
    package.Add("xl/vbaProject.bin", project.Bin()).Relate("", "officeDocument", "/xl/workbook.xml");
    package.Add("xl/workbook.xml", "<workbook/>");
    CompoundWriter compound;
    compound.Add("Workbook", "");
    project.AddTo(compound, "_VBA_PROJECT_CUR/");
    if (isSigned) {
      package.Relate("xl/vbaProject.bin", "vbaProjectSignature", "vbaProjectSignature.bin")
          .Add("xl/vbaProjectSignature.bin", signature.Blob())
          .Relate("xl/vbaProject.bin", "vbaProjectSignatureV3", "fehlt.bin");
      compound.Add("\5DocumentSummaryInformation", signature.Summary());
    }
    for (const std::string& bytes : {package.File(), compound.File()}) {
      MemorySource source(bytes);
      const OfficeFile file = ReadOfficeFile(source, {.facts = true});
      EXPECT_EQ(file.state, OfficeFile::State::kRead);
      EXPECT_EQ(file.facts.isSigned, std::optional(isSigned));
      EXPECT_EQ(file.facts.signature.signer, isSigned ? "Ada Beispiel, Muster GmbH" : "");
    }
  }
}

}  // namespace
}  // namespace quillmate::office
