#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "byte_stream_p.h"
#include "zip_archive_p.h"

namespace quillmate::office {

inline constexpr std::uint64_t kMostEvidence = std::uint64_t{2} << 30U;

/// From one part of a document to another, as the parts "_rels/*.rels" have it [ECMA-376 part 2, 9].
struct Relation {
  std::string id;
  /// What follows the last "/" of the type: "worksheet", "drawing".
  std::string type;
  /// The part's path without a leading "/"; as it is written where it leads out of the document.
  std::string target;
  bool external = false;
};

/// Relations by their ids.
class RelationIndex {
 public:
  /// `relations` has to outlive it.
  explicit RelationIndex(const std::vector<Relation>& relations) {
    for (const Relation& relation : relations) byId_.try_emplace(relation.id, &relation);
  }
  /// Nothing when there is none of that id.
  const Relation* Find(std::string_view id) const {
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : found->second;
  }

 private:
  std::unordered_map<std::string_view, const Relation*> byId_;
};

/// The parts of a document in the open Office formats; all together give at most kMostEvidence bytes.
class OpcPackage {
 public:
  /// `zip` has to outlive it.
  explicit OpcPackage(const ZipArchive& zip) : zip_(zip) {}

  /// Those of a part, in the order of the file; "" for the document itself. At most kMostFacts.
  std::vector<Relation> RelationsOf(std::string_view part) const;
  /// The part's content; nothing when there is no such part or it can't be unpacked.
  std::unique_ptr<ByteStream> Open(std::string_view part) const;
  /// The same as a whole, at most `limit` bytes; empty when it is longer.
  std::string Read(std::string_view part, std::size_t limit) const;
  /// True when no more is given.
  bool Exhausted() const noexcept { return left_ == 0; }

 private:
  const ZipArchive& zip_;
  mutable std::uint64_t left_ = kMostEvidence;
};

/// A target as seen from a part, "." and ".." resolved, without a leading "/".
std::string ResolvePart(std::string_view part, std::string_view target);

}  // namespace quillmate::office
