#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <quillmate/language/parse.h>

#include "blocks_p.h"
#include "conditional_p.h"
#include "lexer_p.h"

/// Reads logical lines one after the other into a Module: directives, then statements parted at ":", each by its first
/// word. One pass, no tree, no recursion; every function starts at `at_` and leaves it after what it has read.
namespace quillmate::language {

class Parser {
 public:
  void Parse(std::string_view text, const ParseOptions& options, NamePool& names, Lexer& lexer, Module& module);

 private:
  // ------------------------------------------------------------------------------------------- expressions.cpp

  /// How far an expression goes and what its outermost commas mean.
  enum class Mode : std::uint8_t {
    kExpression,  ///< up to the statement's end, a reserved word or an operand without an operator before it
    kToComma,     ///< likewise, and to a comma
    kArguments,   ///< arguments of `callee`, without parentheses
    kOutputList,  ///< likewise, parted by ";", "," or nothing
    kOperand,     ///< one operand with its members and lists
    kTarget,      ///< likewise, at a statement's start: where what follows is the call's arguments it ends
    kBounded,     ///< likewise, but the last list is not read: it holds bounds
  };

  struct Frame {
    enum class Kind : std::uint8_t { kOutermost, kGroup, kArguments } kind = Kind::kOutermost;
    bool typeOf = false;    ///< TypeOf is before the operand
    bool listDone = false;  ///< the chain's last name has had its list
    bool indirect = false;  ///< the chain came out of parentheses or is a new object: no argument by reference
    bool byVal = false;     ///< the word is before the argument
    bool ofResult = false;  ///< the list goes to what the callee returns
    std::uint16_t position = 1;
    Index callee = kNone;
    Index named = kNone;     ///< the name before ":="
    std::uint32_t open = 0;  ///< token of "("
    std::uint32_t argumentFirst = 0;
    std::uint32_t chainFirst = 0;
    std::uint32_t chainEnd = 0;  ///< token after the operand; 0: none yet
    Index chainLast = kNone;     ///< its last name, kNone when it ends in none
  };

  /// What the last expression was.
  struct Outcome {
    Index last = kNone;   ///< last name when the whole is one operand
    bool whole = false;   ///< one operand, nothing else
    bool direct = false;  ///< and not through parentheses or New
  };

  void Run(Mode mode, Index callee = kNone);
  bool Step(const Token& token);
  bool IsWordBeforeMember(const Token& token) const;
  bool StepName(const Token& token);
  bool StepWord(const Token& token);
  bool StepOperator(const Token& token);
  bool StepAccess(const Token& token);
  bool StepOpen();
  bool StepClose();
  bool StepComma();
  bool StepColon();
  void StepLiteral(const Token& token);
  void StepNamedArgument(const Token& token);
  void StepNew();
  void StepAddressOf();
  void StepIs();
  void FinishArgument();
  void StartArgument(Frame& frame);
  bool EndsTarget(const Token& token) const;
  bool IsStatementArgument(std::uint32_t open) const;
  bool IsOperandOfArgument(std::uint32_t from) const;
  bool IsLastList(std::uint32_t open) const;
  bool IsGraphicsMark() const;
  bool SingleOutermost() const noexcept { return mode_ >= Mode::kOperand && Outermost(); }
  bool Outermost() const noexcept { return frames_.size() == 1; }
  bool OperandBefore() const noexcept { return frames_.back().chainEnd == at_ && at_ > 0; }
  Outcome Whole() const noexcept;

  Index Emit(const Token& token, Role role, Access access = Access::kSimple, Index previous = kNone);
  /// A name with "." and further names, all with one role; the last one's index.
  Index EmitQualified(Role role, std::uint32_t lastFlags, Index owner);
  void EmitString(const Token& token);

  // ------------------------------------------------------------------------------------------- statements.cpp

  void ParseStatements();
  void ParseStatement();
  bool ParseWordStatement(NameId word);
  bool ParseContextualStatement(NameId word);
  bool MakesName(std::uint32_t next) const;
  void ParseLabels();

  // ------------------------------------------------------------------------------------------- assignments.cpp

  void ParseCallOrAssignment();
  void ParseCallArguments(Index callee);
  void MarkLoaded(Index callee, Index firstUse);
  void ParseCallWord();
  void ParseAssignment(Role role, std::uint32_t flags = 0);
  void ParseValue(Index target, Role role);
  bool ParseMid();
  void ParseRaiseEvent();
  void ParseTarget(Role role);
  void ParseReDim();
  void ParseReDimItem(std::uint32_t flags);
  void ParseErase();
  void ParseImplements();

  // ------------------------------------------------------------------------------------ block_statements.cpp

