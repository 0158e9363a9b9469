#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/export/project_export.h>
#include <quillmate/export/sink.h>
#include <quillmate/text/code_options.h>

/// Marked-up text as a piece of HTML for pasting into a web page. Input and output are Windows-1252 bytes unless said.
///
/// A piece is "<pre>", a span with the code font, the text and "</span></pre>". Line breaks stay CR LF. Umlauts, "&",
/// "<", ">", quotes, ":", "(", ")" and "+" become entities; every other byte stays as it is. Comments, keywords and
/// strings are wrapped in coloured spans, header and end lines of routines in "<b>" when they are to be bold. The name
/// of the font is in its span as it is; the tab width is not used.
///
/// For code that is in no index (a selection, the clipboard) the caller scans it in display mode and hands the
/// marked-up text to BuildHtml.
namespace quillmate::output {

/// The entities alone; markers pass through.
std::string EscapeHtml(std::string_view text);

/// "#RRGGBB", upper case. A value above 24 bits has more digits for blue; the parts of a negative value are 32-bit
/// two's complement.
std::string ColourToHex(std::int32_t colour);

/// Marked-up text to HTML, in one pass with the result of the replacements one after the other: the entities, span
/// close, comment, keyword, string, header line open and close.
std::string BuildHtml(std::string_view markedText, const text::CodeLook& look);
/// The same, handed out in pieces made from about 64 KB of marked-up text each.
void BuildHtml(std::string_view markedText, const text::CodeLook& look, const Sink& sink);

/// What AppendCredit appends. `hostName` as the user interface shows it, for instance "Excel".
std::string CreditLine(std::string_view hostName);
/// The HTML, a line break, "<br>" and the credit line.
std::string AppendCredit(std::string html, std::string_view hostName);

/// The bytes of the preview file: a page around the HTML, and a line break.
std::string PreviewDocument(std::string_view html, std::string_view hostName);

/// The type line of a module in the header of the project's HTML: that of TypeLine, but the bare key for "M5".
std::string_view HtmlTypeLine(std::string_view imageKey);

/// Read from the module text files of an index folder, as in project_export.h.
void ModuleHtml(const std::filesystem::path& folder, codedb::ModuleNumber module, const text::CodeLook& look,
                const Sink& sink);
/// The modules one after the other, each a piece of its own; with `headers`, each begins with its header block.
void ProjectHtml(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                 const text::CodeLook& look, const Sink& sink);

/// The file of the preview, in the program's folder.
inline constexpr std::string_view kPreviewFile = "TempQuillmate.htm";

/// What the user is told and asked, UTF-8 with CR LF.
inline constexpr std::string_view kHtmlActivity = "Erzeuge Html Code";
inline constexpr std::string_view kNothingSelected = "Bitte markieren Sie den gewünschten Text";
inline constexpr std::string_view kClipboardEmpty = "Kein Text in der Zwischenablage";
inline constexpr std::string_view kCreditQuestion =
    "Die Daten sind jetzt für die Zwischenablage vorbereitet \r\n"
    "und stehen Ihnen nach Schliessen des Dialoges dort zur Verfügung !\r\n"
    "\r\n"
    "Hinweis auf Erstellungsprogramm Hinzufügen ?";
inline constexpr std::string_view kPreviewFailed = "Vorschau nicht möglich, vermutlich kein IE installiert";

}  // namespace quillmate::output
