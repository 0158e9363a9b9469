#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "byte_stream_p.h"

namespace quillmate::office {

/// Reads XML tag by tag while it comes in, in UTF-8 or UTF-16. It does not check that the text is well-formed: ends
/// need not fit starts, and what can't be read as a tag is text. Entities other than the five of XML and characters by
/// number stay as they are written; nothing that a document type declares is expanded.
///
/// Memory: what is unread of a piece of 64 KB, and one tag, which must not be longer than kLongestXmlTag; a longer one
/// ends the reading.
inline constexpr std::size_t kLongestXmlTag = std::size_t{1} << 20U;

class XmlReader {
 public:
  enum class Tag { kStart, kEnd, kDone };

  /// `stream` has to outlive the reader.
  explicit XmlReader(ByteStream& stream) : stream_(stream) {}

  /// Goes on to the next tag. An element without content is a start, and an end that follows.
  Tag Next();
  /// Of the tag: with its prefix as written, and without. There until the next call of Next or Text.
  std::string_view QualifiedName() const noexcept { return name_; }
  std::string_view Name() const noexcept;
  /// True for a start that says so of itself; the end follows all the same.
  bool IsEmpty() const noexcept { return empty_; }

  /// The value of an attribute, decoded: without a prefix, with any prefix, or with or without one.
  std::optional<std::string> Attribute(std::string_view name) const;
  std::optional<std::string> PrefixedAttribute(std::string_view name) const;
  std::optional<std::string> AnyAttribute(std::string_view name) const;
  /// The value as it is written, without a prefix; empty when it is missing.
  std::string_view RawAttribute(std::string_view name) const;

  struct NamedValue {
    std::string_view name;
    std::string_view raw;
  };
  /// All attributes of the tag, names as written, values not decoded.
  std::vector<NamedValue> Attributes() const;

  /// After a start: the text up to the next tag, decoded, with its CDATA sections, at most `limit` bytes of it.
  std::string Text(std::size_t limit);

  /// True when the text ended within a tag, or a tag was too long.
  bool Broken() const noexcept { return broken_; }

 private:
  bool Fill();
  bool Need(std::size_t count);
  std::size_t Unread() const noexcept { return end_ - at_; }
  std::string_view Window() const noexcept { return {buffer_.data() + at_, end_ - at_}; }
  /// Goes to the next "<"; appends what precedes it to `text` where there is one.
  bool ToTag(std::string* text, std::size_t limit);
  /// Moves past a text that ends a section; false when it never comes.
  bool SkipTo(std::string_view ending, std::string* content, std::size_t limit);
  bool TakeTag();
  std::optional<std::string_view> Raw(std::string_view name, bool bare, bool prefixed) const;
  std::size_t ReadUtf8(char* to, std::size_t count);

  ByteStream& stream_;
  std::string buffer_;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  std::string_view name_;
  std::string_view attributes_;
  bool empty_ = false;
  bool endDue_ = false;
  bool broken_ = false;
  bool ended_ = false;
  enum class Encoding { kUnknown, kUtf8, kLittle, kBig } encoding_ = Encoding::kUnknown;
  /// What is left of UTF-16 until more comes in, and how much of it has its bytes in order.
  std::string pending_;
  std::size_t swapped_ = 0;
};

/// Text of XML with its entities replaced.
std::string DecodeXml(std::string_view raw);

}  // namespace quillmate::office
