#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/module.h>

/// Names to ids. Names of ASCII letters, digits and "_" (nearly all) are hashed and compared eight bytes at a time
/// straight from the source; the text must be readable for eight bytes from any of its characters.
namespace quillmate::language {

inline constexpr std::size_t kReadAhead = 16;  ///< readable bytes after every text that is looked at in words

namespace name_word {

inline constexpr std::uint64_t kLowerCase = 0x2020202020202020U;
inline constexpr std::uint64_t kHighBits = 0x8080808080808080U;

inline std::uint64_t Load(const char* at) noexcept {
  std::uint64_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// The first `count` (1 to 7) bytes of a word read from memory.
inline std::uint64_t First(std::uint64_t word, std::size_t count) noexcept {
  static constexpr char kMask[16] = {'\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff'};
  return word & Load(kMask + 8 - count);
}

inline std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) noexcept {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 32);
}

}  // namespace name_word

/// The hash of a text that is readable for eight bytes from each of its characters; `kCase` says which bits of a byte
/// do not count: those that part capital and small letters of a plain name.
template <std::uint64_t kCase>
std::uint64_t HashReadable(const char* name, std::size_t length) noexcept {
  std::uint64_t hash = length;
  for (; length >= 8; name += 8, length -= 8) hash = name_word::Mix(hash, name_word::Load(name) | kCase);
  if (length > 0) hash = name_word::Mix(hash, name_word::First(name_word::Load(name) | kCase, length));
  return hash;
}

/// Of a plain name, regardless of case; the same for all its spellings.
inline std::uint64_t HashPlain(const char* name, std::size_t length) noexcept {
  return HashReadable<name_word::kLowerCase>(name, length);
}
/// Of any other name in its folded form.
inline std::uint64_t HashOther(const char* folded, std::size_t length) noexcept {
  return HashReadable<0>(folded, length);
}

/// The names of a module, each kept once.
class NamePool {
 public:
  NamePool();

  /// Forgets all names but the words; those that come next are written to `module`.
  void Start(Module& module);
  /// Gives the module its folded spellings.
  void Finish() { module_->foldedNames.assign(folded_.data() + wordsSize_, foldedSize_ - wordsSize_); }

  /// Of ASCII letters, digits and "_" only.
  NameId Plain(const char* name, std::size_t length) {
    const std::uint64_t hash = HashPlain(name, length);
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t slot = hash & mask_;; slot = (slot + 1) & mask_) {
      const Slot& entry = slots_[slot];
      if (entry.id == kNone) return Add(slot, hash, {name, length}, true);
      if (entry.tag == tag && SamePlain(spellings_[entry.id], name, length)) return entry.id;
    }
  }
  /// Any other: UTF-8, not folded yet; readable like the source.
  NameId Other(std::string_view name);
  /// One that is readable up to its end only.
  NameId Copied(std::string_view name) { return Fold(name); }

  std::string_view Text(NameId name) const noexcept {
    return {folded_.data() + spellings_[name].offset, spellings_[name].length & ~kOther};
  }

 private:
  static constexpr std::uint32_t kOther = 0x80000000;

  struct Slot {
    std::uint32_t tag;  ///< upper half of the hash
    NameId id;
  };
  struct Spelling {
    std::uint32_t offset;  ///< of the folded name
    std::uint32_t length;  ///< kOther added when the name is not plain
  };

  bool SamePlain(const Spelling& known, const char* name, std::size_t length) const noexcept {
    if (known.length != length) return false;
    const char* other = folded_.data() + known.offset;
    for (; length >= 8; name += 8, other += 8, length -= 8) {
      if (((name_word::Load(name) ^ name_word::Load(other)) & ~name_word::kLowerCase) != 0) return false;
    }
    if (length == 0) return true;
    return name_word::First((name_word::Load(name) ^ name_word::Load(other)) & ~name_word::kLowerCase, length) == 0;
  }

  /// A spelling that was seen before, so that it need not be folded again.
  struct Known {
    std::uint64_t hash = 0;
    NameId id = kNone;
    std::string spelling;
  };

  NameId Fold(std::string_view name);
  NameId Add(std::size_t slot, std::uint64_t hash, std::string_view name, bool plain);
  void Grow();

  std::vector<Slot> slots_;
  std::vector<Slot> words_;          ///< the slots when only the words are in them
  std::vector<Spelling> spellings_;  ///< of every id
  std::vector<char> folded_;         ///< with kReadAhead bytes after it; the words come first
  std::size_t foldedSize_ = 0;
  std::size_t wordsSize_ = 0;
  std::size_t mask_ = 0;
  std::string scratch_;
  std::vector<Known> known_;  ///< by the lower bits of the hash of the spelling
  Module* module_ = nullptr;
};

/// The folded form of what is inside brackets or of a name without its suffix.
void AppendFolded(std::string& folded, std::string_view name);

}  // namespace quillmate::language
