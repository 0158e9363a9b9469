#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include <quillmate/office/byte_source.h>
#include <quillmate/text/utf8.h>

#include "unicode_names_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

constexpr std::size_t kPiece = std::size_t{64} << 10U;

struct Entity {
  std::string_view name;
  char character;
};
constexpr std::array kEntities{Entity{"lt", '<'}, Entity{"gt", '>'}, Entity{"amp", '&'}, Entity{"quot", '"'},
                               Entity{"apos", '\''}};
constexpr std::size_t kLongestEntity = 10;

bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// What is between "&" and ";"; false when it is no entity.
bool AppendEntity(std::string_view entity, std::string& text) {
  if (entity.starts_with('#')) {
    const bool hex = entity.size() > 1 && (entity[1] == 'x' || entity[1] == 'X');
    const std::string_view digits = entity.substr(hex ? 2 : 1);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, hex ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty()) return false;
    const bool usable = number != 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
    text::AppendUtf8(text, usable ? static_cast<char32_t>(number) : text::kReplacementCharacter);
    return true;
  }
  const auto* found =
      std::find_if(kEntities.begin(), kEntities.end(), [&](const Entity& known) { return known.name == entity; });
  if (found == kEntities.end()) return false;
  text += found->character;
  return true;
}

/// The next attribute of a tag, taken from the front; false at the end.
bool TakeAttribute(std::string_view& rest, XmlReader::NamedValue& attribute) noexcept {
  while (!rest.empty()) {
    std::size_t start = 0;
    while (start < rest.size() && (IsBlank(rest[start]) || rest[start] == '/')) ++start;
    std::size_t end = start;
    while (end < rest.size() && rest[end] != '=' && !IsBlank(rest[end])) ++end;
    attribute.name = rest.substr(start, end - start);
    std::size_t value = end;
    while (value < rest.size() && IsBlank(rest[value])) ++value;
    if (value < rest.size() && rest[value] == '=') {
      do ++value;
      while (value < rest.size() && IsBlank(rest[value]));
      if (value < rest.size() && (rest[value] == '"' || rest[value] == '\'')) {
        const std::size_t close = std::min(rest.find(rest[value], value + 1), rest.size());
        attribute.raw = rest.substr(value + 1, close - value - 1);
        rest.remove_prefix(std::min(close + 1, rest.size()));
        return true;
      }
    }
    // A name without a value in quotes: no XML, as some drawings hold.
    rest.remove_prefix(std::max(end, std::size_t{1}) > rest.size() ? rest.size() : std::max(end, std::size_t{1}));
  }
  return false;
}

}  // namespace

std::string DecodeXml(std::string_view raw) {
  std::string text;
  text.reserve(raw.size());
  for (;;) {
    const std::size_t mark = raw.find('&');
    text += raw.substr(0, mark);
    if (mark == std::string_view::npos) return text;
    raw.remove_prefix(mark + 1);
    const std::size_t end = raw.substr(0, kLongestEntity).find(';');
    if (end != std::string_view::npos && AppendEntity(raw.substr(0, end), text)) {
      raw.remove_prefix(end + 1);
    } else {
      text += '&';
    }
  }
}

// Input --------------------------------------------------------------------------------------------------------------

/// UTF-16 becomes UTF-8 on the way.
std::size_t XmlReader::ReadUtf8(char* to, std::size_t count) {
  if (encoding_ == Encoding::kUtf8) return stream_.Read(to, count);
  if (encoding_ == Encoding::kUnknown) {
    pending_.resize(2);
    std::size_t got = stream_.Read(pending_.data(), 2);
    if (got == 1) got += stream_.Read(pending_.data() + 1, 1);
    pending_.resize(got);
    encoding_ = pending_ == "\xFF\xFE" ? Encoding::kLittle : pending_ == "\xFE\xFF" ? Encoding::kBig : Encoding::kUtf8;
    if (encoding_ == Encoding::kUtf8) {
      std::memcpy(to, pending_.data(), got);
      return got;
    }
    pending_.clear();
  }
  std::string utf8;
  while (utf8.empty()) {
    // A unit of 2 bytes becomes 3 at most, and half a pair waits for the other half.
    const std::size_t before = pending_.size();
    pending_.resize(count / 2);
    pending_.resize(before + stream_.Read(pending_.data() + before, pending_.size() - before));
    const bool last = pending_.size() == before;
    if (last && before == 0) break;
    if (encoding_ == Encoding::kBig) {
      for (std::size_t at = swapped_; at + 1 < pending_.size(); at += 2) std::swap(pending_[at], pending_[at + 1]);
    }
    std::size_t whole = pending_.size() / 2 * 2;
    if (!last && whole >= 2 && (static_cast<unsigned char>(pending_[whole - 1]) & 0xFCU) == 0xD8) whole -= 2;
    utf8 = Utf8FromUtf16Bytes(std::string_view(pending_).substr(0, whole));
    swapped_ = pending_.size() / 2 * 2 - whole;
    pending_.erase(0, last ? pending_.size() : whole);
  }
  std::memcpy(to, utf8.data(), utf8.size());
  return utf8.size();
}

/// Reads on after what is unread; false at the end.
bool XmlReader::Fill() {
  if (ended_) return false;
  if (at_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
    end_ -= at_;
    at_ = 0;
  }
  if (buffer_.size() < end_ + kPiece) buffer_.resize(end_ + kPiece);
  const std::size_t got = ReadUtf8(buffer_.data() + end_, kPiece);
  end_ += got;
  ended_ = got == 0;
  return got > 0;
}

bool XmlReader::Need(std::size_t count) {
  while (Unread() < count && Fill()) {
  }
  return Unread() >= count;
}

// Tags ---------------------------------------------------------------------------------------------------------------

