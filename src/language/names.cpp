#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/text/utf8.h>

#include "case_folding_p.h"
#include "names_p.h"

namespace quillmate::language {
namespace {

constexpr std::size_t kFirstSlots = 1024;
static_assert(kWordCount * 2 < kFirstSlots);

bool IsPlainCharacter(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

char LowerAscii(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

constexpr std::string_view kSuffixes = "%&^!#@$";

}  // namespace

NameTable::NameTable() : words_(kFirstSlots, Slot{0, kNone}) {
  slots_ = words_;
  mask_ = kFirstSlots - 1;
  for (NameId word = 0; word < kWordCount; ++word) {
    const std::string_view folded = WordFolded(word);
    const std::uint64_t hash = HashReadable(folded.data(), folded.size());
    std::size_t slot = hash & mask_;
    while (slots_[slot].id != kNone) slot = (slot + 1) & mask_;
    slots_[slot] = {hash, word};
    spellings_.push_back({folded.data(), folded.size()});
  }
  words_ = slots_;
}

void NameTable::Start(Module& module) {
  slots_.assign(words_.begin(), words_.end());
  mask_ = slots_.size() - 1;
  spellings_.resize(kWordCount);
  extra_.clear();
  module_ = &module;
}

NameId NameTable::Enter(std::size_t slot, std::uint64_t hash, Spelling spelling) {
  const auto id = static_cast<NameId>(spellings_.size());
  slots_[slot] = {hash, id};
  spellings_.push_back(spelling);
  if (spellings_.size() * 2 > slots_.size()) Grow();
  return id;
}

NameId NameTable::Add(std::size_t slot, std::uint64_t hash, const char* name, std::size_t length) {
  std::string& folded = module_->foldedNames;
  module_->names.push_back({static_cast<std::uint32_t>(folded.size()), static_cast<std::uint32_t>(length), hash});
  std::transform(name, name + length, std::back_inserter(folded), LowerAscii);
  return Enter(slot, hash, {name, length});
}

NameId NameTable::AddOther(std::size_t slot, std::uint64_t hash, std::string_view folded) {
  std::string& all = module_->foldedNames;
  module_->names.push_back({static_cast<std::uint32_t>(all.size()), static_cast<std::uint32_t>(folded.size()), hash});
  all += folded;
  return Enter(slot, hash, {nullptr, folded.size()});
}

NameId NameTable::Other(std::string_view name) {
  folded_.clear();
  AppendFolded(folded_, name);
  const std::size_t length = folded_.size();
  const bool plain = std::all_of(folded_.begin(), folded_.end(), IsPlainCharacter);
  folded_.append(kReadAhead, '\0');
  const std::string_view folded(folded_.data(), length);
  const std::uint64_t hash = HashReadable(folded.data(), length);
  std::size_t slot = hash & mask_;
  for (; slots_[slot].id != kNone; slot = (slot + 1) & mask_) {
    if (slots_[slot].hash != hash) continue;
    const NameId id = slots_[slot].id;
    if (plain ? SamePlain(spellings_[id], folded.data(), length) : module_->NameText(id) == folded) return id;
  }
  if (!plain) return AddOther(slot, hash, folded);
  // Folding made it plain (the Kelvin sign is a "k"): from now on it is compared like those of the source.
  return Add(slot, hash, extra_.emplace_back(folded_).data(), length);
}

void NameTable::Grow() {
  std::vector<Slot> larger(slots_.size() * 2, Slot{0, kNone});
  mask_ = larger.size() - 1;
  for (const Slot& entry : slots_) {
    if (entry.id == kNone) continue;
    std::size_t slot = entry.hash & mask_;
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
  std::uint64_t hash = folded.size();
  while (!folded.empty()) {
    const std::size_t length = std::min<std::size_t>(folded.size(), 8);
    char bytes[8] = {};
    std::copy_n(folded.data(), length, bytes);
    const std::uint64_t word = name_word::Fold(name_word::Load(bytes));
    hash = name_word::Mix(hash, length == 8 ? word : name_word::First(word, length));
    folded.remove_prefix(length);
  }
  return hash;
}

}  // namespace quillmate::language
