#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/inventory/content.h>
#include <quillmate/inventory/reason.h>

/// Contents as bytes, on their way from one process of the program to another: numbers as they are in memory, texts
/// after their length.
namespace quillmate::inventory {

// One list of fields for both ways.
template <typename Way>
void Fields(Way& way, ModuleRow& row) {
  way(row.name, row.kind, row.lines, row.codeLines, row.commentLines, row.hash);
}
template <typename Way>
void Fields(Way& way, RoutineRow& row) {
  way(row.module, row.name, row.kind, row.visibility, row.signature, row.line, row.lines, row.statements,
      row.complexity, row.nesting, row.parameters, row.hash);
}
template <typename Way>
void Fields(Way& way, ReferenceRow& row) {
  way(row.name, row.version, row.path, row.toProject, row.broken);
}
template <typename Way>
void Fields(Way& way, LinkRow& row) {
  way(row.kind, row.target);
}
template <typename Way>
void Fields(Way& way, BindingRow& row) {
  way(row.kind, row.module, row.target, row.place);
}
template <typename Way>
void Fields(Way& way, FindingRow& row) {
  way(row.check, row.module, row.routine, row.line, row.column, row.text);
}
template <typename Way>
void Fields(Way& way, ApiRow& row) {
  way(row.module, row.name, row.library, row.alias, row.ptrSafe, row.line);
}
template <typename Way>
void Fields(Way& way, Content& content) {
  way(content.state, content.reason, content.format, content.codePage, content.project, content.protection,
      content.isSigned, content.signer, content.signerIssuer, content.signedFrom, content.signedUntil, content.title,
      content.author, content.lastAuthor, content.company, content.application, content.created, content.modified,
      content.excel4Sheets, content.replaced, content.modules, content.routines, content.references, content.links,
      content.bindings, content.findings, content.apis);
}

class Packer {
 public:
  template <typename... Values>
  void operator()(Values&... values) {
    (Put(values), ...);
  }
  std::string Take() { return std::move(bytes_); }

 private:
  template <typename Number>
  requires std::integral<Number> || std::is_enum_v<Number>
  void Put(const Number& number) { bytes_.append(reinterpret_cast<const char*>(&number), sizeof(number)); }
  void Put(const std::string& text) {
    Put(static_cast<std::uint32_t>(text.size()));
    bytes_ += text;
  }
  void Put(const std::optional<bool>& flag) { Put(static_cast<std::int8_t>(flag ? *flag : -1)); }
  template <typename Row>
  void Put(std::vector<Row>& rows) {
    Put(static_cast<std::uint32_t>(rows.size()));
    for (Row& row : rows) Fields(*this, row);
  }

  std::string bytes_;
};

/// Throws files::Failure when the bytes break off.
class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) noexcept : bytes_(bytes) {}
  template <typename... Values>
  void operator()(Values&... values) {
    (Get(values), ...);
  }

 private:
  std::string_view Cut(std::size_t count) {
    if (count > bytes_.size()) throw files::Failure(InventoryReason::kBrokenAnswer);
    const std::string_view cut = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return cut;
  }
  template <typename Number>
  requires std::integral<Number> || std::is_enum_v<Number>
  void Get(Number& number) { std::memcpy(&number, Cut(sizeof(number)).data(), sizeof(number)); }
  void Get(std::string& text) {
    std::uint32_t size = 0;
    Get(size);
    text = Cut(size);
  }
  void Get(std::optional<bool>& flag) {
    std::int8_t value = -1;
    Get(value);
    if (value >= 0) flag = value != 0;
  }
  template <typename Row>
  void Get(std::vector<Row>& rows) {
    std::uint32_t count = 0;
    Get(count);
    for (; count > 0; --count) Fields(*this, rows.emplace_back());
  }

  std::string_view bytes_;
};

}  // namespace quillmate::inventory
