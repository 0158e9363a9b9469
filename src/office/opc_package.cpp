#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include <quillmate/office/document_facts.h>
#include <quillmate/text/operations.h>

#include "opc_package_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

/// A stream that ends where a number of bytes that it shares with others is used up.
class EvidenceStream final : public ByteStream {
 public:
  EvidenceStream(std::unique_ptr<ByteStream> stream, std::uint64_t& left) : stream_(std::move(stream)), left_(left) {}
  std::size_t Read(char* to, std::size_t count) override {
    const std::size_t got = stream_->Read(to, static_cast<std::size_t>(std::min<std::uint64_t>(count, left_)));
    left_ -= got;
    return got;
  }

 private:
  std::unique_ptr<ByteStream> stream_;
  std::uint64_t& left_;
};

std::string_view FolderOf(std::string_view part) noexcept {
  const std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : part.substr(0, slash + 1);
}

}  // namespace

std::string ResolvePart(std::string_view part, std::string_view target) {
  std::string path = target.starts_with('/') ? std::string(target) : std::string(FolderOf(part)).append(target);
  std::vector<std::string_view> names;
  for (const std::string_view name : text::Split(path, "/")) {
    if (name == "..") {
      if (!names.empty()) names.pop_back();
    } else if (!name.empty() && name != ".") {
      names.push_back(name);
    }
  }
  std::string resolved;
  for (const std::string_view name : names) {
    if (!resolved.empty()) resolved += '/';
    resolved += name;
  }
  return resolved;
}

std::vector<Relation> OpcPackage::RelationsOf(std::string_view part) const {
  const std::string_view folder = FolderOf(part);
  std::string name(folder);
  name.append("_rels/").append(part.substr(folder.size())).append(".rels");
  std::vector<Relation> relations;
  const std::unique_ptr<ByteStream> stream = Open(name);
  if (stream == nullptr) return relations;
  XmlReader xml(*stream);
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone && relations.size() < kMostFacts; tag = xml.Next()) {
    if (tag != XmlReader::Tag::kStart || xml.Name() != "Relationship") continue;
    Relation relation;
    relation.id = xml.Attribute("Id").value_or("");
    relation.type = text::TextAfterLast(xml.Attribute("Type").value_or(""), "/");
    relation.target = xml.Attribute("Target").value_or("");
    relation.external = xml.Attribute("TargetMode").value_or("") == "External";
    if (!relation.external) relation.target = ResolvePart(part, relation.target);
    relations.push_back(std::move(relation));
  }
  return relations;
}

std::unique_ptr<ByteStream> OpcPackage::Open(std::string_view part) const {
  const auto index = zip_.Find(part);
  std::unique_ptr<ByteStream> stream = index.has_value() && left_ > 0 ? zip_.Stream(*index) : nullptr;
  return stream == nullptr ? nullptr : std::make_unique<EvidenceStream>(std::move(stream), left_);
}

std::string OpcPackage::Read(std::string_view part, std::size_t limit) const {
  const auto index = zip_.Find(part);
  return index.has_value() ? zip_.Read(*index, limit).bytes : std::string();
}

}  // namespace quillmate::office
