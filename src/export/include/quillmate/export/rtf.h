#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillmate/export/sink.h>
#include <quillmate/text/code_options.h>

/// Marked-up text as RTF. Input and output are Windows-1252 bytes; characters outside ASCII are written as they are.
///
/// A document is a head (font table, colour table, paragraph format with ten tab stops, font size in half-points), the
/// body and a closing brace. The body has one paragraph per line of the marked-up text, the paragraph mark at the start
/// of the following line. Colours: \cf0 plain, \cf1 keyword, \cf2 comment, \cf3 string; font 3 is the code font, whose
/// name is put into the font table as it is.
namespace quillmate::output {

/// "\redR\greenG\blueB;". Blue is what is left of the value above 65536, however large; the parts of a negative value
/// are negative or 0 (division truncates).
std::string ColourEntry(std::int32_t colour);

/// Marked-up text to RTF body, in one pass with the result of the replacements one after the other: "\", "{", "}",
/// span close, comment, keyword, string, TAB, header line open and close, CR LF.
std::string ColourBody(std::string_view markedText, bool boldRoutines);
/// The same, handed out in pieces of about 64 KB.
void ColourBody(std::string_view markedText, bool boldRoutines, const Sink& sink);

/// What is before a document's body, and after it.
std::string DocumentHead(const text::CodeLook& look);
inline constexpr std::string_view kDocumentEnd = "}";
/// RTF body to a complete RTF document.
std::string WrapDocument(std::string_view body, const text::CodeLook& look);

/// Both, for a module or for text that already carries headers.
std::string RtfDocument(std::string_view markedText, const text::CodeLook& look);

}  // namespace quillmate::output
