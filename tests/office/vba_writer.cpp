#include "office/vba_writer.h"

#include <algorithm>
#include <array>
#include <bit>

#include <quillmate/text/operations.h>

namespace quillmate::office {
namespace {

constexpr std::size_t kChunk = 4096;

std::string ChunkOf(const std::string& data, bool packed) {
  return Bytes<2>((data.size() - 1) | 3U << 12U | (packed ? 1U << 15U : 0U)) + data;
}

/// The longest run before `at` that starts like the text there, found through the last place of its first 3 bytes.
struct Match {
  std::size_t distance = 0;
  std::size_t length = 0;
};

class Packer {
 public:
  explicit Packer(std::string_view chunk) : chunk_(chunk) { last_.fill(-1); }

  std::string Pack() {
    std::string out;
    for (std::size_t at = 0; at < chunk_.size();) {
      std::string tokens;
      unsigned flags = 0;
      for (unsigned bit = 0; bit < 8 && at < chunk_.size(); ++bit) {
        const auto distanceBits = std::max(4U, static_cast<unsigned>(std::bit_width(std::max<std::size_t>(at, 1) - 1)));
        const Match match = Find(at, (1U << (16 - distanceBits)) + 2);
        if (match.length >= 3) {
          flags |= 1U << bit;
          tokens += Bytes<2>((match.distance - 1) << (16 - distanceBits) | (match.length - 3));
        } else {
          tokens += chunk_[at];
        }
        for (const std::size_t end = at + std::max<std::size_t>(match.length, 1); at < end; ++at) Remember(at);
      }
      out += static_cast<char>(flags) + tokens;
    }
    return out;
  }

 private:
  std::size_t Hash(std::size_t at) const {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(chunk_[at + i]); };
    return (byte(0) * 961U + byte(1) * 31U + byte(2)) % last_.size();
  }
  void Remember(std::size_t at) {
    if (at + 3 <= chunk_.size()) last_[Hash(at)] = static_cast<int>(at);
  }
  Match Find(std::size_t at, std::size_t longest) const {
    Match match;
    if (at + 3 > chunk_.size() || last_[Hash(at)] < 0) return match;
    const auto from = static_cast<std::size_t>(last_[Hash(at)]);
    while (match.length < longest && at + match.length < chunk_.size() &&
           chunk_[from + match.length] == chunk_[at + match.length]) {
      ++match.length;
    }
    match.distance = at - from;
    return match.length >= 3 ? match : Match{};
  }

  std::string_view chunk_;
  std::array<int, 4096> last_;
};

std::string DirRecord(unsigned id, const std::string& data) { return Bytes<2>(id) + Bytes<4>(data.size()) + data; }

/// A library, a project, or, for a name that begins with "ms", a control with what the editor has made of it.
std::string ReferenceRecords(const WrittenProject::Reference& reference) {
  const auto sized = [](const std::string& libid) { return Bytes<4>(libid.size()) + libid; };
  const std::string name = DirRecord(0x16, reference.name);
  if (reference.name.starts_with("ms")) {
    return name + DirRecord(0x33, reference.libid) + DirRecord(0x2F, sized("*\\G{0}#1.0#0##twiddled") + Bytes<6>(0)) +
           name + DirRecord(0x30, sized("*\\G{0}#1.0#0#x.exd#extended") + std::string(26, '\0'));
  }
  const bool project = !reference.libid.starts_with("*\\G");
  return name + DirRecord(project ? 0x0E : 0x0D, sized(reference.libid) + (project ? sized("*\\C") : "") + Bytes<6>(0));
}

std::string ModuleRecords(const WrittenModule& module, std::size_t offset) {
  std::string records = DirRecord(0x19, module.name);
  if (!module.unicodeName.empty()) records += DirRecord(0x47, Utf16Bytes(module.unicodeName));
  records += DirRecord(0x1A, module.name);
  if (!module.unicodeName.empty()) records += DirRecord(0x32, Utf16Bytes(module.unicodeName));
  return records + DirRecord(0x1C, "") + DirRecord(0x48, "") +
         DirRecord(0x31, Bytes<4>(module.claimedOffset.value_or(static_cast<std::uint32_t>(offset)))) +
         DirRecord(0x1E, Bytes<4>(0)) + DirRecord(0x2C, Bytes<2>(0xFFFF)) +
         DirRecord(module.key == "Module" || module.key.empty() ? 0x21 : 0x22, "") + DirRecord(0x2B, "");
}

}  // namespace

std::string PackVba(std::string_view text) {
  std::string out("\1");
  for (; !text.empty(); text.remove_prefix(std::min(kChunk, text.size()))) {
    const std::string_view chunk = text.substr(0, kChunk);
    const std::string packed = Packer(chunk).Pack();
    out += packed.size() < kChunk ? ChunkOf(packed, true) : StoreVba(chunk).substr(1);
  }
  return out;
}

std::string StoreVba(std::string_view text) {
  std::string out("\1");
  for (; !text.empty(); text.remove_prefix(std::min(kChunk, text.size()))) {
    std::string chunk(text.substr(0, kChunk));
    chunk.resize(kChunk);
    out += ChunkOf(chunk, false);
  }
  return out;
}

