#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "office/office_writer.h"

/// Writes macro projects as the host's editor stores them.
namespace quillmate::office {

/// The container of a text, with copies of what is before in the same chunk, as far as that makes it shorter.
std::string PackVba(std::string_view text);
/// A container of chunks that are not packed.
std::string StoreVba(std::string_view text);

/// A value of CMG, DPB or GC as hexadecimal digits; `seed` is any byte.
std::string EncipherVbaData(std::string_view data, unsigned char seed);

/// Names and texts are bytes in the project's code page.
struct WrittenModule {
  /// The key of its line in PROJECT: "Module", "Class", "BaseClass" or "Document"; empty when it has none.
  std::string key = "Module";
  std::string name;
  /// With the Attribute lines.
  std::string text;
  /// Empty when dir has no such record.
  std::u16string unicodeName = {};
  /// Stands in dir for the true place of the text.
  std::optional<std::uint32_t> claimedOffset = {};
};

struct WrittenProject {
  std::string name = "VBAProject";
  int codePage = 1252;
  std::vector<WrittenModule> modules;
  bool locked = false;
  /// As typed: "A = 1 : B = 2".
  std::string constants = {};
  struct Reference {
    std::string name, libid;
  };
  std::vector<Reference> references = {};
  /// What comes before the text in a module's stream.
  std::string compiled = std::string("\1\x16\1\0\xF0\0\1\0", 8) + std::string(40, 'c');

  std::string Dir() const;
  std::string ProjectStream() const;
  /// Adds the streams to a file, below a storage ("" for the root, otherwise with "/").
  void AddTo(CompoundWriter& file, const std::string& storage) const;
  /// A file of its own, as it is in a zip.
  std::string Bin() const;
};

/// A module text with the attributes that the editor stores in front of it.
std::string StandardModule(std::string_view name, std::string_view code);
std::string DocumentModule(std::string_view name, std::string_view code);

/// A project of `count` modules with about `moduleSize` bytes of code each.
WrittenProject LargeProject(int count, std::size_t moduleSize);

}  // namespace quillmate::office
