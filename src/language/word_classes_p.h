#pragma once

#include <array>
#include <cstdint>

#include <quillmate/language/records.h>
#include <quillmate/language/words.h>

/// What a reserved word does in an expression, and which types the language has.
namespace quillmate::language {

enum class WordClass : std::uint8_t {
  kName,      ///< not reserved, or used like a name: Me, Date, String
  kOperator,  ///< And, Mod, Like ...
  kLiteral,
  kNew,
  kTypeOf,
  kIs,
  kAddressOf,
  kPassing,  ///< ByVal, ByRef
  kTo,
  kThen,      ///< Then, Else: end every expression, however deep
  kReserved,  ///< begins or goes on with a statement
};

struct WordTable {
  std::array<WordClass, kWordCount> classes{};
  std::array<BuiltinType, kWordCount> types{};
  std::array<bool, kWordCount> declares{};  ///< begins headers and declarations

  constexpr WordTable() {
    for (NameId word = 0; word < kWordAccess; ++word) classes[word] = WordClass::kReserved;
    for (const NameId word :
         {kWordMe, kWordDate, kWordString, kWordInput, kWordSeek, kWordSpc, kWordTab, kWordDoEvents}) {
      classes[word] = WordClass::kName;
    }
    for (const NameId word : {kWordAnd, kWordOr, kWordXor, kWordEqv, kWordImp, kWordMod, kWordLike, kWordNot}) {
      classes[word] = WordClass::kOperator;
    }
    for (const NameId word : {kWordTrue, kWordFalse, kWordNothing, kWordEmpty, kWordNull}) {
      classes[word] = WordClass::kLiteral;
    }
    classes[kWordNew] = WordClass::kNew;
    classes[kWordTypeOf] = WordClass::kTypeOf;
    classes[kWordIs] = WordClass::kIs;
    classes[kWordAddressOf] = WordClass::kAddressOf;
    classes[kWordByVal] = classes[kWordByRef] = WordClass::kPassing;
    classes[kWordTo] = WordClass::kTo;
    classes[kWordThen] = classes[kWordElse] = WordClass::kThen;

    for (const NameId word :
         {kWordPublic, kWordPrivate, kWordFriend, kWordGlobal, kWordStatic, kWordDim, kWordConst, kWordDeclare,
          kWordEvent, kWordEnum, kWordType, kWordSub, kWordFunction, kWordProperty, kWordWithEvents}) {
      declares[word] = true;
    }

    types.fill(BuiltinType::kNamed);
    types[kWordBoolean] = BuiltinType::kBoolean;
    types[kWordByte] = BuiltinType::kByte;
    types[kWordCurrency] = BuiltinType::kCurrency;
    types[kWordDate] = BuiltinType::kDate;
    types[kWordDecimal] = BuiltinType::kDecimal;
    types[kWordDouble] = BuiltinType::kDouble;
    types[kWordInteger] = BuiltinType::kInteger;
    types[kWordLong] = BuiltinType::kLong;
    types[kWordLongLong] = BuiltinType::kLongLong;
    types[kWordLongPtr] = BuiltinType::kLongPtr;
    types[kWordObject] = BuiltinType::kObject;
    types[kWordSingle] = BuiltinType::kSingle;
    types[kWordString] = BuiltinType::kString;
    types[kWordVariant] = BuiltinType::kVariant;
    types[kWordAny] = BuiltinType::kAny;
  }
};

inline constexpr WordTable kWords;

/// Of a name token that is not written in brackets.
inline WordClass ClassOfWord(NameId name) noexcept {
  return name < kWordCount ? kWords.classes[name] : WordClass::kName;
}
inline bool BeginsDeclaration(NameId name) noexcept { return name < kWordCount && kWords.declares[name]; }
inline BuiltinType TypeOfWord(NameId name) noexcept {
  return name < kWordCount ? kWords.types[name] : BuiltinType::kNamed;
}
/// Types that not every edition of the language has: code may declare its own of that name.
inline bool MayBeDeclared(BuiltinType type) noexcept {
  return type == BuiltinType::kObject || type == BuiltinType::kLongPtr || type == BuiltinType::kLongLong;
}

/// The class of a name: in brackets every word is one.
inline WordClass ClassOfName(const Token& token) noexcept {
  return (token.flags & token_flag::kBracketed) != 0 ? WordClass::kName : ClassOfWord(token.name);
}

/// With a blank, but no line break, before it.
inline bool StandsApart(const Token& token) noexcept {
  return (token.flags & (token_flag::kBlankBefore | token_flag::kContinuedBefore)) == token_flag::kBlankBefore;
}

}  // namespace quillmate::language
