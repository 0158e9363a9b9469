#include "baseline.h"

#include <algorithm>
#include <utility>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "messages.h"
#include "output.h"

namespace quillmate::cli {

std::string BaselineKey(std::initializer_list<std::string_view> parts) {
  std::string key;
  for (const std::string_view part : parts) {
    if (!key.empty()) key += '\t';
    key += part.empty() ? "-" : OneLine(part);
  }
  return key;
}

std::multiset<std::string> ReadBaseline(const std::string& path, std::string_view head) {
  const std::string bytes = files::ReadWholeFile(files::PathFromText(path));
  std::multiset<std::string> keys;
  std::string_view rest = bytes;
  for (bool first = true; first || !rest.empty(); first = false) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string line(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (first && line != head) throw CommandFailure(path + ": Die Datei stammt nicht von --write-baseline");
    if (!first && !line.empty()) keys.insert(std::move(line));
  }
  return keys;
}

void WriteBaseline(const std::string& path, std::string_view head, std::vector<std::string> keys) {
  std::ranges::sort(keys);
  std::string text = std::string(head) + "\n";
  for (const std::string& key : keys) text += key + "\n";
  WriteWhole(path, text);
}

bool TakeKnown(std::multiset<std::string>& known, const std::string& key) {
  const auto found = known.find(key);
  return found != known.end() && (known.erase(found), true);
}

}  // namespace quillmate::cli
