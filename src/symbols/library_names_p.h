#pragma once

#include <cstdint>
#include <string_view>

#include "library_p.h"

/// The tables of library_p.h as lists of names between blanks.
namespace quillmate::symbols::library {

struct GlobalNames {
  std::uint8_t hosts;
  Result result;
  std::string_view names;
};

inline constexpr GlobalNames kGlobals[] = {
    {kAll, Result::kPlain,
     "Abs Asc AscB AscW Atn Beep Calendar CBool CByte CCur CDate CDbl CDec ChDir ChDrive Chr ChrB ChrW CInt CLng "
     "CLngLng "
     "CLngPtr Command Cos CSng CStr CurDir CVDate CVErr Date DateAdd DateDiff DatePart DateSerial DateValue Day DDB "
     "Debug DeleteSetting Dir DoEvents Environ EOF Erl Err Error Exp FileAttr FileCopy FileDateTime FileLen Filter Fix "
     "Format FormatCurrency FormatDateTime FormatNumber FormatPercent FreeFile FV GetAllSettings GetAttr GetSetting "
     "Hex "
     "Hour IMEStatus Information Input InputB InputBox InStr InStrB InStrRev Int IPmt IRR IsArray IsDate IsEmpty "
     "IsError "
     "IsMissing IsNull IsNumeric IsObject Join Kill LBound LCase Left LeftB Len LenB Loc LOF Log LTrim MacID Mid MidB "
     "Minute MIRR MkDir Month MonthName MsgBox Now NPer NPV ObjPtr Oct Partition Pmt PPmt PV QBColor Randomize Rate "
     "Replace Reset RGB Right RightB RmDir Rnd Round RTrim SaveSetting Second Seek SendKeys SetAttr Sgn Shell Sin SLN "
     "Space Spc Split Sqr Str StrComp StrConv String StrPtr StrReverse SYD Tab Tan Time Timer TimeSerial "
     "TimeValue "
     "Trim TypeName UBound UCase Val VarPtr VarType Weekday WeekdayName Year Load Unload Print "
     "Collection ErrObject Conversion Constants DateTime FileSystem Financial Interaction Math Strings"},
    {kAll, Result::kLate, "CallByName CreateObject GetObject Choose IIf Switch CVar Array UserForms Me"},
    {kExcel, Result::kPlain,
     "ActiveCell ActiveChart ActivePrinter ActiveWindow ActiveWorkbook AddIns Application Assistant Calculate Cells "
     "Charts "
     "Columns CommandBars DDEInitiate DDEPoke DDERequest DDETerminate DialogSheets ExecuteExcel4Macro "
     "Intersect MenuBars Modules Names Range Rows Toolbars Union Windows Workbooks WorksheetFunction ThisWorkbook"},
    {kExcel, Result::kElements, "Sheets Worksheets Excel4MacroSheets Excel4IntlMacroSheets"},
    {kExcel, Result::kLate, "ActiveSheet Selection ActiveDialog Evaluate Run"},
    {kWord, Result::kPlain,
     "ActiveDocument ActivePrinter ActiveWindow AddIns Application AutoCaptions AutoCorrect BuildKeyCode "
     "CaptionLabels CleanString CommandBars CustomDictionaries CustomizationContext Dialogs Documents FileConverters "
     "FindKey FontNames KeyBindings KeysBoundTo KeyString ListGalleries MacroContainer NormalTemplate Options "
     "RecentFiles Selection StatusBar SynonymInfo System Tasks Templates Windows WordBasic CentimetersToPoints "
     "InchesToPoints LinesToPoints MillimetersToPoints PicasToPoints PointsToCentimeters PointsToInches ThisDocument "
     "Repeat ChangeFileOpenDirectory"},
    {kWord, Result::kLate, "Run"},
    {kAccess, Result::kPlain,
     "Application CodeData CodeDb CodeProject CurrentData CurrentDb CurrentProject CurrentUser DAvg DBEngine DCount "
     "DFirst "
     "DLast DLookup DMax DMin DoCmd DStDev DStDevP DSum DVar DVarP EuroConvert GUIDFromString HyperlinkPart Modules Nz "
     "PlainText References StringFromGUID SysCmd TempVars BuildCriteria ColumnHistory CreateControl CreateForm "
     "CreateReport CreateReportControl DeleteControl SetOption GetOption LoadPicture SaveAsText LoadFromText Quit "
     "RefreshDatabaseWindow CloseCurrentDatabase OpenCurrentDatabase FollowHyperlink hWndAccessApp"},
    {kAccess, Result::kElements, "Forms Reports"},
    {kAccess, Result::kLate, "Screen Eval Run CodeContextObject"},
    {kPowerPoint, Result::kPlain,
     "ActivePresentation ActiveWindow AddIns Application Presentations SlideShowWindows Windows CommandBars"},
    {kVb6, Result::kPlain,
     "App Clipboard Global Licenses LoadPicture LoadResData LoadResPicture LoadResString Printer Printers SavePicture"},
    {kVb6, Result::kElements, "Forms"},
    {kVb6, Result::kLate, "Screen"},
};

/// Beginnings of constants; a capital letter follows.
inline constexpr std::string_view kConstantPrefixes =
    "vb xl wd pp mso ac db ad ol fm rgb cc lvw tvw tvw flex adx dbg sb tab tbr img com mci cdl rtf pgb sld cbr xml "
    "stdole";

struct ClassNames {
  Result result;
  std::string_view names;
};

inline constexpr ClassNames kClasses[] = {
    {Result::kLate,
     "Object Variant Control Form Report MDIForm UserForm IUnknown IDispatch Any UserControl UserDocument PropertyPage "
     "SubForm SubReport Page OLEObject DataObject IRibbonControl Extender VBControlExtender"},
    {Result::kElements,
     "Collection Dictionary Controls Forms Reports Sheets Worksheets Pages OLEObjects DialogSheets UserForms Screen "
     "ParameterInfo _Collection"},
    {Result::kPlain,
     // VBA, VB, files
     "ErrObject App Clipboard Printer Font StdFont IFontDisp IFont Picture StdPicture IPictureDisp IPicture OLE_COLOR "
     "OLE_HANDLE OLE_TRISTATE OLE_CANCELBOOL FileSystemObject File Files Folder Folders Drive Drives TextStream "
     "Encoder "
     "RegExp RegExp2 Match Matches MatchCollection SubMatches WshShell WshNetwork WshShortcut VbMsgBoxResult "
     "VbMsgBoxStyle VbCompareMethod VbDayOfWeek VbVarType VbFileAttribute VbAppWinStyle VbCallType VbTriState "
     // controls
     "TextBox CommandButton Label ListBox ComboBox CheckBox OptionButton OptionGroup Frame Image ImageList PictureBox "
     "Timer DriveListBox DirListBox FileListBox HScrollBar VScrollBar ScrollBar SpinButton ToggleButton TabStrip "
     "MultiPage Menu Line Shape Data OLE RefEdit TreeView Node Nodes ListView ListItem ListItems ListSubItem "
     "ListSubItems ColumnHeader ColumnHeaders ProgressBar StatusBar Panel Panels Toolbar Button Buttons Slider "
     "CommonDialog RichTextBox MSFlexGrid MSHFlexGrid Winsock Inet WebBrowser DTPicker MonthView UpDown Animation "
     "BoundObjectFrame ObjectFrame PageBreak Rectangle Attachment NavigationButton EmptyCell Section Tab "
     "ReturnInteger ReturnBoolean ReturnEffect ReturnString ReturnSingle AmbientProperties PropertyBag AsyncProperty "
     "DataMembers DataBindings DataBinding "
     // Excel
     "Application Range Worksheet Workbook Workbooks Chart Charts ChartObject ChartObjects Series SeriesCollection "
     "Axis "
     "Axes Point Points Shapes ShapeRange PivotTable PivotTables PivotField PivotFields PivotItem PivotItems "
     "PivotCache "
     "QueryTable QueryTables ListObject ListObjects ListRow ListRows ListColumn ListColumns Name Names Comment "
     "Comments "
     "Hyperlink Hyperlinks Window Windows Interior Border Borders Validation FormatCondition FormatConditions "
     "AutoFilter Filters PageSetup Outline Areas Style Styles WorksheetFunction AddIn AddIns RecentFile XmlMap "
     "SlicerCache Slicer Sparkline SparklineGroup Sort SortField SortFields Top10 Databar ColorScale Trendline "
     "ChartArea PlotArea Legend DataLabel DataLabels TickLabels Gridlines ErrorBars DialogSheet Characters TextFrame "
     "TextFrame2 WorkbookConnection Workbookconnections ODBCConnection OLEDBConnection "
     // Word
     "Document Documents Selection Paragraph Paragraphs Table Tables Row Rows Cell Cells Column Columns Bookmark "
     "Bookmarks Find Field Fields FormField FormFields ContentControl ContentControls InlineShape InlineShapes "
     "HeaderFooter HeadersFooters Sections Sentences Words Story StoryRanges Template Templates Footnote Endnote "
     "Revision Revisions Variable Variables MailMerge ParagraphFormat TabStop TabStops TableOfContents "
     // Access, data
     "Database Databases Recordset Recordsets DynaSet Snapshot TableDef TableDefs QueryDef QueryDefs Workspace "
     "Workspaces "
     "Relation Relations Index Indexes Property Properties Parameter Parameters Container Containers DBEngine DoCmd "
     "Connection Command Stream Record Errors Error Catalog View Procedure Key Keys AccessObject AllForms AllReports "
     "CurrentProject CurrentData TempVar TempVars Module Modules Reference References NavigationControl "
     // Office
     "CommandBar CommandBars CommandBarControl CommandBarControls CommandBarButton CommandBarPopup CommandBarComboBox "
     "FileDialog FileDialogFilters FileSearch FoundFiles IRibbonUI DocumentProperty DocumentProperties Assistant "
     "Balloon "
     "COMAddIn COMAddIns CustomXMLPart CustomXMLParts CustomTaskPane VBProject VBProjects VBComponent VBComponents "
     "CodeModule CodePane VBE "
     // PowerPoint, Outlook, XML
     "Presentation Presentations Slide Slides SlideRange SlideShowWindow TextRange MailItem AppointmentItem "
     "ContactItem "
     "TaskItem NameSpace MAPIFolder Items Explorer Inspector Attachments Recipient Recipients Account DOMDocument "
     "DOMDocument26 DOMDocument30 DOMDocument40 DOMDocument60 XMLHTTP XMLHTTP60 ServerXMLHTTP WinHttpRequest "
     "IXMLDOMNode IXMLDOMElement IXMLDOMNodeList IXMLDOMAttribute HTMLDocument IHTMLElement HTMLElement "
     "IHTMLElementCollection InternetExplorer"},
};

inline constexpr std::string_view kScopes =
    "VBA Excel Word Access Office MSForms DAO ADODB ADOX ADOMD Scripting stdole VBIDE VB VBRUN Outlook PowerPoint "
    "Publisher Visio MSProject MSComctlLib ComctlLib MSComDlg VBScript_RegExp_55 VBScript_RegExp_10 MSXML2 MSXML "
    "SHDocVw "
    "MSHTML WScript IWshRuntimeLibrary Shell32 RichTextLib MSWinsockLib InetCtlsObjects MSFlexGridLib MSDataGridLib "
    "MSDASC SQLDMO AddInDesignerObjects MSScriptControl WinHttp ComCtl2 MSComCtl2 ThreeD MAPI CDO Graph";

/// Members whose value may be an object of the sources, whatever library they are of.
inline constexpr std::string_view kLateMembers =
    "Item Items Object ActiveSheet ActiveForm ActiveReport ActiveControl PreviousControl Parent Container Selection "
    "Form "
    "Report Evaluate Run Tag DataSource DataObject Extender Ambient SourceObject Add AddItem Data Owner Eval "
    "CodeContextObject Instance Designer COMAddIn OLEFormat ParentForm SelectedItem "
    "DragSource Source ActiveDataObject UserControl ActiveDatasheet";
inline constexpr std::string_view kElementMembers =
    "Controls Forms Reports Sheets Worksheets DialogSheets Pages OLEObjects Contents UserForms VBControls Objects "
    "ContainedControls SelectedControls";

struct BaseNames {
  std::uint16_t bases;
  std::string_view names;
};

inline constexpr BaseNames kBaseMembers[] = {
    {base::kUserForm | base::kVbForm | base::kVbControl,
     "ActiveControl BackColor BorderStyle Caption Controls Enabled Font ForeColor Height Left MouseIcon MousePointer "
     "Name "
     "Picture Tag Top Visible Width Hide Show Move PrintForm SetFocus ZOrder HelpContextID WhatsThisHelp "
     "StartUpPosition "
     "hWnd Refresh"},
    {base::kUserForm,
     "ActiveControl BorderColor CanPaste CanRedo CanUndo Copy Cut Cycle DrawBuffer InsideHeight InsideWidth "
     "KeepScrollBarsVisible Paste PictureAlignment PictureSizeMode PictureTiling RedoAction Repaint RightToLeft Scroll "
     "ScrollBars ScrollHeight ScrollLeft ScrollTop ScrollWidth SetDefaultTabOrder SpecialEffect UndoAction "
     "VerticalScrollBarSide WhatsThisButton WhatsThisMode Zoom"},
    {base::kVbForm | base::kVbControl,
     "Appearance AutoRedraw Circle ClipControls Cls CurrentX CurrentY DrawMode DrawStyle DrawWidth FillColor FillStyle "
     "FontBold FontItalic FontName FontSize FontStrikethru FontTransparent FontUnderline hDC HasDC Image KeyPreview "
     "Line "
     "LinkMode LinkTopic OLEDrag OLEDropMode PaintPicture Palette PaletteMode Point PopupMenu Print PSet RightToLeft "
     "Scale ScaleHeight ScaleLeft ScaleMode ScaleTop ScaleWidth ScaleX ScaleY TextHeight TextWidth ValidateControls"},
    {base::kVbForm,
     "ActiveForm AutoShowChildren ControlBox Count Icon MaxButton MDIChild MinButton Moveable NegotiateMenus "
     "ShowInTaskbar WhatsThisButton WhatsThisMode WindowState Arrange"},
    {base::kVbControl,
     "AccessKeys Ambient AsyncRead CancelAsyncRead CanPropertyChange ContainedControls ContainerHwnd DataMembers "
     "DefaultCancel EditAtDesignTime EventsFrozen Extender ForwardFocus Hyperlink InvisibleAtRuntime "
     "MaskColor MaskPicture Parent ParentControls PropertyChanged Public PropertyPages ToolboxBitmap UserControl "
     "WindowlessChanged Size Changed SelectedControls StandardSize"},
    {base::kAccessForm,
     "ActiveControl AllowAdditions AllowDeletions AllowEdits AllowFilters AllowFormView Application AutoCenter "
     "AutoResize "
     "BeginBatchEdit Bookmark BorderStyle Caption CloseButton ControlBox Controls Count CurrentRecord "
     "CurrentSectionLeft "
     "CurrentSectionTop CurrentView Cycle DataEntry DefaultControl DefaultView Dirty DividingLines Filter FilterOn "
     "FitToScreen Form FormatCount GoToPage GridX GridY GroupLevel HasData HasModule HelpContextId HelpFile hWnd "
     "InsideHeight InsideWidth KeyPreview Line Circle LayoutForPrint MaxRecButton MenuBar MinMaxButtons Modal Module "
     "Move "
     "MoveLayout Name NavigationButtons NewRecord NextRecord OpenArgs OrderBy OrderByOn Page Pages Painting "
     "PaintPalette "
     "Parent Picture PopUp Print PrintCount PrintSection Printer Properties PSet Recalc Recordset RecordsetClone "
     "RecordsetType RecordSelectors RecordSource Refresh Repaint Report Requery Scale ScaleHeight ScaleLeft ScaleMode "
     "ScaleTop ScaleWidth ScrollBars Section SelHeight SelLeft SelTop SelWidth SetFocus ShortcutMenu ShortcutMenuBar "
     "Tag "
     "TextHeight TextWidth TimerInterval Toolbar Undo Visible Width WindowHeight WindowLeft WindowTop WindowWidth "
     "Zoomed "
     "CurrentX CurrentY DrawMode DrawStyle DrawWidth FillColor FillStyle FontBold FontItalic FontName FontSize "
     "FontUnderline ForeColor Height Left Top Hwnd"},
    {base::kExcelDocument,
     "Activate Application Calculate Cells ChartObjects Charts CheckSpelling CircularReference ClearArrows CodeName "
     "Columns Comments ConsolidationFunction Copy CustomProperties Delete DrawingObjects Evaluate ExportAsFixedFormat "
     "FilterMode Hyperlinks Index ListObjects Move Name Names Next OLEObjects Outline PageSetup Parent Paste "
     "PasteSpecial PivotTables PivotTableWizard Previous PrintOut PrintPreview Protect ProtectContents ProtectionMode "
     "QueryTables Range ResetAllPageBreaks Rows SaveAs Scenarios ScrollArea Select SetBackgroundPicture Shapes "
     "ShowAllData ShowDataForm Sort StandardHeight StandardWidth Tab TransitionExpEval Type Unprotect UsedRange "
     "Visible "
     "AcceptAllChanges AddToFavorites Author AutoFilter AutoFilterMode BreakLink BuiltinDocumentProperties ChangeLink "
     "ChangeFileAccess Close Colors Connections CustomDocumentProperties Date1904 DeleteNumberFormat "
     "DisplayDrawingObjects "
     "Excel4MacroSheets FileFormat FullName HasPassword IsAddin Keywords LinkSources MultiUserEditing NewWindow "
     "OpenLinks Password Path PivotCaches ReadOnly RefreshAll Routing RunAutoMacros Save SaveCopyAs Saved Sheets "
     "Styles "
     "Subject Title UpdateLink VBProject Windows Worksheets ActiveChart ActiveSheet Area3DGroup Axes BarGroups "
     "ChartArea "
     "ChartTitle ChartType ChartWizard HasAxis HasLegend HasTitle Legend PlotArea PlotBy SeriesCollection "
     "SetSourceData "
     "EnableCalculation EnableSelection EnableOutlining DisplayPageBreaks"},
    {base::kWordDocument,
     "Activate ActiveWindow Application AttachedTemplate Background Bookmarks BuiltInDocumentProperties Characters "
     "Close "
     "CodeName CommandBars Comments ContentControls Content CustomDocumentProperties Endnotes Fields Footnotes "
     "FormFields "
     "FormattingShowFont FullName GoTo HasPassword Hyperlinks Indexes InlineShapes Kind ListParagraphs Lists "
     "ListTemplates MailMerge Name PageSetup Paragraphs Password Path PrintOut PrintPreview Protect ProtectionType "
     "Range "
     "ReadOnly Redo Reload Revisions Save SaveAs Saved Saved Sections Select Sentences Shapes StoryRanges Styles "
     "Tables "
     "TablesOfContents TrackRevisions Type Undo Unprotect UpdateStyles UserControl Variables VBProject Windows Words"},
};

struct StringTargetNames {
  StringTarget target;
  std::uint8_t position;  ///< 0: the property itself is assigned to
  std::string_view names;
};

inline constexpr StringTargetNames kStringTargets[] = {
    {StringTarget::kMacro, 1, "Run RunMacro ExecuteExcel4Macro RegisterServerCallback"},
    {StringTarget::kMacro, 2, "OnTime OnKey OnUndo OnRepeat"},
    {StringTarget::kMacro, 0,
     "OnAction OnDoubleClick OnEntry OnSheetActivate OnSheetDeactivate OnWindow OnCalculate OnData OnSave OnTime "
     "OnClick "
     "OnOpen OnLoad OnClose OnCurrent OnGotFocus OnLostFocus OnEnter OnExit OnChange OnTimer OnActivate OnDeactivate "
     "OnKeyDown OnKeyPress OnKeyUp OnMouseDown OnMouseUp OnMouseMove OnDblClick OnDelete OnError OnFormat OnPrint "
     "OnRetreat OnNoData OnPage OnUndo OnUnload OnInsert AfterUpdate BeforeUpdate"},
    {StringTarget::kMember, 2, "CallByName"},
    {StringTarget::kExpression, 1, "Eval Evaluate"},
    {StringTarget::kForm, 1, "OpenForm OpenReport Forms Reports"},
    {StringTarget::kControl, 1, "Controls"},
};

struct EntryPoints {
  std::uint8_t hosts;
  std::string_view names;
};

inline constexpr EntryPoints kEntryPoints[] = {
    {kVb6, "Main"},
    {kExcel, "Auto_Open Auto_Close Auto_Activate Auto_Deactivate Auto_Add Auto_Remove"},
    {kPowerPoint, "Auto_Open Auto_Close OnSlideShowPageChange OnSlideShowTerminate"},
    {kWord,
     "AutoExec AutoNew AutoOpen AutoClose AutoExit Main "
     // run instead of the command of that name
     "FileOpen FileNew FileSave FileSaveAs FileClose FileExit FilePrint FilePrintDefault FileTemplates ToolsMacro "
     "ViewVBCode DateiÖffnen DateiNeu DateiSpeichern DateiSpeichernUnter DateiSchließen DateiSchliessen DateiBeenden "
     "DateiDrucken DateiDruckenStandard DateiDokVorlagen ExtrasMakro AnsichtVBCode"},
};

/// What a handler's name ends in, as far as it alone tells one.
inline constexpr std::string_view kEventNames =
    "Activate AddinInstall AddinUninstall AfterCalculate AfterDelConfirm AfterInsert AfterRefresh AfterSave "
    "AfterUpdate "
    "ApplyFilter BeforeClose BeforeDelConfirm BeforeDoubleClick BeforeInsert BeforePrint BeforeRefresh "
    "BeforeRightClick BeforeSave BeforeUpdate ButtonClick Calculate Change Click Close ColumnClick Current "
    "DataArrival DblClick Deactivate Delete DropButtonClick Enter Exit FollowHyperlink Format GotFocus Initialize "
    "ItemCheck ItemClick KeyDown KeyPress KeyUp Load LostFocus MouseDown MouseMove MouseUp NewSheet NoData NodeClick "
    "NotInList Open Paint PathChange QueryClose QueryUnload ReadProperties Resize Retreat Scroll SelectionChange "
    "SheetActivate SheetBeforeDoubleClick SheetBeforeRightClick SheetCalculate SheetChange SheetDeactivate "
    "SheetSelectionChange SpinDown SpinUp Startup Terminate Timer Undo Unload Validate WindowActivate "
    "WindowDeactivate WriteProperties";

/// Types of the first parameter of routines that a host calls by names which are in its documents.
inline constexpr std::string_view kCallbackTypes = "IRibbonControl IRibbonUI MailItem MeetingItem SlideShowWindow";

/// Words in the comment above a routine that a runner of tests calls.
inline constexpr std::string_view kTestMarks[] = {"@TestMethod", "@TestInitialize", "@TestCleanup", "@ModuleInitialize",
                                                  "@ModuleCleanup"};

struct HostObjects {
  std::uint16_t bases;  ///< 0: every class-like module
  std::string_view names;
};

inline constexpr HostObjects kHostObjects[] = {
    {0, "Class"},
    {base::kUserForm, "UserForm"},
    {base::kVbForm, "Form MDIForm"},
    {base::kVbControl,
     "UserControl UserDocument PropertyPage DataReport DataEnvironment WebClass AddinInstance DHTMLPage "
     "IDTExtensibility"},
    {base::kAccessForm, "Form Report"},
    {base::kExcelDocument, "Workbook Worksheet Chart"},
    {base::kWordDocument, "Document"},
};

}  // namespace quillmate::symbols::library
