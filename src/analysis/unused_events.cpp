#include <algorithm>
#include <array>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/operations.h>

#include "unused_events_p.h"

namespace quillmate::analysis {
namespace {

enum Kinds : unsigned { kForms = 1U, kStandards = 2U, kClasses = 4U, kDocuments = 8U, kOthers = 16U };

unsigned KindBit(int moduleKind) noexcept {
  switch (moduleKind) {
    case codedb::kForm:
      return kForms;
    case codedb::kStandard:
      return kStandards;
    case codedb::kClass:
      return kClasses;
    case codedb::kDocument:
      return kDocuments;
    default:
      return kOthers;
  }
}

struct EventSource {
  /// What is before the last "_" of a handler's name; empty for any control.
  std::string_view object;
  unsigned kinds;
  /// Names between blanks.
  std::string_view events;
};

constexpr std::array kEventSources{
    EventSource{"Workbook", kDocuments,
                " Activate AddinInstall AddinUninstall AfterSave AfterXmlExport AfterXmlImport BeforeClose BeforePrint"
                " BeforeSave BeforeXmlExport BeforeXmlImport Deactivate ModelChange NewChart NewSheet Open"
                " PivotTableCloseConnection PivotTableOpenConnection RowsetComplete SheetActivate SheetBeforeDelete"
                " SheetBeforeDoubleClick SheetBeforeRightClick SheetCalculate SheetChange SheetDeactivate"
                " SheetFollowHyperlink SheetLensGalleryRenderComplete SheetPivotTableAfterValueChange"
                " SheetPivotTableBeforeAllocateChanges SheetPivotTableBeforeCommitChanges"
                " SheetPivotTableBeforeDiscardChanges SheetPivotTableChangeSync SheetPivotTableUpdate"
                " SheetSelectionChange SheetTableUpdate Sync WindowActivate WindowDeactivate WindowResize "},
    EventSource{"Worksheet", kDocuments,
                " Activate BeforeDelete BeforeDoubleClick BeforeRightClick Calculate Change Deactivate FollowHyperlink"
                " LensGalleryRenderComplete PivotTableAfterValueChange PivotTableBeforeAllocateChanges"
                " PivotTableBeforeCommitChanges PivotTableBeforeDiscardChanges PivotTableChangeSync PivotTableUpdate"
                " SelectionChange TableUpdate "},
    EventSource{"Chart", kDocuments,
                " Activate BeforeDoubleClick BeforeRightClick Calculate Deactivate DragOver DragPlot MouseDown"
                " MouseMove MouseUp Resize Select SeriesChange "},
    EventSource{"Document", kDocuments,
                " BuildingBlockInsert Close ContentControlAfterAdd ContentControlBeforeContentUpdate"
                " ContentControlBeforeDelete ContentControlBeforeStoreUpdate ContentControlOnEnter"
                " ContentControlOnExit New Open Sync XMLAfterInsert XMLBeforeDelete "},
    EventSource{
        "Application", kDocuments,
        " AdvancedSearchComplete AdvancedSearchStopped AttachmentContextMenuDisplay BeforeFolderSharingDialog"
        " ContextMenuClose FolderContextMenuDisplay ItemContextMenuDisplay ItemLoad ItemSend MAPILogonComplete"
        " NewMail NewMailEx OptionsPagesAdd Quit Reminder Startup StoreContextMenuDisplay ViewContextMenuDisplay "},
    EventSource{"UserForm", kForms,
                " Activate AddControl BeforeDragOver BeforeDropOrPaste Click DblClick Deactivate Error Initialize"
                " KeyDown KeyPress KeyUp Layout MouseDown MouseMove MouseUp QueryClose RemoveControl Resize Scroll"
                " Terminate Zoom "},
    EventSource{"Form", kForms | kDocuments,
                " Activate AfterDelConfirm AfterInsert AfterUpdate ApplyFilter BeforeDelConfirm BeforeInsert"
                " BeforeUpdate Click Close Current DblClick Deactivate Delete Dirty DragDrop DragOver Error Filter"
                " GotFocus Initialize KeyDown KeyPress KeyUp LinkClose LinkError LinkExecute LinkOpen Load LostFocus"
                " MouseDown MouseMove MouseUp MouseWheel OLECompleteDrag OLEDragDrop OLEDragOver OLEGiveFeedback"
                " OLESetData OLEStartDrag Open Paint QueryUnload Resize Terminate Timer Undo Unload "},
    EventSource{
        "MDIForm", kForms,
        " Activate Click DblClick Deactivate DragDrop DragOver Initialize LinkClose LinkError LinkExecute"
        " LinkOpen Load MouseDown MouseMove MouseUp OLEDragDrop OLEDragOver QueryUnload Resize Terminate Unload "},
    EventSource{"Report", kDocuments,
                " Activate ApplyFilter Click Close Current DblClick Deactivate Error Filter GotFocus KeyDown KeyPress"
                " KeyUp Load LostFocus MouseDown MouseMove MouseUp MouseWheel NoData Open Page Resize Timer Unload "},
    EventSource{"Class", kClasses, " Initialize Terminate "},
    EventSource{"UserControl", kOthers,
                " AccessKeyPress AmbientChanged AsyncReadComplete AsyncReadProgress Click DblClick DragDrop DragOver"
                " EnterFocus ExitFocus GotFocus Hide HitTest Initialize InitProperties KeyDown KeyPress KeyUp LostFocus"
                " MouseDown MouseMove MouseUp OLECompleteDrag OLEDragDrop OLEDragOver OLEGiveFeedback OLESetData"
                " OLEStartDrag Paint ReadProperties Resize Show Terminate WriteProperties "},
    EventSource{"UserDocument", kOthers,
                " Click EnterFocus ExitFocus Hide Initialize InitProperties KeyDown KeyPress KeyUp MouseDown MouseMove"
                " MouseUp Paint ReadProperties Resize Scroll Show Terminate WriteProperties "},
    EventSource{"PropertyPage", kOthers,
                " ApplyChanges Click EditProperty Initialize KeyDown KeyPress KeyUp Paint SelectionChanged Terminate "},
    EventSource{
        "", kForms | kDocuments | kOthers,
        " AddControl AfterLabelEdit AfterUpdate BeforeDragOver BeforeDropOrPaste BeforeLabelEdit"
        " BeforeNavigate2 BeforeUpdate ButtonClick ButtonMenuClick Change Click Close CloseUp Collapse"
        " ColumnClick Compare Connect ConnectionRequest DataArrival DateClick DateDblClick DblClick Dirty"
        " DocumentComplete DownClick DownloadComplete DragDrop DragOver DropButtonClick DropDown Enter EnterCell"
        " Error Exit Expand Format GotFocus HeadClick ItemCheck ItemClick KeyDown KeyPress KeyUp Layout"
        " LeaveCell LostFocus MouseDown MouseMove MouseUp MouseWheel NavigateComplete2 NewWindow2 NodeCheck"
        " NodeClick NotInList OLECompleteDrag OLEDragDrop OLEDragOver OLEGiveFeedback OLESetData OLEStartDrag"
        " Paint PanelClick PanelDblClick PathChange PatternChange Print RemoveControl Resize Retreat RowColChange"
        " Scroll SelChange SelectionChanged SendComplete SendProgress SpinDown SpinUp StateChanged Timer Undo"
        " UpClick Updated Validate Zoom "},
};

/// Macros that a host starts by their names, and where Visual Basic starts a program.
constexpr std::array<std::string_view, 14> kStartMacros{
    "Auto_Activate",
    "Auto_Add",
    "Auto_Close",
    "Auto_Deactivate",
    "Auto_Open",
    "Auto_Remove",
    "AutoClose",
    "AutoExec",
    "AutoExit",
    "AutoNew",
    "AutoOpen",
    "Main",
    "OnSlideShowPageChange",
    "OnSlideShowTerminate",
};

bool HasEvent(std::string_view events, std::string_view name) {
  for (events.remove_prefix(1); !events.empty();) {
    const std::string_view event = text::TextBefore(events, " ");
    if (text::EqualsIgnoreCase(event, name)) return true;
    events.remove_prefix(event.size() + 1);
  }
  return false;
}

}  // namespace

bool IsCalledByHost(std::string_view name, int moduleKind) {
  const unsigned kind = KindBit(moduleKind);
  const auto isName = [&](std::string_view macro) { return text::EqualsIgnoreCase(macro, name); };
  if ((kind & (kStandards | kDocuments)) != 0 && std::ranges::any_of(kStartMacros, isName)) return true;
  const std::size_t bar = name.rfind('_');
  if (bar == std::string_view::npos || bar == 0) return false;
  const std::string_view object = name.substr(0, bar);
  const std::string_view event = name.substr(bar + 1);
  return std::ranges::any_of(kEventSources, [&](const EventSource& source) {
    return (source.kinds & kind) != 0 && (source.object.empty() || text::EqualsIgnoreCase(source.object, object)) &&
           HasEvent(source.events, event);
  });
}

}  // namespace quillmate::analysis