  void ParseCondition();
  void ParseIf();
  void ParseThenLabel();
  void ParseElseIf();
  void ParseElse();
  void ParseSelect();
  void ParseCase();
  void ParseFor();
  void ParseNext();
  void ParseDo(bool loop);
  void ParseWhile();
  void ParseWith();
  void ParseEnd();
  bool IsLineNumber(const Token& token) const noexcept;
  NameId NumberName(const Token& token);
  bool EmitLabel();
  void ParseGoTo(StatementKind kind);
  void ParseOn();
  void ParseOnError();
  void ParseResume();
  bool IsZero(const Token& token) const;
  void OpenBlock(BlockStack::Kind kind, Index withUse, bool counted);
  void CloseBlock(BlockStack::Kind kind);

  // ------------------------------------------------------------------------------------- file_statements.cpp

  void ParseOpen();
  void ParseFileList(bool targets);
  void ParseGet(bool target);
  void ParsePrint();
  bool IsRename() const;
  void ParseName();
  bool BeginsGraphics(std::uint32_t token) const;
  /// An output list of points, and of Line.
  enum class Drawing : std::uint8_t { kNothing, kPoints, kLine };
  void ParseGraphics(Index callee, Drawing drawing);

  // ------------------------------------------------------------------------------------------ declarations.cpp

  /// Words before a declaration.
  struct Modifiers {
    Visibility visibility = Visibility::kPublic;
    bool scopeWritten = false, isStatic = false, dim = false;
  };
  struct TypeClause {
    BuiltinType type = BuiltinType::kUndeclared;
    Index use = kNone;
    std::uint32_t offset = 0, length = 0, flags = 0;
  };

  bool ParseDeclaration();
  Modifiers ReadModifiers(std::uint32_t& at) const;
  Visibility ScopeOf(const Modifiers& modifiers) const;
  void ParseVariables(const Modifiers& modifiers);
  void ParseConstants(const Modifiers& modifiers);
  void ParseDeclare(const Modifiers& modifiers);
  void ParseEvent(const Modifiers& modifiers);
  void ParseParameters(Index owner);
  void ParseParameter(Index owner);
  void ParseBlockStart(DeclarationKind kind, const Modifiers& modifiers);
  bool ParseBlockMember();
  bool IsBlockMember() const;
  void CloseBlockDeclaration(std::uint32_t lastLine);
  void ParseType(Index declaration, const Token& name, bool withEvents);
  TypeClause ParseTypeClause(Index declaration, bool withEvents);
  void ApplyType(Index declaration, const TypeClause& clause);
  void ParseBounds(Index declaration);
  void ParseConstantValue();
  Index Declare(const Token& token, DeclarationKind kind, Visibility visibility, Index parent);
  Index DeclareChild(const Token& token, DeclarationKind kind, Index owner);
  BuiltinType DefTypeOf(const Token& name) const;
  bool AtFreeName() const;
  bool InRoutine() const noexcept { return routine_ != kNone; }
  Index RoutineDeclaration() const;
  void ParseOption();
  void ParseDefType(BuiltinType type);

  // ----------------------------------------------------------------------------------------------- routines.cpp

  /// A header's words: where its name is, 0 if there is none.
  struct Header {
    std::uint32_t name = 0;
    DeclarationKind kind = DeclarationKind::kSub;
    Visibility visibility = Visibility::kPublic;
    bool scopeWritten = false, isStatic = false;
  };

  Header FindHeader(std::uint32_t from) const;
  void ParseHeader(const Header& header);
  void OpenRoutine(const Header& header, std::uint32_t firstToken);
  void AddVariant(Index declaration, std::uint32_t firstLine);
  bool IsVariant(const Header& header) const;
  void CloseRoutine(std::uint32_t lastLine, std::uint32_t endOffset);
  void CloseWithoutEnd(std::uint32_t lastLine);
  void EndRoutine(NameId word);
  void SettleVariants(Routine& routine);
  void CountLines(Routine& routine) const;
  void FindDescription(Routine& routine, std::uint32_t previousLast) const;

  // --------------------------------------------------------------------------------------------- dead_text.cpp

  void ParseDeadLine();
  void KeepDeadNames();
  std::uint32_t KeepDeadStatement(std::uint32_t first);
  bool IsDeadUse(std::uint32_t at, std::uint32_t first, bool parameters) const;

  // -------------------------------------------------------------------------------------------- directives.cpp

  /// An open "#If".
  struct Group {
    std::uint32_t line = 0;
    Activity outer = Activity::kActive;  ///< around the group
    bool closed = true;                  ///< its "#End If" follows
    bool taken = false;                  ///< one branch was active already
    bool deadInRoutine = false;          ///< the branch is dead text in an open routine: no headers in it
    BlockStack::State blocks = kNone;    ///< open where the #If is
    Index routine = kNone;               ///< likewise
    std::size_t routineCount = 0;        ///< there were so many
    std::size_t branchRoutines = 0;      ///< and so many where the branch began
    Index header = kNone;  ///< a routine that an earlier branch opened and left open: this one may hold another header
    BlockStack::State after = kNone;  ///< open at the end of the active branch, else of the first one
    Index afterRoutine = kNone;
    bool afterActive = false, hasAfter = false;
  };

