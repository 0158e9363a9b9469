#include <algorithm>

#include "unused_names_p.h"

namespace quillmate::analysis {
namespace {

std::string_view IdentifierInFront(std::string_view name) {
  const auto end = std::ranges::find_if_not(name, text::IsIdentifierCharacter);
  return name.substr(0, static_cast<std::size_t>(end - name.begin()));
}

}  // namespace

int CandidateNames::Add(std::string_view name) {
  const std::string_view word = IdentifierInFront(name);
  if (word.empty()) {
    hasOdd_ = true;
    return AddTo(odd_[static_cast<unsigned char>(name.front())], name);
  }
  const int group = AddGroup(word);
  Group& found = groups_[static_cast<std::size_t>(group)];
  return AddTo(word.size() == name.size() ? found.whole : found.longer, name);
}

int CandidateNames::AddTo(std::vector<int>& numbers, std::string_view name) {
  for (const int number : numbers) {
    if (Name(number) == name) return number;
  }
  const int number = static_cast<int>(names_.size());
  names_.emplace_back(name);
  numbers.push_back(number);
  return number;
}

int CandidateNames::AddGroup(std::string_view word) {
  const int group = words_.Add(word);
  if (words_.Size() == groups_.size()) return group;
  groups_.emplace_back();
  longest_ = std::max(longest_, word.size());
  begins_[text::ToLower(word.front())] = true;
  return group;
}

}  // namespace quillmate::analysis