bool XmlReader::ToTag(std::string* text, std::size_t limit) {
  for (;;) {
    const std::string_view window = Window();
    const std::size_t mark = std::min(window.find('<'), window.size());
    if (text != nullptr && text->size() < limit) text->append(window.substr(0, std::min(mark, limit - text->size())));
    at_ += mark;
    if (mark < window.size()) return true;
    if (!Fill()) return false;
  }
}

bool XmlReader::SkipTo(std::string_view ending, std::string* content, std::size_t limit) {
  for (;;) {
    const std::string_view window = Window();
    const std::size_t found = window.find(ending);
    // The ending may come in two pieces.
    const std::size_t kept = std::min(window.size(), ending.size() - 1);
    const std::size_t taken = found == std::string_view::npos ? window.size() - kept : found;
    if (content != nullptr && content->size() < limit) {
      content->append(window.substr(0, std::min(taken, limit - content->size())));
    }
    at_ += taken;
    if (found != std::string_view::npos) {
      at_ += ending.size();
      return true;
    }
    if (!Fill()) return false;
  }
}

/// From "<" on. Afterwards the reader is past the tag.
bool XmlReader::TakeTag() {
  std::size_t at = 1;
  char quote = '\0';
  for (;;) {
    const std::string_view window = Window();
    while (at < window.size()) {
      const char c = window[at];
      if (quote != '\0') {
        const std::size_t close = window.find(quote, at);
        at = std::min(close, window.size());
        if (at < window.size()) {
          quote = '\0';
          ++at;
        }
        continue;
      }
      if (c == '>') break;
      if (c == '"' || c == '\'') quote = c;
      ++at;
    }
    if (at < window.size()) break;
    if (window.size() > kLongestXmlTag || !Fill()) {
      broken_ = true;
      at_ = end_;
      ended_ = true;
      return false;
    }
  }
  std::string_view tag = Window().substr(1, at - 1);
  at_ += at + 1;
  empty_ = tag.ends_with('/');
  if (tag.starts_with('/')) tag.remove_prefix(1);
  std::size_t end = 0;
  while (end < tag.size() && !IsBlank(tag[end]) && tag[end] != '/') ++end;
  name_ = tag.substr(0, end);
  attributes_ = tag.substr(end);
  return true;
}

XmlReader::Tag XmlReader::Next() {
  if (endDue_) {
    endDue_ = false;
    return Tag::kEnd;
  }
  while (ToTag(nullptr, 0)) {
    Need(9);
    const std::string_view window = Window();
    if (window.starts_with("<!--")) {
      at_ += 4;
      SkipTo("-->", nullptr, 0);
    } else if (window.starts_with("<![CDATA[")) {
      SkipTo("]]>", nullptr, 0);
    } else if (window.starts_with("<?")) {
      SkipTo("?>", nullptr, 0);
    } else if (window.starts_with("<!")) {
      SkipTo(">", nullptr, 0);
    } else {
      const bool isEnd = window.size() > 1 && window[1] == '/';
      if (!TakeTag()) return Tag::kDone;
      endDue_ = !isEnd && empty_;
      return isEnd ? Tag::kEnd : Tag::kStart;
    }
  }
  return Tag::kDone;
}

std::string_view XmlReader::Name() const noexcept {
  const std::size_t colon = name_.find(':');
  return colon == std::string_view::npos ? name_ : name_.substr(colon + 1);
}

std::string XmlReader::Text(std::size_t limit) {
  std::string decoded;
  std::string raw;
  while (!endDue_ && ToTag(&raw, limit)) {
    Need(9);
    const std::string_view window = Window();
    if (window.starts_with("<!--")) {
      at_ += 4;
      SkipTo("-->", nullptr, 0);
    } else if (window.starts_with("<![CDATA[")) {
      at_ += 9;
      decoded += DecodeXml(raw);
      raw.clear();
      SkipTo("]]>", &decoded, limit);
    } else {
      break;
    }
  }
  return decoded + DecodeXml(raw);
}

// Attributes ---------------------------------------------------------------------------------------------------------

std::optional<std::string_view> XmlReader::Raw(std::string_view name, bool bare, bool prefixed) const {
  std::string_view rest = attributes_;
  for (NamedValue attribute; TakeAttribute(rest, attribute);) {
    const std::size_t colon = attribute.name.find(':');
    const bool hasPrefix = colon != std::string_view::npos;
    if (hasPrefix ? !prefixed || attribute.name.starts_with("xmlns:") : !bare) continue;
    if ((hasPrefix ? attribute.name.substr(colon + 1) : attribute.name) == name) return attribute.raw;
  }
  return std::nullopt;
}

std::optional<std::string> XmlReader::Attribute(std::string_view name) const {
  const auto raw = Raw(name, true, false);
  return raw.has_value() ? std::optional(DecodeXml(*raw)) : std::nullopt;
}

std::optional<std::string> XmlReader::PrefixedAttribute(std::string_view name) const {
  const auto raw = Raw(name, false, true);
  return raw.has_value() ? std::optional(DecodeXml(*raw)) : std::nullopt;
}

std::optional<std::string> XmlReader::AnyAttribute(std::string_view name) const {
  const auto raw = Raw(name, true, true);
  return raw.has_value() ? std::optional(DecodeXml(*raw)) : std::nullopt;
}

std::string_view XmlReader::RawAttribute(std::string_view name) const {
  return Raw(name, true, false).value_or(std::string_view());
}

std::vector<XmlReader::NamedValue> XmlReader::Attributes() const {
  std::vector<NamedValue> attributes;
  std::string_view rest = attributes_;
  for (NamedValue attribute; TakeAttribute(rest, attribute);) attributes.push_back(attribute);
  return attributes;
}

}  // namespace quillmate::office
