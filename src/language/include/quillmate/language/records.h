#pragma once

#include <cstdint>

#include <quillmate/language/tokens.h>

/// The records that the front end writes: flat, small, in the order of the source, tied together by indices.
///
/// Every offset and every length counts bytes of the UTF-8 text that was parsed; lines are physical lines of that text,
/// 1-based; columns count characters (code points), 1-based. `Module::EditorLine` gives the line that the host's editor
/// would show. An index that says `kNone` points nowhere.
namespace quillmate::language {

// ------------------------------------------------------------------------------------------------------------ uses

/// What the code does with a name at one place. Names that a declaration introduces are no uses of it.
enum class Role : std::uint8_t {
  kValue,            ///< in an expression: read, or called as a function; left part of a chain
  kCall,             ///< the statement calls it: `Foo a`, `Call o.Foo(a)`
  kLetTarget,        ///< left of `=`; LSet and RSet; first argument of the statement Mid (then with use_flag::kReadToo)
  kSetTarget,        ///< left of `=` after Set
  kForVariable,      ///< For i =
  kForEachVariable,  ///< For Each v
  kNextVariable,     ///< Next i
  kInputTarget,      ///< Input #1, v; Line Input #1, v; Get #1, , v
  kReDim,            ///< declares an array when nothing else has the name: see DeclarationKind::kReDim
  kErase,
  kType,             ///< after As; every part of a qualified one
  kNew,              ///< New T, also in As New T (then with owner)
  kTypeOf,           ///< TypeOf x Is T
  kImplements,       ///< Implements I
  kAddressOf,        ///< AddressOf p; every part of a qualified one
  kRaiseEvent,       ///< RaiseEvent e
  kLabel,            ///< GoTo, GoSub, Resume, On ... : names and numbers
  kNamedArgument,    ///< the name before ":="
  kLoad,             ///< Load f
  kUnload,           ///< Unload f
  kConditional,      ///< in the condition of #If or the value of #Const: binds to conditional constants only
  kAttributeMember,  ///< the member that an Attribute line speaks of
  kDictionaryKey,    ///< after "!": the text of a key; a member only where the object has one of that name
};

/// How a name hangs on what is before it.
enum class Access : std::uint8_t {
  kSimple,   ///< nothing before it
  kMember,   ///< after "."
  kKey,      ///< after "!"
  kWith,     ///< ".x": member of the innermost With block
  kWithKey,  ///< "!x": key of it
};

/// Bits of NameUse::flags.
namespace use_flag {
inline constexpr std::uint32_t kInactive = 1;       ///< in a branch that conditional compilation leaves out
inline constexpr std::uint32_t kQualifier = 2;      ///< "." or "!" and a further name follow
inline constexpr std::uint32_t kParenthesised = 4;  ///< "(" follows: `argumentCount` of it (0 for "()")
inline constexpr std::uint32_t kMoreArguments = 8;  ///< a second list follows: `f(1)(2)`, `x.y(1) 2`
inline constexpr std::uint32_t kBareArgument = 16;  ///< last name of a chain that is an argument of `owner` as a whole:
                                                    ///< passed ByRef unless the parameter says otherwise
inline constexpr std::uint32_t kByValArgument = 32;  ///< the word ByVal is before the argument
inline constexpr std::uint32_t kOfResult = 64;       ///< the argument goes to what `owner` returns: second list of it
inline constexpr std::uint32_t kConstant = 128;      ///< constant expression: bounds, Const, Enum and default values,
                                                 ///< length of a string; binds from the module on (in a local Const or
                                                 ///< Dim from the routine's constants on)
inline constexpr std::uint32_t kBracketed = 256;       ///< written in brackets
inline constexpr std::uint32_t kSuffixed = 512;        ///< written with a type suffix
inline constexpr std::uint32_t kWithObject = 1024;     ///< last name of the expression of a With statement
inline constexpr std::uint32_t kForEachSource = 2048;  ///< last name of the expression after In of For Each
inline constexpr std::uint32_t kReadToo = 4096;        ///< a target that is also read
inline constexpr std::uint32_t kPreserve = 8192;       ///< ReDim Preserve
inline constexpr std::uint32_t kCallWord = 16384;      ///< after Call
inline constexpr std::uint32_t kWithEvents = 32768;    ///< type of a WithEvents variable
inline constexpr std::uint32_t kCreates = 65536;       ///< New T, As New T: an object is made
inline constexpr std::uint32_t kOutputList = 131072;   ///< called with an output list (Print and the graphics methods):
                                                       ///< its items are read
inline constexpr std::uint32_t kObjectValue = 262144;  ///< the whole right side of a Set assignment
inline constexpr std::uint32_t kNumber = 524288;       ///< a label that is a number; `name` is that of its value
inline constexpr std::uint32_t kWholeValue = 1048576;  ///< last name of a chain that is the whole right side of `=`
inline constexpr std::uint32_t kNoWith = 2097152;      ///< kWith, kWithKey: no With is open
inline constexpr std::uint32_t kCopied = 4194304;      ///< last names of both sides of LSet: records byte by byte
}  // namespace use_flag

/// One name at one place. Uses come in the order of the source.
struct NameUse {
  std::uint32_t offset;  ///< of the first character; brackets belong to the place
  std::uint32_t line;
  std::uint32_t column;
  NameId name;
  Index previous;  ///< the use that it hangs on. kMember, kKey: the name left of it, kNone when that is no name
                   ///< (`(a & b).x`). kWith, kWithKey: last name of the With statement's expression, kNone when that
                   ///< ends in none or no With is open. A second list does not count: `a(1)(2).b` hangs on `a`, which
                   ///< has use_flag::kMoreArguments.
  Index owner;     ///< kBareArgument, kNamedArgument: the use that is called with it; of a value after a name
                ///< (`p:=x`) the use of that name. kType, kNew, kWithEvents: the declaration whose As clause it stands
                ///< in. Else kNone.
  Index routine;                ///< the routine around it, its header included
  std::uint16_t length;         ///< of the whole token, suffix and brackets included; 65535 for more
  std::uint16_t position;       ///< kBareArgument: 1-based place among the arguments, 0 for the value after a name
  std::uint16_t argumentCount;  ///< arguments handed to it, omitted ones between commas included
  Role role;
  Access access;
  std::uint32_t flags;  ///< use_flag
};

/// A name in dead code, whatever it may mean there. What such code declares is left out.
struct DeadName {
  NameId name;
  std::uint32_t line;
  Index routine;  ///< around it, the dead ones included; kNone outside of all
};

/// A string literal that is not empty.
struct StringUse {
  std::uint32_t offset;  ///< of the opening quote
  std::uint32_t line;
  std::uint32_t column;
  std::uint32_t length;  ///< with the quotes
  Index owner;           ///< the use whose argument it is in, or that it is assigned to; else kNone
  Index routine;
  std::uint16_t position;  ///< place of that argument, 1-based; 0 after a name or when it is assigned
  bool whole;              ///< the literal alone is the argument or the assigned value
  bool assigned;           ///< `owner` is the target of an assignment
  bool inactive;
};

// ---------------------------------------------------------------------------------------------------- declarations

enum class DeclarationKind : std::uint8_t {
  kSub,
  kFunction,
  kPropertyGet,
  kPropertyLet,
  kPropertySet,
  kDeclareSub,
  kDeclareFunction,
  kEvent,
  kVariable,
  kConstant,
  kParameter,
  kType,
  kTypeMember,
  kEnum,
  kEnumMember,
  kLabel,
  kConditionalConstant,  ///< #Const
  kReDim,                ///< a name that ReDim gives bounds: a declaration only if the use at the same offset binds to
                         ///< nothing else
};

enum class Visibility : std::uint8_t { kPublic, kPrivate, kFriend, kGlobal, kLocal };

/// Types that the language itself has; kNamed for all others.
enum class BuiltinType : std::uint8_t {
  kUndeclared,  ///< none written, no suffix, no DefType: Variant
  kBoolean,
  kByte,
  kCurrency,
  kDate,
  kDecimal,
  kDouble,
  kInteger,
  kLong,
  kLongLong,
  kLongPtr,
  kObject,
  kSingle,
  kString,
  kVariant,
  kAny,
  kNamed,
};

/// Bits of Declaration::flags.
namespace declaration_flag {
inline constexpr std::uint32_t kInactive = 1;
inline constexpr std::uint32_t kArray = 2;  ///< "(...)" after the name, or As T() after a function
inline constexpr std::uint32_t kAsNew = 4;
inline constexpr std::uint32_t kWithEvents = 8;
inline constexpr std::uint32_t kOptional = 16;
inline constexpr std::uint32_t kByVal = 32;
inline constexpr std::uint32_t kByRef = 64;  ///< written out
inline constexpr std::uint32_t kParamArray = 128;
inline constexpr std::uint32_t kDefault = 256;  ///< "= value" follows: optional parameters, constants, enum members
inline constexpr std::uint32_t kStatic = 512;   ///< Static variable or routine
inline constexpr std::uint32_t kFixedLength = 1024;   ///< String * n
inline constexpr std::uint32_t kSuffixed = 2048;      ///< the type is that of the name's suffix
inline constexpr std::uint32_t kFromDefType = 4096;   ///< the type is that of a DefInt, DefStr ... line
inline constexpr std::uint32_t kScopeWritten = 8192;  ///< a word for the visibility is before it
inline constexpr std::uint32_t kPtrSafe = 16384;
inline constexpr std::uint32_t kBracketed = 32768;
inline constexpr std::uint32_t kVariant = 65536;          ///< a header of a routine that is not the one that counts
inline constexpr std::uint32_t kNumber = 131072;          ///< a label that is a number; `name` is that of its value
inline constexpr std::uint32_t kBounds = 262144;          ///< an array with bounds
inline constexpr std::uint32_t kDead = 524288;            ///< a routine in a dead branch
inline constexpr std::uint32_t kParameterList = 1048576;  ///< "(" follows the name of a routine, Declare or event
}  // namespace declaration_flag

struct Declaration {
  std::uint32_t offset;  ///< of the name
  std::uint32_t line;
  std::uint32_t column;
  NameId name;
  std::uint16_t length;   ///< of the name as written, suffix and brackets included; 65535 for more
  std::uint16_t ordinal;  ///< parameters and members: 1-based place in their list
  DeclarationKind kind;
  Visibility visibility;
  BuiltinType type;
  std::uint32_t flags;       ///< declaration_flag
  Index parent;              ///< the declaration that it belongs to: routine, Declare, event, type, enum
  Index routine;             ///< routines: its own; what is in a routine: that one
  Index typeUse;             ///< kNamed: last name of the As clause; also Object, LongPtr and LongLong, which an own
                             ///< type may be called
  std::uint32_t typeOffset;  ///< the type as written, `String * 8` and `Long()` as a whole, New left out;
  std::uint32_t typeLength;  ///< 0 when none is written
  std::uint32_t firstLine;   ///< of the statement; routines, types and enums: of the whole
  std::uint32_t lastLine;
  Index firstChild;  ///< parameters and members follow one another; locals and labels are found by `routine`
  std::uint32_t childCount;
};

// --------------------------------------------------------------------------------------------------------- routines

/// Inactive code counts for the lines only.
struct RoutineMetrics {
  std::uint32_t codeLines, commentLines, blankLines, directiveLines, trailingComments;
  std::uint32_t inactiveLines;  ///< in inactive or dead branches
  std::uint32_t statements;  ///< executable units; no labels, Dim, Const, Static, End X, Else, Case, Next, Loop, Wend
  std::uint32_t complexity;  ///< 1 + If + ElseIf + Case (not Else) + For + While + Do/Loop with condition + targets of
                             ///< On x GoTo
  std::uint32_t nesting;     ///< deepest stack of If, Select, For, Do, While and With; a one-line If counts 1
};

/// A routine: from its header's first line to its end line. Headers doubled under #If are one routine.
struct Routine {
  Index declaration;  ///< of the active header, else of the first one
  std::uint32_t firstLine;
  std::uint32_t lastLine;          ///< of the End, else the last line before what closed it
  std::uint32_t headerLastLine;    ///< last line of the last of its headers
  std::uint32_t firstOffset;       ///< of the header's first token
  std::uint32_t endOffset;         ///< after its last token (End Sub), comments left out
  std::uint32_t descriptionFirst;  ///< comment lines right above the header: first and last, 0 if none
  std::uint32_t descriptionLast;
  Index firstVariant;  ///< into Module::variants; one at least
  std::uint32_t variantCount;
  Index firstUse, endUse;                  ///< uses in it, headers included
  Index firstDeclaration, endDeclaration;  ///< declarations in it, its own headers and parameters included
  DeclarationKind kind;
  DeclarationKind endKind;  ///< kSub, kFunction or kPropertyGet: the word after End, which need not fit
  bool hasEnd;              ///< false: the next header or the end of the module closed it
  bool oneLine;
  Activity activity;
  RoutineMetrics metrics;
};

struct HeaderVariant {
  Index routine;
  Index declaration;
  std::uint32_t firstLine, lastLine;
  bool active;
};

// -------------------------------------------------------------------------------------------------------- statements

enum class StatementKind : std::uint8_t {
  kAssign,
  kCall,
  kIf,
  kInlineIf,
  kElseIf,
  kElse,
  kEndIf,
  kSelect,
  kCase,
  kCaseElse,
  kEndSelect,
  kFor,
  kForEach,
  kNext,
  kDo,
  kLoop,
  kWhile,
  kWend,
  kWith,
  kEndWith,
  kGoTo,
  kGoSub,
  kReturn,
  kOnError,
  kOnGoTo,
  kResume,
  kExit,
  kEnd,
  kStop,
  kRaiseEvent,
  kErrorStatement,
  kReDim,
  kErase,
  kFile,
  kGraphics,
  kDeclaration,
  kOption,
  kDefType,
  kImplements,
  kHeader,
  kRoutineEnd,
  kBlockMember,
  kAttribute,
  kOther,
};

/// One statement; kept on request only.
struct Statement {
  std::uint32_t offset;
  std::uint32_t line;
  std::uint32_t length;  ///< to its last token's end
  Index firstToken;      ///< into Module::tokens when they are kept, else kNone
  Index firstUse;
  Index routine;
  StatementKind kind;
  Activity activity;
  std::uint16_t depth;  ///< blocks around it
};

// ------------------------------------------------------------------------------------------------ facts of the file

/// A stretch of the text.
struct Span {
  std::uint32_t offset = 0, length = 0;
};

/// An Attribute line.
struct Attribute {
  std::uint32_t line;
  NameId member;      ///< kNone: of the module itself
  Index declaration;  ///< of that member; routines: of the header
  NameId name;        ///< VB_Name, VB_UserMemId ...; for VB_ProcData.VB_Invoke_Func the last part
  Span value;         ///< as written, quotes included, up to the line's end or the comma
};

/// A control, menu or form that the file's header describes (or an Attribute VB_Control line).
struct Control {
  NameId name;
  Span nameText;
  Span type;           ///< "VB.TextBox", "CommandButton", a GUID
  Index parent;        ///< the control around it; the form itself is the first control and has kNone
  std::int32_t index;  ///< "Index" of a control array, -1 if none
  std::uint32_t line;
  bool menu;
  Span eventPrefix;  ///< "EventProcPrefix" of an Access control: what its handlers' names begin with, if it is not its
                     ///< own
};

/// A property of a form or control that names what happens on an event ("OnClick", "AfterUpdate" ...).
struct EventProperty {
  Index control;
  Span property;
  Span value;  ///< without its quotes: "[Event Procedure]", "=F()", a macro's name
  std::uint32_t line;
};

enum class ProblemKind : std::uint8_t {
  kMissingEnd,     ///< of a routine
  kStrayEnd,       ///< End Sub and its kin without a routine
  kUnclosedBlock,  ///< If, For ... open at the routine's end
  kStrayBlockEnd,
  kUnclosedDirective,
  kStrayDirective,
  kUnreadable,  ///< a line that is no statement of the language
};

struct Problem {
  std::uint32_t line;
  ProblemKind kind;
};

}  // namespace quillmate::language