std::string EncipherVbaData(std::string_view data, unsigned char seed) {
  const unsigned char projectKey = 0xDF;
  const std::string plain = std::string((seed & 6U) / 2, 'i') + Bytes<4>(data.size()) + std::string(data);
  std::string bytes{static_cast<char>(seed), static_cast<char>(seed ^ 2), static_cast<char>(seed ^ projectKey)};
  unsigned char before = projectKey;
  for (const char c : plain) {
    const auto mixed = static_cast<unsigned char>(static_cast<unsigned char>(bytes[bytes.size() - 2]) + before);
    before = static_cast<unsigned char>(c);
    bytes += static_cast<char>(before ^ mixed);
  }
  std::string digits;
  for (const char c : bytes) {
    digits += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4U];
    digits += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15U];
  }
  return digits;
}

std::string WrittenProject::Dir() const {
  std::string dir = DirRecord(0x01, Bytes<4>(1)) + DirRecord(0x02, Bytes<4>(0x407)) +
                    DirRecord(0x03, Bytes<2>(static_cast<unsigned>(codePage))) + DirRecord(0x04, name) +
                    DirRecord(0x05, "") + DirRecord(0x40, "") + DirRecord(0x0C, constants) + DirRecord(0x3C, "");
  // The version's size leaves out two of its bytes.
  dir += Bytes<2>(0x09) + Bytes<4>(4) + Bytes<6>(0x0001000A) + DirRecord(0x16, "stdole") +
         DirRecord(0x3E, Utf16Bytes(u"stdole")) + DirRecord(0x0D, std::string(70, 'r'));
  for (const Reference& reference : references) dir += ReferenceRecords(reference);
  dir += DirRecord(0x0F, Bytes<2>(modules.size())) + DirRecord(0x13, Bytes<2>(0xFFFF));
  for (const WrittenModule& module : modules) dir += ModuleRecords(module, compiled.size());
  return dir + DirRecord(0x10, "");
}

std::string WrittenProject::ProjectStream() const {
  std::string text = "ID=\"{00000000-0000-0000-0000-000000000000}\"\r\n";
  for (const WrittenModule& module : modules) {
    if (module.key == "BaseClass") text += "Package={AC9F2F90-E877-11CE-9F68-00AA00574A4F}\r\n";
    const char* version = module.key == "Document" ? "/&H00000000" : "";
    if (!module.key.empty()) text += module.key + "=" + module.name + version + "\r\n";
  }
  text += "Name=\"" + name + "\"\r\nHelpContextID=\"0\"\r\nVersionCompatible32=\"393222000\"\r\n";
  text += "CMG=\"" + EncipherVbaData(Bytes<4>(locked ? 1 : 0), 0x07) + "\"\r\n";
  text += "DPB=\"" + EncipherVbaData(locked ? std::string(29, 'h') : std::string(1, '\0'), 0x0E) + "\"\r\n";
  text += "GC=\"" + EncipherVbaData(locked ? std::string(1, '\0') : "\xFF", 0x15) + "\"\r\n";
  return text +
         "\r\n[Host Extender Info]\r\n&H00000001={3832D640-CF90-11CF-8E43-00A0C911005A};VBE;&H00000000\r\n"
         "\r\n[Workspace]\r\nModule=0, 0, 0, 0, C\r\n";
}

void WrittenProject::AddTo(CompoundWriter& file, const std::string& storage) const {
  file.Add(storage + "PROJECT", ProjectStream());
  file.Add(storage + "VBA/_VBA_PROJECT", std::string("\xCC\x61\xFF\xFF\0\0\0", 7));
  file.Add(storage + "VBA/dir", PackVba(Dir()));
  for (const WrittenModule& module : modules) {
    file.Add(storage + "VBA/" + module.name, compiled + PackVba(module.text));
    if (module.key == "BaseClass")
      file.Add(storage + module.name + "/\3VBFrame", "VERSION 5.00\r\nBegin {0} x\r\nEnd\r\n");
  }
}

std::string WrittenProject::Bin() const {
  CompoundWriter file;
  AddTo(file, "");
  return file.File();
}

std::string StandardModule(std::string_view name, std::string_view code) {
  return "Attribute VB_Name = \"" + std::string(name) + "\"\r\n" + std::string(code);
}

std::string DocumentModule(std::string_view name, std::string_view code) {
  return StandardModule(name,
                        "Attribute VB_Base = \"0{00020819-0000-0000-C000-000000000046}\"\r\n"
                        "Attribute VB_GlobalNameSpace = False\r\nAttribute VB_Creatable = False\r\n"
                        "Attribute VB_PredeclaredId = True\r\nAttribute VB_Exposed = True\r\n") +
         std::string(code);
}

WrittenProject LargeProject(int count, std::size_t moduleSize) {
  constexpr std::string_view kRoutine =
      "\r\nPublic Function Summe@(ByVal Zeile@ As Long) As Double\r\n    Dim i As Long\r\n"
      "    ' Betr\344ge der Spalte @ addieren\r\n    For i = 1 To Zeile@\r\n"
      "        If Cells(i, @).Value > 0 Then Summe@ = Summe@ + Cells(i, @).Value\r\n    Next i\r\nEnd Function\r\n";
  WrittenProject project;
  for (int number = 1; number <= count; ++number) {
    const std::string name = "Modul" + std::to_string(number);
    std::string code = "Option Explicit\r\n";
    for (int routine = number * 31; code.size() < moduleSize; routine += 17) {
      code += text::ReplaceAll(kRoutine, "@", std::to_string(routine));
    }
    project.modules.push_back({.name = name, .text = StandardModule(name, code)});
  }
  return project;
}

}  // namespace quillmate::office
