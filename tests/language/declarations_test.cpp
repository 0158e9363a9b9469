#include <string>

#include <gtest/gtest.h>

#include "dump.h"

namespace quillmate::language {
namespace {

/// Declarations and the names that they use.
TEST(Declarations, AndTheirUses) {
  const struct {
    const char* code;
    const char* declarations;
    const char* uses;
  } kCases[] = {
      {"#If Mac Then\nDim a(K)\n#ElseIf Win64 Then\nSub A(Type As Long, _\nx): y\nEnd Sub\n#End If",
       "variable a@2,array,inactive,private; sub A@4,public; parameter Type@4:Long<A; parameter x@5<A;",
       "conditional Mac@1; K@2,inactive,constant; conditional Win64@3; call y@5;"},
      {"DefInt A-C, X\nDefStr S\nDim a, b As Long, s1, z$, [c x]\nPrivate Const K& = 3, L As String = \"x\" & Z, M = K "
       "+ 1\nGlobal Const G = 1\nPublic arr(1 To K, 5) As New C, v() As Lib.C.D, f As String * K\nDim Shared "
       "q\nPrivate WithEvents e As CDb, w\nDeclare Function F1& CDecl Lib \"k\" Alias \"x\" (ByVal p&, Optional q As "
       "Any = 0, r() As T) As Long\nPublic Declare PtrSafe Sub F2 Lib \"k\"\nPublic Event Ev(ByVal a As Long, "
       "b())\nImplements I.J\nOption Explicit\nOption Base 1: Option Compare Text: Option Private Module\nFunction "
       "Fx(a, Optional ByVal b As Long = K, ByVal Optional c$, ParamArray d()) As Long()\nStatic n As Long, o(K) As "
       "T\nConst K = 5, J = K\nDim c1 As New Lib.X, [d] As [Long], Name, Error As String\nPublic wrong\nIf x Then Dim "
       "y As Long: Dim z%\nEnd Function\nProperty Get P(ByVal i As Long) As Object\nAttribute P.VB_UserMemId = "
       "0\nAttribute P.VB_ProcData.VB_Invoke_Func = \" \\n14\"\nEnd Property\nPublic u As Object, u2 As Any, u3 As "
       "[Foo]\nAttribute u.VB_VarHelpID = -1",
       "variable a@3:Integer,deftype,private; variable b@3:Long,private; variable s1@3:String,deftype,private; "
       "variable z$@3:String,private; variable [c x]@3:Integer,deftype,private; constant K&@4:Long,private; constant "
       "L@4:String,private; constant M@4,private; constant G@5,global; variable arr@6:C,array,new,public; variable "
       "v@6:Lib.C.D,array,public; variable f@6:String * K,fixed,public; variable q@7,private; variable "
       "e@8:CDb,events,private; variable w@8,private; declare-function F1&@9:Long,public; parameter "
       "p&@9:Long,byval<F1&; parameter q@9:Any,optional<F1&; parameter r@9:T,array<F1&; declare-sub "
       "F2@10,ptrsafe,public; event Ev@11,public; parameter a@11:Long,byval<Ev; parameter "
       "b@11:Integer,array,deftype<Ev; function Fx@15:Long(),array,public; parameter a@15:Integer,deftype<Fx; "
       "parameter b@15:Long,optional,byval<Fx; parameter c$@15:String,optional,byval<Fx; parameter d@15,array,rest<Fx; "
       "variable n@16:Long,static<Fx; variable o@16:T,array,static<Fx; constant K@17<Fx; constant J@17<Fx; variable "
       "c1@18:Lib.X,new<Fx; variable [d]@18:[Long]<Fx; variable Name@18<Fx; variable Error@18:String<Fx; variable "
       "wrong@19,public; variable y@20:Long<Fx; variable z%@20:Integer<Fx; get P@22:Object,public; parameter "
       "i@22:Long,byval<P; variable u@26:Object,public; variable u2@26:Any,public; variable u3@26:[Foo],public;",
       "Z@4,constant; K@4,constant; K@6,constant; new C@6; type Lib@6; type Lib.C@6; type Lib.C.D@6; K@6,constant; "
       "type CDb@8,events; type T@9; implements I@12; implements I.J@12; K@15,constant; K@16,constant; type T@16; "
       "K@17,constant; new Lib@18; new Lib.X@18; x@20; type Object@22; attribute P@23; attribute P@24; type Object@26; "
       "type [Foo]@26; attribute u@27;"},
      {"#Const D = 1\nConst D = 2\n#If D And (Win64 Or Not Mac) Then\nSub A(Optional k = D): Const D = 5: Dim v(D): "
       "End Sub\n#ElseIf VBA7 = True Then\nSub B(): x = y: End Sub\n#Else\nDim g As T\n#End If\n#If Q = 0 Then\nDim "
       "ok\n#EndIf\n# If \"abc\" Like \"a*\" Then\nDim ok2\n#  Else\n#Const Z = 3\n# End If\n#If Z = 3 And Int(2.5) = "
       "2 Then\nDim ok3\n#End If\n#If D Then\nPrivate Declare PtrSafe Sub S Lib \"a\" (x As LongPtr)\n#Else\nPrivate "
       "Declare Sub S Lib \"a\" (x As Long)\n#End If\n#End If\n#If X",
       "conditional D@1,private; constant D@2,private; sub A@4,public; parameter k@4,optional<A; constant D@4<A; "
       "variable v@4,array<A; sub B@6,inactive,public; variable g@8:T,inactive,private; variable ok@11,private; "
       "variable ok2@14,private; conditional Z@16,inactive,private; variable ok3@19,private; declare-sub "
       "S@22,ptrsafe,private; parameter x@22:LongPtr<S; declare-sub S@24,inactive,private; parameter "
       "x@24:Long,inactive<S;",
       "conditional D@3; conditional Win64@3; conditional Mac@3; D@4,constant; D@4,constant; conditional VBA7@5; let "
       "x@6,inactive; y@6,inactive; type T@8,inactive; conditional Q@10; conditional Z@18; conditional D@21; "
       "type LongPtr@22; conditional X@27;"},
      {"Sub A()\n#If VBA7 Then\nFor i = 1 To 2\nWith a\n#Else\nFor j = 1 To 3\nWith b\n#End If\n.x = 1\nEnd "
       "With\nNext\n#If False Then\ngarbage \"\nFor Each\n#End If\nEnd Sub",
       "sub A@1,public;", "conditional VBA7@2; for i@3; a@4,with; for j@6,inactive; b@7,inactive,with; let a~.x@9;"},
      {"Enum E\nA = 1\n#If Mac Then\nB\n#Else\nC\n#End If\n[D]\nEnd Enum\n#If False Then\nPrivate Const A = 0, C = "
       "1\n#End If",
       "enum E@1,public; enum-member A@2<E; enum-member B@4,inactive<E; enum-member C@6<E; enum-member [D]@8<E;",
       "conditional Mac@3;"},
      {"Public Enum Farbe: Rot: Grün = Rot + 1: End Enum\nType TP: X As Long: End Type\nPublic Type P1\n a As Long ' "
       "x\n b() As String, c As Integer\nEnd Type",
       "enum Farbe@1,public; enum-member Rot@1<Farbe; enum-member Grün@1<Farbe; type TP@2,public; type-member "
       "X@2:Long<TP; type P1@3,public; type-member a@4:Long<P1; type-member b@5:String,array<P1;",
       "Rot@1,constant; c@5;"},
  };
  for (const auto& [code, declarations, uses] : kCases) {
    const Module module = ParseModule(code);
    EXPECT_EQ(Declarations(module), declarations) << code;
    EXPECT_EQ(Uses(module), uses) << code;
  }
}

}  // namespace
}  // namespace quillmate::language