  void SurveyDirectives();
  void DefineConstant(bool replace);
  void ParseDirective();
  void ParseConstDirective();
  void EmitConditionals(std::uint32_t from, std::uint32_t to);
  std::uint32_t ConditionEnd(std::uint32_t from) const;
  bool IsNeverTrue(std::uint32_t from, std::uint32_t to) const;
  void ParseIfDirective();
  void ParseElseDirective(bool condition);
  void EnterBranch(Group& group, bool condition);
  void LeaveBranch(Group& group);
  void ParseEndDirective();

  // ------------------------------------------------------------------------------------------- attributes.cpp

  void ParseAttribute();
  Index FindAttributed(NameId member) const;
  void TakeModuleAttribute(const Attribute& attribute);
  void TakeControl(const Attribute& attribute);

  // ------------------------------------------------------------------------------------------------ parser.cpp

  void Reset();
  void UseLine();
  void ParseLine();
  void KeepTokens();
  void Finish();
  void SettleKind();
  void Hide(std::uint32_t first, std::uint32_t last);
  void CountModuleLines();
  void Note(std::uint32_t line, ProblemKind kind) { module_->problems.push_back({line, kind}); }

  /// Statement over; counts it and keeps it where statements are kept.
  void Complete(StatementKind kind, std::uint32_t firstToken, bool counted);
  void Complexity(std::uint32_t points);
  void Nesting(std::uint32_t depth);
  std::uint32_t Depth() const noexcept;

  bool AtEnd() const noexcept;
  bool IsWord(std::uint32_t token, NameId word) const noexcept {
    return tokens_[token].name == word && tokens_[token].kind == TokenKind::kName &&
           (tokens_[token].flags & token_flag::kBracketed) == 0;
  }
  bool AtWord(NameId word) const noexcept { return IsWord(at_, word); }
  bool TakeWord(NameId word) noexcept { return AtWord(word) && (++at_, true); }
  bool IsOperator(std::uint32_t token, Operator op) const noexcept {
    return tokens_[token].kind == TokenKind::kOperator && tokens_[token].detail == static_cast<std::uint8_t>(op);
  }
  bool AtOperator(Operator op) const noexcept { return IsOperator(at_, op); }
  bool TakeOperator(Operator op) noexcept { return AtOperator(op) && (++at_, true); }
  bool AtName() const noexcept { return tokens_[at_].kind == TokenKind::kName; }
  void SkipToEnd();
  NameUse& Use(Index use) { return module_->uses[use]; }
  Declaration& Decl(Index declaration) { return module_->declarations[declaration]; }

  std::string_view text_;
  const ParseOptions* options_ = nullptr;
  NamePool* names_ = nullptr;
  Lexer* lexer_ = nullptr;
  Module* module_ = nullptr;
  ConditionalConstants constants_;

  const Token* tokens_ = nullptr;  ///< of the logical line, with a kEnd after them
  std::uint32_t tokenCount_ = 0;   ///< that one not counted
  std::uint32_t at_ = 0;
  Index firstToken_ = kNone;  ///< of the line in Module::tokens

  std::vector<Frame> frames_;
  Mode mode_ = Mode::kExpression;
  bool continues_ = false;      ///< a statement follows without ":": after Then, Else, a header's End
  Index statementUse_ = kNone;  ///< first use of the statement
  Drawing drawing_ = Drawing::kNothing;
  Index assigned_ = kNone;       ///< the target whose value is read
  std::uint32_t context_ = 0;    ///< use_flag of every use
  std::vector<bool> inlineIfs_;  ///< one-line Ifs of the line, true once their Else has come

  Activity activity_ = Activity::kActive;
  bool deadBlock_ = false;  ///< a Type or Enum is open in dead text
  std::vector<Group> groups_;
  std::vector<std::uint32_t> openDirectives_;  ///< offsets of "#If" without an "#End If"
  std::size_t headerGroups_ = 0;               ///< groups whose `header` is the open routine

  BlockStack blocks_;
  Index routine_ = kNone;           ///< the open one
  Index lineRoutine_ = kNone;       ///< the one that the line belongs to
  Index block_ = kNone;             ///< the open Type or Enum
  bool bodyBegun_ = false;          ///< a statement is after the header
  bool headerConditional_ = false;  ///< the header is in an "#If"

  BuiltinType defTypes_[26] = {};
  bool classAttributes_ = false;  ///< attributes that only classes have
};

}  // namespace quillmate::language
