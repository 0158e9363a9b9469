#pragma once

#include <string_view>

#include <quillmate/language/records.h>

/// The words that mean something at some place of the language. Few of them are reserved: `Name`, `Line` or `Property`
/// are names wherever their place does not make them more, and after "." every word is a name.
namespace quillmate::language {

// clang-format off
#define QUILLMATE_LANGUAGE_WORDS(X)                                                                                    \
  /* reserved */                                                                                                       \
  X(AddressOf) X(And) X(Any) X(As) X(Boolean) X(ByRef) X(Byte) X(ByVal) X(Call) X(Case) X(CDecl) X(Close) X(Const)     \
  X(Currency) X(Date) X(Decimal) X(Declare) X(DefBool) X(DefByte) X(DefCur) X(DefDate) X(DefDbl) X(DefDec) X(DefInt)   \
  X(DefLng) X(DefLngLng) X(DefLngPtr) X(DefObj) X(DefSng) X(DefStr) X(DefVar) X(Dim) X(Do) X(DoEvents) X(Double)       \
  X(Each) X(Else) X(ElseIf) X(Empty) X(End) X(EndIf) X(Enum) X(Eqv) X(Erase) X(Event) X(Exit) X(False) X(For)          \
  X(Friend) X(Function) X(Get) X(Global) X(GoSub) X(GoTo) X(If) X(Imp) X(Implements) X(In) X(Input) X(Integer) X(Is)   \
  X(Let) X(Like) X(Lock) X(Long) X(LongLong) X(LongPtr) X(Loop) X(LSet) X(Me) X(Mod) X(New) X(Next) X(Not) X(Nothing)  \
  X(Null) X(On) X(Open) X(Option) X(Optional) X(Or) X(ParamArray) X(Preserve) X(Print) X(Private) X(Public) X(Put)     \
  X(RaiseEvent) X(ReDim) X(Rem) X(Resume) X(Return) X(RSet) X(Seek) X(Select) X(Set) X(Shared) X(Single) X(Spc)        \
  X(Static) X(Stop) X(String) X(Sub) X(Tab) X(Then) X(To) X(True) X(Type) X(TypeOf) X(Unlock) X(Until) X(Variant)      \
  X(Wend) X(While) X(With) X(WithEvents) X(Write) X(Xor)                                                               \
  /* names that a place can make more */                                                                               \
  X(Access) X(Alias) X(Append) X(Attribute) X(Base) X(Begin) X(BeginProperty) X(Binary) X(Circle) X(Class)             \
  X(CodeBehindForm) X(Compare) X(Database) X(Debug) X(EndProperty) X(Error) X(Explicit) X(Go) X(Lib) X(Line) X(Load)   \
  X(Local) X(Mid) X(MidB) X(Module) X(Name) X(Object) X(Output) X(Property) X(PSet) X(PtrSafe) X(Random) X(Randomize)  \
  X(Read) X(Reset) X(Scale) X(Step) X(Text) X(Unload) X(Version) X(Width)                                              \
  /* marks of graphics statements */                                                                                   \
  X(B) X(BF)                                                                                                           \
  /* functions of conditions of #If */                                                                                 \
  X(Abs) X(CBool) X(CByte) X(CCur) X(CDate) X(CDbl) X(CInt) X(CLng) X(CLngLng) X(CLngPtr) X(CSng) X(CStr) X(CVar)      \
  X(Fix) X(Int) X(Len) X(LenB) X(Sgn)                                                                                  \
  /* attributes */                                                                                                     \
  X(VB_Base) X(VB_Control) X(VB_Creatable) X(VB_Customizable) X(VB_Description) X(VB_Exposed) X(VB_Ext_KEY)            \
  X(VB_GlobalNameSpace) X(VB_HelpID) X(VB_Invoke_Func) X(VB_Invoke_Property) X(VB_MemberFlags) X(VB_Name)              \
  X(VB_PredeclaredId) X(VB_ProcData) X(VB_TemplateDerived) X(VB_UserMemId) X(VB_VarDescription) X(VB_VarHelpID)        \
  X(VB_VarMemberFlags) X(VB_VarProcData) X(VB_VarUserMemId)
// clang-format on

/// Their ids, which are NameIds of every module.
enum Word : NameId {
#define QUILLMATE_WORD(spelling) kWord##spelling,
  QUILLMATE_LANGUAGE_WORDS(QUILLMATE_WORD)
#undef QUILLMATE_WORD
      kWordCount
};

/// As the editor writes it; `word` below kWordCount.
std::string_view WordSpelling(NameId word) noexcept;
/// In lower case.
std::string_view WordFolded(NameId word) noexcept;

}  // namespace quillmate::language
