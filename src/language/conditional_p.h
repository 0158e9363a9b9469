#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/language/parse.h>

#include "names_p.h"

/// Conditions of "#If" and values of "#Const".
namespace quillmate::language {

/// A value of a conditional expression. Booleans are the numbers -1 and 0, dates are 0.
struct ConditionalValue {
  enum class Kind : std::uint8_t { kEmpty, kNumber, kText, kNull };
  Kind kind = Kind::kEmpty;
  double number = 0;
  std::string_view text;  ///< of the source, doubled quotes as they are

  bool IsTrue() const noexcept { return kind == Kind::kNumber && number != 0; }
};

class ConditionalConstants {
 public:
  void Start(std::string_view text, const NamePool& names, const ParseOptions& options);

  /// Sets a constant of the module.
  void Define(NameId name, ConditionalValue value) { own_[name] = value; }
  bool Defines(NameId name) const { return own_.contains(name); }

  /// Reads the whole of `tokens`; what is no expression gives an empty value.
  ConditionalValue Evaluate(std::span<const Token> tokens);

 private:
  ConditionalValue ValueOf(NameId name) const;
  ConditionalValue Operand(const Token& token) const;
  void Reduce(int level);
  bool ReduceTop();
  ConditionalValue Joined(const ConditionalValue& a, const ConditionalValue& b);

  std::string_view text_;
  const NamePool* names_ = nullptr;
  const ParseOptions* options_ = nullptr;
  std::unordered_map<NameId, ConditionalValue> own_;
  std::vector<ConditionalValue> values_;
  std::vector<std::uint16_t> operators_;
  std::deque<std::string> texts_;  ///< what "&" made
};

}  // namespace quillmate::language
