#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/text/utf8.h>

#include "case_folding_p.h"
#include "names_p.h"

namespace quillmate::language {
namespace {

constexpr std::size_t kFirstSlots = 1024;
constexpr std::size_t kKnown = 256;
static_assert(kWordCount * 2 < kFirstSlots);

bool IsPlainCharacter(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

char LowerAscii(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

constexpr std::string_view kSuffixes = "%&^!#@$";

}  // namespace

NamePool::NamePool()
    : slots_(kFirstSlots, Slot{0, kNone}), folded_(kReadAhead), mask_(kFirstSlots - 1), known_(kKnown) {
  Module words;
  module_ = &words;
  for (NameId word = 0; word < kWordCount; ++word) {
    const std::string_view folded = WordFolded(word);
    const std::uint64_t hash = HashPlain(folded.data(), folded.size());
    std::size_t slot = hash & mask_;
    while (slots_[slot].id != kNone) slot = (slot + 1) & mask_;
    Add(slot, hash, folded, true);
  }
  words_ = slots_;
  wordsSize_ = foldedSize_;
  module_ = nullptr;
}

void NamePool::Start(Module& module) {
  slots_.assign(words_.begin(), words_.end());
  mask_ = slots_.size() - 1;
  spellings_.resize(kWordCount);
  foldedSize_ = wordsSize_;
  for (Known& known : known_) known.id = kNone;
  module_ = &module;
}

NameId NamePool::Add(std::size_t slot, std::uint64_t hash, std::string_view name, bool plain) {
  const auto id = static_cast<NameId>(spellings_.size());
  const auto offset = static_cast<std::uint32_t>(foldedSize_);
  const auto length = static_cast<std::uint32_t>(name.size());
  foldedSize_ += length;
  if (foldedSize_ + kReadAhead > folded_.size()) folded_.resize(2 * foldedSize_ + kReadAhead);
  std::transform(name.begin(), name.end(), folded_.data() + offset, LowerAscii);
  slots_[slot] = {static_cast<std::uint32_t>(hash >> 32), id};
  spellings_.push_back({offset, plain ? length : length | kOther});
  module_->names.push_back({offset - static_cast<std::uint32_t>(wordsSize_), length, hash});
  if (spellings_.size() * 2 > slots_.size()) Grow();
  return id;
}

NameId NamePool::Other(std::string_view name) {
  const std::uint64_t hash = HashOther(name.data(), name.size());
  Known& known = known_[hash & (kKnown - 1)];
  if (known.id == kNone || known.hash != hash || known.spelling != name) known = {hash, Fold(name), std::string(name)};
  return known.id;
}

NameId NamePool::Fold(std::string_view name) {
  scratch_.clear();
  AppendFolded(scratch_, name);
  const std::size_t length = scratch_.size();
  // Folding can make it plain: the Kelvin sign is a "k".
  const bool plain = std::all_of(scratch_.begin(), scratch_.end(), IsPlainCharacter);
  scratch_.append(kReadAhead, '\0');
  if (plain) return Plain(scratch_.data(), length);
  const std::string_view folded(scratch_.data(), length);
  const std::uint64_t hash = HashOther(folded.data(), length);
  const auto tag = static_cast<std::uint32_t>(hash >> 32);
  std::size_t slot = hash & mask_;
  for (; slots_[slot].id != kNone; slot = (slot + 1) & mask_) {
    if (slots_[slot].tag == tag && Text(slots_[slot].id) == folded) return slots_[slot].id;
  }
  return Add(slot, hash, folded, false);
}

void NamePool::Grow() {
  std::vector<Slot> larger(slots_.size() * 2, Slot{0, kNone});
  mask_ = larger.size() - 1;
  for (const Slot& entry : slots_) {
    if (entry.id == kNone) continue;
    const std::uint64_t hash = entry.id < kWordCount ? HashPlain(Text(entry.id).data(), Text(entry.id).size())
                                                     : module_->names[entry.id - kWordCount].hash;
    std::size_t slot = hash & mask_;
    while (larger[slot].id != kNone) slot = (slot + 1) & mask_;
    larger[slot] = entry;
  }
  slots_.swap(larger);
}

void AppendFolded(std::string& folded, std::string_view name) {
  while (!name.empty()) {
    if (static_cast<unsigned char>(name.front()) < 0x80) {
      folded += LowerAscii(name.front());
      name.remove_prefix(1);
      continue;
    }
    const text::Utf8Character read = text::ReadUtf8(name);
    if (read.length == 0) {
      folded += name.front();
      name.remove_prefix(1);
    } else {
      text::AppendUtf8(folded, FoldCase(read.character));
      name.remove_prefix(read.length);
    }
  }
}

std::string FoldName(std::string_view name) {
  if (!name.empty() && name.size() > 1 && kSuffixes.find(name.back()) != std::string_view::npos) name.remove_suffix(1);
  if (name.size() >= 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
  std::string folded;
  AppendFolded(folded, name);
  return folded;
}

std::uint64_t HashName(std::string_view folded) noexcept {
  const std::uint64_t ignored = std::all_of(folded.begin(), folded.end(), IsPlainCharacter) ? name_word::kLowerCase : 0;
  std::uint64_t hash = folded.size();
  while (!folded.empty()) {
    const std::size_t length = std::min<std::size_t>(folded.size(), 8);
    char bytes[8] = {};
    std::copy_n(folded.data(), length, bytes);
    const std::uint64_t word = name_word::Load(bytes) | ignored;
    hash = name_word::Mix(hash, length == 8 ? word : name_word::First(word, length));
    folded.remove_prefix(length);
  }
  return hash;
}

}  // namespace quillmate::language
