#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "characters_p.h"
#include "conditional_p.h"

namespace quillmate::language {
namespace {

using Kind = ConditionalValue::Kind;

/// Operators in the order of how tightly they bind, and what the stack needs besides.
enum Step : std::uint16_t {
  kOpenStep,
  kImpStep,
  kEqvStep,
  kXorStep,
  kOrStep,
  kAndStep,
  kNotStep,
  kEqualStep,
  kNotEqualStep,
  kLessStep,
  kLessEqualStep,
  kGreaterStep,
  kGreaterEqualStep,
  kLikeStep,
  kIsStep,
  kConcatenateStep,
  kPlusStep,
  kMinusStep,
  kModStep,
  kIntegerDivideStep,
  kTimesStep,
  kDivideStep,
  kNegateStep,
  kPowerStep,
  kFunctionStep,  ///< plus the function's word: the function
};

constexpr std::size_t kLongestText = 4096;  // constants could double it time after time

constexpr int kLevels[] = {0, 1, 2, 3, 4, 5, 6, 7, 7, 7, 7, 7, 7, 7, 7, 8, 9, 9, 10, 11, 12, 12, 13, 14};
int LevelOf(std::uint16_t step) { return step >= kFunctionStep ? 15 : kLevels[step]; }
bool IsPrefix(std::uint16_t step) { return step == kNotStep || step == kNegateStep || step >= kFunctionStep; }

ConditionalValue Number(double number) { return {Kind::kNumber, number, {}}; }
ConditionalValue Truth(bool value) { return Number(value ? -1 : 0); }

/// As a whole number for the bitwise operators; what does not fit is 0.
std::int64_t Whole(const ConditionalValue& value) {
  const double number = std::nearbyint(value.number);
  return std::abs(number) < 9.0e18 ? static_cast<std::int64_t>(number) : 0;
}

ConditionalValue Bits(std::int64_t bits) { return Number(static_cast<double>(bits)); }

bool InSet(std::string_view set, char c) {
  const bool wanted = set.empty() || set.front() != '!';
  if (!wanted) set.remove_prefix(1);
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool range = i + 2 < set.size() && set[i + 1] == '-';
    if (range ? set[i] <= c && c <= set[i + 2] : set[i] == c) return wanted;
    if (range) i += 2;
  }
  return !wanted;
}

/// One element of a Like pattern ("?", "#", "[a-z]" or a character) against one character; the element's length, 0 if
/// it does not fit.
std::size_t LikeElement(std::string_view pattern, char c) {
  const char first = pattern.front();
  if (first == '?') return 1;
  if (first == '#') return IsAsciiDigit(c) ? 1 : 0;
  const std::size_t close = first == '[' ? pattern.find(']') : std::string_view::npos;
  if (close == std::string_view::npos) return first == c ? 1 : 0;
  return InSet(pattern.substr(1, close - 1), c) ? close + 1 : 0;
}

bool Like(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t next = 0;
  std::size_t star = std::string_view::npos;
  std::size_t retry = 0;
  while (at < text.size()) {
    const std::size_t length =
        next < pattern.size() && pattern[next] != '*' ? LikeElement(pattern.substr(next), text[at]) : 0;
    if (length > 0) {
      next += length;
      ++at;
    } else if (next < pattern.size() && pattern[next] == '*') {
      star = next++;
      retry = at;
    } else if (star != std::string_view::npos) {
      next = star + 1;
      at = ++retry;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', next) == std::string_view::npos;
}

/// -1, 0 or 1; texts without regard to case, a text and a number by the number's text.
int Compare(const ConditionalValue& a, const ConditionalValue& b) {
  if (a.kind != Kind::kText && b.kind != Kind::kText) return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
  std::string left, right;
  AppendFolded(left, a.text);
  AppendFolded(right, b.text);
  return left.compare(right) < 0 ? -1 : left == right ? 0 : 1;
}

double Divide(double a, double b, bool whole) {
  if (b == 0) return 0;
  return whole ? std::trunc(std::nearbyint(a) / std::nearbyint(b == 0 ? 1 : b)) : a / b;
}

ConditionalValue Binary(std::uint16_t step, const ConditionalValue& a, const ConditionalValue& b) {
  switch (step) {
    case kImpStep:
      return Bits(~Whole(a) | Whole(b));
    case kEqvStep:
      return Bits(~(Whole(a) ^ Whole(b)));
    case kXorStep:
      return Bits(Whole(a) ^ Whole(b));
    case kOrStep:
      return Bits(Whole(a) | Whole(b));
    case kAndStep:
      return Bits(Whole(a) & Whole(b));
    case kEqualStep:
    case kIsStep:
      return Truth(Compare(a, b) == 0);
    case kNotEqualStep:
      return Truth(Compare(a, b) != 0);
    case kLessStep:
      return Truth(Compare(a, b) < 0);
    case kLessEqualStep:
      return Truth(Compare(a, b) <= 0);
    case kGreaterStep:
      return Truth(Compare(a, b) > 0);
    case kGreaterEqualStep:
      return Truth(Compare(a, b) >= 0);
    case kLikeStep:
      return Truth(Like(a.text, b.text));
    case kPlusStep:
      return Number(a.number + b.number);
    case kMinusStep:
      return Number(a.number - b.number);
    case kModStep:
      return Number(std::nearbyint(b.number) == 0 ? 0 : std::fmod(std::nearbyint(a.number), std::nearbyint(b.number)));
    case kIntegerDivideStep:
      return Number(Divide(a.number, b.number, true));
    case kTimesStep:
      return Number(a.number * b.number);
    case kDivideStep:
      return Number(Divide(a.number, b.number, false));
    case kPowerStep:
      return Number(std::pow(a.number, b.number));
    default:
      return {};
  }
}

ConditionalValue Unary(std::uint16_t step, const ConditionalValue& a) {
  if (step == kNotStep) return Bits(~Whole(a));
  if (step == kNegateStep) return Number(-a.number);
  switch (static_cast<NameId>(step - kFunctionStep)) {
    case kWordAbs:
      return Number(std::abs(a.number));
    case kWordSgn:
      return Number(a.number > 0 ? 1 : a.number < 0 ? -1 : 0);
    case kWordFix:
      return Number(std::trunc(a.number));
    case kWordInt:
      return Number(std::floor(a.number));
    case kWordLen:
    case kWordLenB:
      return Number(static_cast<double>(a.text.size()));
    case kWordCBool:
      return Truth(a.number != 0);
    default:
      return a;
  }
}

bool IsFunction(NameId word) { return word >= kWordAbs && word <= kWordSgn; }

/// The binary operator that a token is, kOpenStep if it is none.
std::uint16_t BinaryStep(const Token& token) {
  if (token.kind == TokenKind::kName) {
    switch (token.name) {
      case kWordAnd:
        return kAndStep;
      case kWordOr:
        return kOrStep;
      case kWordXor:
        return kXorStep;
      case kWordEqv:
        return kEqvStep;
      case kWordImp:
        return kImpStep;
      case kWordMod:
        return kModStep;
      case kWordLike:
        return kLikeStep;
      case kWordIs:
        return kIsStep;
      default:
        return kOpenStep;
    }
  }
  if (token.kind != TokenKind::kOperator) return kOpenStep;
  switch (static_cast<Operator>(token.detail)) {
    case Operator::kPlus:
      return kPlusStep;
    case Operator::kMinus:
      return kMinusStep;
    case Operator::kTimes:
      return kTimesStep;
    case Operator::kDivide:
      return kDivideStep;
    case Operator::kIntegerDivide:
      return kIntegerDivideStep;
    case Operator::kPower:
      return kPowerStep;
    case Operator::kConcatenate:
      return kConcatenateStep;
    case Operator::kEqual:
      return kEqualStep;
    case Operator::kLess:
      return kLessStep;
    case Operator::kGreater:
      return kGreaterStep;
    case Operator::kNotEqual:
      return kNotEqualStep;
    case Operator::kLessEqual:
      return kLessEqualStep;
    case Operator::kGreaterEqual:
      return kGreaterEqualStep;
    default:
      return kOpenStep;
  }
}

bool Is(const Token& token, Operator op) {
  return token.kind == TokenKind::kOperator && token.detail == static_cast<std::uint8_t>(op);
}

double NumberOf(std::string_view literal) {
  int base = 10;
  if (literal.starts_with('&')) {
    base = literal.size() > 1 && (literal[1] | 0x20) == 'h' ? 16 : 8;
    literal.remove_prefix(literal.size() > 1 && !IsAsciiDigit(literal[1]) ? 2 : 1);
  }
  if (base != 10) {
    std::uint64_t whole = 0;
    std::from_chars(literal.data(), literal.data() + literal.size(), whole, base);
    return static_cast<double>(whole);
  }
  double number = 0;
  std::from_chars(literal.data(), literal.data() + literal.size(), number);
  return number;
}

}  // namespace

void ConditionalConstants::Start(std::string_view text, const NamePool& names, const ParseOptions& options) {
  text_ = text;
  names_ = &names;
  options_ = &options;
  own_.clear();
  texts_.clear();
}

ConditionalValue ConditionalConstants::ValueOf(NameId name) const {
  if (const auto own = own_.find(name); own != own_.end()) return own->second;
  const std::string_view folded = names_->Text(name);
  for (const ConditionalConstant& constant : options_->constants) {
    if (constant.name.size() == folded.size() && FoldName(constant.name) == folded) {
      return Number(static_cast<double>(constant.value));
    }
  }
  const bool vba = options_->dialect == Dialect::kVba;
  if (folded == "win32" || folded == "vba6") return Number(1);
  if (folded == "vba7" || folded == "win64") return Number(vba ? 1 : 0);
  return {};
}

ConditionalValue ConditionalConstants::Operand(const Token& token) const {
  const std::string_view text = text_.substr(token.offset, token.length);
  switch (token.kind) {
    case TokenKind::kName:
      if (token.name == kWordTrue) return Truth(true);
      if (token.name == kWordFalse) return Truth(false);
      if (token.name == kWordNull) return {Kind::kNull, 0, {}};
      return token.name == kWordEmpty || token.name == kWordNothing ? ConditionalValue{} : ValueOf(token.name);
    case TokenKind::kInteger:
    case TokenKind::kFloat:
      return Number(NumberOf(text));
    case TokenKind::kString: {
      const bool closed = (token.flags & token_flag::kUnclosed) == 0;
      return {Kind::kText, 0, text.substr(1, text.size() - (closed ? 2 : 1))};
    }
    default:
      return {};
  }
}

bool ConditionalConstants::ReduceTop() {
  const std::uint16_t step = operators_.back();
  operators_.pop_back();
  if (values_.empty()) return false;
  const ConditionalValue right = values_.back();
  if (IsPrefix(step)) {
    values_.back() = Unary(step, right);
    return true;
  }
  values_.pop_back();
  if (values_.empty()) return false;
  values_.back() = step == kConcatenateStep ? Joined(values_.back(), right) : Binary(step, values_.back(), right);
  return true;
}

ConditionalValue ConditionalConstants::Joined(const ConditionalValue& a, const ConditionalValue& b) {
  std::string& text = texts_.emplace_back(a.text);
  text.append(b.text, 0, kLongestText - std::min(text.size(), kLongestText));
  return {Kind::kText, 0, text};
}

/// Applies what binds at least as tightly as `level`.
void ConditionalConstants::Reduce(int level) {
  while (!operators_.empty() && operators_.back() != kOpenStep && LevelOf(operators_.back()) >= level) {
    if (!ReduceTop()) return;
  }
}

ConditionalValue ConditionalConstants::Evaluate(std::span<const Token> tokens) {
  values_.clear();
  operators_.clear();
  bool operandNext = true;
  for (const Token& token : tokens) {
    if (operandNext) {
      if (Is(token, Operator::kOpen)) {
        operators_.push_back(kOpenStep);
      } else if (Is(token, Operator::kMinus)) {
        operators_.push_back(kNegateStep);
      } else if (token.kind == TokenKind::kName && token.name == kWordNot) {
        operators_.push_back(kNotStep);
      } else if (token.kind == TokenKind::kName && IsFunction(token.name)) {
        operators_.push_back(static_cast<std::uint16_t>(kFunctionStep + token.name));
      } else if (!Is(token, Operator::kPlus)) {
        values_.push_back(Operand(token));
        operandNext = false;
      }
      continue;
    }
    if (Is(token, Operator::kClose)) {
      Reduce(1);
      if (operators_.empty()) return {};
      operators_.pop_back();
      continue;
    }
    const std::uint16_t step = BinaryStep(token);
    if (step == kOpenStep) return {};
    Reduce(LevelOf(step));
    operators_.push_back(step);
    operandNext = true;
  }
  Reduce(1);
  return values_.size() == 1 && operators_.empty() ? values_.back() : ConditionalValue{};
}

std::vector<ConditionalConstant> ParseConditionalConstants(std::string_view text) {
  std::vector<ConditionalConstant> constants;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t equal = part.find('=');
    if (equal == std::string_view::npos) continue;
    const auto trimmed = [](std::string_view word) {
      const std::size_t from = word.find_first_not_of(" \t\"");
      return from == std::string_view::npos ? std::string_view()
                                            : word.substr(from, word.find_last_not_of(" \t\"") + 1 - from);
    };
    const std::string_view name = trimmed(part.substr(0, equal));
    const std::string_view value = trimmed(part.substr(equal + 1));
    std::int64_t number = 0;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
    if (read.ec == std::errc() && !name.empty()) constants.push_back({std::string(name), number});
  }
  return constants;
}

}  // namespace quillmate::language
