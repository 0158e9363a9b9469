#include <algorithm>
#include <array>

#include <quillmate/checks/checks.h>
#include <quillmate/text/operations.h>

namespace quillmate::checks {
namespace {

using enum CheckId;
using enum Severity;
using enum Group;

constexpr std::array<Check, kCheckCount> kChecks{{
    {kPtrSafe, "ptrsafe-fehlt", k64Bit, kError, true, "Declare ohne PtrSafe",
     "Schreiben Sie „Declare PtrSafe“ und machen Sie Zeiger und Handles zu LongPtr."},
    {kApiSignature, "api-signatur", k64Bit, kError, true, "Bekannte Windows-Funktion mit falschen Typen",
     "Nehmen Sie LongPtr für Zeiger und Handles."},
    {kPointerAsLong, "zeiger-als-long", k64Bit, kWarning, true, "Zeiger oder Handle als Long deklariert",
     "Prüfen Sie, ob Windows hier einen Zeiger oder ein Handle erwartet; dann muss es LongPtr sein."},
    {kCallbackAsLong, "rueckruf-als-long", k64Bit, kError, true, "Rückruf (AddressOf) mit Long statt LongPtr",
     "Deklarieren Sie diese Parameter als LongPtr."},
    {kPointerInLong, "zeiger-in-long", k64Bit, kError, true, "Zeiger in einer Long-Variablen",
     "Deklarieren Sie die Variable als LongPtr."},
    {kLibrary32, "nur-32-bit", k64Bit, kError, true, "Bibliothek, die es nur für 32 Bit gibt",
     "Ersetzen Sie die Bibliothek."},

    {kOptionExplicit, "option-explicit-fehlt", kNames, kWarning, true, "Option Explicit fehlt",
     "Schreiben Sie „Option Explicit“ in die erste Zeile des Moduls und deklarieren Sie, was der Editor dann meldet."},
    {kImplicitVariable, "variable-nicht-deklariert", kNames, kWarning, true, "Variable ohne Deklaration",
     "Deklarieren Sie die Variable mit ihrem Typ, oder berichtigen Sie den Namen."},
    {kListedVariant, "typ-nur-beim-letzten", kNames, kWarning, true, "Typ gilt nur für den letzten Namen der Liste",
     "Geben Sie jedem Namen der Liste seinen Typ: „Dim a As Long, b As Long“."},
    {kImplicitVariant, "typ-fehlt", kNames, kNote, false, "Deklaration ohne Typ",
     "Nennen Sie den Typ, auch wenn es Variant sein soll."},
    {kImplicitByRef, "byref-stillschweigend", kNames, kNote, false, "Parameter ohne ByVal und ByRef",
     "Schreiben Sie ByVal, wenn die Routine den Wert nur liest, sonst ByRef."},
    {kHiddenName, "name-verdeckt", kNames, kWarning, true, "Lokaler Name verdeckt einen des Moduls",
     "Benennen Sie die lokale Variable um."},
    {kAmbiguousCall, "aufruf-mehrdeutig", kNames, kWarning, true, "Aufruf mit mehrdeutigem Namen",
     "Nennen Sie das Modul davor: „Modul.Name“. Gehören die Module zu verschiedenen Projekten, ist nichts zu tun."},
    {kUnusedRoutine, "routine-unbenutzt", kNames, kNote, true, "Routine, die nichts aufruft",
     "Prüfen Sie, ob die Routine noch gebraucht wird, und löschen Sie sie sonst."},
    {kUncalledMacro, "makro-ohne-aufruf", kNames, kNote, false, "Makro, das kein Code aufruft",
     "Fragen Sie, wer es von Hand startet; startet es niemand, löschen Sie es."},
    {kUnusedVariable, "variable-unbenutzt", kNames, kNote, true, "Variable, die niemand verwendet",
     "Löschen Sie die Deklaration."},
    {kUnreadVariable, "variable-nie-gelesen", kNames, kNote, true, "Variable, die nur geschrieben wird",
     "Löschen Sie die Variable, oder verwenden Sie ihren Wert."},
    {kUnusedConstant, "konstante-unbenutzt", kNames, kNote, true, "Konstante, die niemand liest",
     "Löschen Sie die Konstante, wenn sie nicht als Nachschlagewerk dient."},
    {kUnusedEnumMember, "enum-wert-unbenutzt", kNames, kNote, false, "Enum-Wert, den niemand liest",
     "Löschen Sie den Wert, wenn die Aufzählung nicht vollständig sein muss."},
    {kUnusedParameter, "parameter-unbenutzt", kNames, kNote, true, "Parameter, den die Routine nicht verwendet",
     "Löschen Sie den Parameter, auch bei den Aufrufern."},
    {kUnusedType, "typ-unbenutzt", kNames, kNote, true, "Type oder Enum ohne Verwendung", "Löschen Sie den Typ."},
    {kUnusedDeclare, "declare-unbenutzt", kNames, kNote, true, "Declare, das niemand aufruft",
     "Löschen Sie das Declare."},
    {kUnusedLabel, "marke-unbenutzt", kNames, kNote, true, "Sprungmarke, die niemand anspringt",
     "Löschen Sie die Marke; prüfen Sie, ob ein „On Error GoTo“ fehlt."},

    {kResumeNext, "resume-next-bleibt-an", kFlow, kWarning, true, "On Error Resume Next wird nie abgeschaltet",
     "Schalten Sie mit „On Error GoTo 0“ hinter der Anweisung ab, die scheitern darf, und fragen Sie Err.Number ab."},
    {kErrorLabel, "exit-vor-fehlermarke-fehlt", kFlow, kError, true, "Kein Exit vor der Fehlerbehandlung",
     "Schreiben Sie „Exit Sub“ oder „Exit Function“ vor die Marke."},
    {kUnreachable, "unerreichbar", kFlow, kWarning, true, "Anweisung, die nie ausgeführt wird",
     "Löschen Sie die Anweisung, oder berichtigen Sie den Ausgang davor."},
    {kAfterEnd, "code-nach-end", kFlow, kWarning, true, "Anweisung hinter End",
     "Löschen Sie sie, oder ersetzen Sie „End“ durch Exit."},
    {kEndStatement, "end-anweisung", kFlow, kWarning, true, "End bricht das ganze Programm ab",
     "Verlassen Sie die Routine mit Exit, und lassen Sie die Aufrufer aufräumen."},
    {kUnreadAssignment, "zuweisung-ungelesen", kFlow, kNote, true, "Zugewiesener Wert wird nie gelesen",
     "Löschen Sie die Zuweisung, oder prüfen Sie, ob ein anderer Name gemeint war."},
    {kLoopVariable, "zaehlvariable-geaendert", kFlow, kWarning, true, "For-Variable wird in der Schleife geändert",
     "Nehmen Sie Do While für Schleifen, die ihren Zähler selbst führen, oder eine zweite Variable."},
    {kMissingResult, "ergebnis-fehlt", kFlow, kWarning, true, "Function setzt ihr Ergebnis nie",
     "Weisen Sie dem Namen der Funktion das Ergebnis zu, oder machen Sie eine Sub daraus."},
    {kMissingCaseElse, "case-else-fehlt", kFlow, kNote, false, "Select Case ohne Case Else",
     "Ergänzen Sie Case Else, und sei es mit einer Fehlermeldung."},
    {kGoToIntoLoop, "sprung-in-schleife", kFlow, kError, true, "GoTo springt in eine Schleife",
     "Springen Sie vor die Schleife, oder ersetzen Sie den Sprung durch If."},

    {kSelection, "select-kette", kHost, kNote, true, "Select, dann Selection",
     "Sprechen Sie den Bereich unmittelbar an: „Range(\"A1\").Font.Bold = True“."},
    {kActiveSheet, "blatt-stillschweigend", kHost, kNote, true, "Range oder Cells ohne Blatt",
     "Nennen Sie das Blatt davor: „Worksheets(\"Daten\").Range(...)“; ist das aktive gemeint: "
     "„ActiveSheet.Range(...)“."},
    {kForeignCells, "cells-vom-falschen-blatt", kHost, kError, true, "Cells ohne Blatt im Range eines anderen",
     "Schreiben Sie dasselbe Blatt auch vor Cells, etwa mit With und „.Cells“."},
    {kIntegerRow, "zeile-als-integer", kHost, kWarning, true, "Zeilennummer in einer Integer-Variablen",
     "Deklarieren Sie die Variable als Long."},
    {kMissingSet, "set-fehlt", kHost, kError, true, "Objekt ohne Set zugewiesen", "Schreiben Sie Set davor."},
    {kSwitchOff, "schalter-bleibt-aus", kHost, kWarning, true,
     "Ereignisse, Berechnung oder Warnungen bleiben abgeschaltet",
     "Schalten Sie auf jedem Weg aus der Routine wieder ein, auch in der Fehlerbehandlung."},
    {kScreenOff, "anzeige-bleibt-aus", kHost, kNote, true, "Anzeige bleibt abgeschaltet",
     "Schalten Sie ScreenUpdating auf jedem Weg wieder ein; Excel tut es erst, wenn das ganze Makro endet."},

    {kAutoRun, "start-von-selbst", kOutside, kNote, true, "Routine, die von selbst läuft",
     "Prüfen Sie, was sie beim Öffnen oder Schließen tut."},
    {kProgram, "aussen-programm", kOutside, kNote, true, "Startet ein Programm",
     "Prüfen Sie, welches Programm mit welchen Rechten läuft."},
    {kObject, "aussen-objekt", kOutside, kNote, true, "Holt ein Objekt von außen",
     "Prüfen Sie, ob die Komponente auf jedem Rechner da ist."},
    {kKeys, "aussen-tasten", kOutside, kNote, true, "Schickt Tasten an andere Fenster",
     "Ersetzen Sie SendKeys durch eine Methode; welches Fenster die Tasten bekommt, ist Zufall."},
    {kRegistry, "aussen-registrierung", kOutside, kNote, true, "Liest oder schreibt die Registrierung",
     "Prüfen Sie, welche Schlüssel es sind."},
    {kFile, "aussen-datei", kOutside, kNote, true, "Liest, schreibt oder löscht Dateien",
     "Prüfen Sie, welche Dateien es sind und was geschieht, wenn sie fehlen."},
    {kDatabase, "aussen-datenbank", kOutside, kNote, true, "Greift auf eine Datenbank zu",
     "Prüfen Sie Verbindung, Rechte und, bei zusammengesetztem SQL, woher die Teile kommen."},
    {kNetwork, "aussen-netz", kOutside, kNote, true, "Greift auf das Netz zu",
     "Prüfen Sie die Adresse und was gesendet wird."},
    {kMail, "aussen-mail", kOutside, kNote, true, "Verschickt E-Mail", "Prüfen Sie Empfänger und Inhalt."},
    {kOfficeProgram, "aussen-office", kOutside, kNote, true, "Steuert ein anderes Office-Programm",
     "Prüfen Sie, ob es überall installiert ist und am Ende geschlossen wird."},
    {kFixedPath, "pfad-fest", kOutside, kNote, true, "Fester Pfad im Code",
     "Nehmen Sie den Pfad der Datei (ThisWorkbook.Path) oder eine Einstellung."},
    {kExternalLink, "verknuepfung-aussen", kOutside, kNote, true, "Verknüpfung zu anderen Dateien",
     "Prüfen Sie, ob es die Datei noch gibt."},
    {kCodeAccess, "aussen-makrocode", kOutside, kNote, true, "Greift auf Makrocode zu",
     "Prüfen Sie, wozu: Das braucht eine Freigabe, die Schadcode auch nützt."},
    {kDeclare, "aussen-declare", kOutside, kNote, true, "Ruft eine Bibliothek von Windows auf",
     "Prüfen Sie, ob es dafür eine Funktion des Office-Programms gibt."},

    {kLostHandler, "ereignis-ohne-steuerelement", kOutside, kNote, true,
     "Ereignis eines Steuerelements, das es nicht gibt",
     "Löschen Sie die Routine, oder geben Sie ihr den Namen des Steuerelements, das gemeint ist."},
    {kLostCallback, "rueckruf-ohne-menueband", kOutside, kNote, true, "Rückruf, den kein Menüband nennt",
     "Löschen Sie die Routine, oder tragen Sie sie im Menüband ein."},
    {kLostBinding, "aufruf-ohne-routine", kOutside, kError, true, "Schaltfläche oder Menüband ruft, was es nicht gibt",
     "Weisen Sie der Stelle eine Routine zu, die es gibt, oder nehmen Sie die Zuweisung weg."},

    {kDuplicate, "doppelt", kDuplicates, kNote, true, "Routine, die es schon gibt",
     "Behalten Sie eine davon, öffentlich in einem Standardmodul, und rufen Sie sie auf."},
    {kNearDuplicate, "fast-doppelt", kDuplicates, kNote, true, "Routine, die einer anderen gleicht",
     "Prüfen Sie, ob sich beide mit einem Parameter mehr zusammenlegen lassen."},
}};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < kCheckCount; ++i) {
    if (static_cast<std::size_t>(kChecks[i].number) != i) return false;
  }
  return true;
}
static_assert(IsInOrder());

}  // namespace

std::span<const Check> AllChecks() { return kChecks; }
const Check& InfoOf(CheckId check) { return kChecks[static_cast<std::size_t>(check)]; }

std::optional<CheckId> FindCheck(std::string_view id) {
  const auto* const found =
      std::ranges::find_if(kChecks, [=](const Check& check) { return text::EqualsIgnoreCase(check.id, id); });
  return found == kChecks.end() ? std::nullopt : std::optional(found->number);
}

std::string_view Word(Severity severity) noexcept {
  constexpr std::string_view kWords[] = {"fehler", "warnung", "hinweis"};
  return kWords[static_cast<std::size_t>(severity)];
}

std::string_view Word(Group group) noexcept {
  constexpr std::string_view kWords[kGroupCount] = {"64 Bit",           "Namen",         "Ablauf", "Office-Programm",
                                                    "Berührungspunkte", "Doppelter Code"};
  return kWords[static_cast<std::size_t>(group)];
}

Selection::Selection() {
  for (const Check& check : kChecks) {
    if (check.byDefault) Add(check.number);
  }
}

}  // namespace quillmate::checks
