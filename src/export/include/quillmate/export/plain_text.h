#pragma once

#include <string>
#include <string_view>

#include <quillmate/export/sink.h>

namespace quillmate::output {

/// Marked-up text without its markers: the code as the code view shows it, Windows-1252. The markers are those that the
/// RTF body gets control words for; what comes together where one was taken out is code, even if it looks like one.
std::string PlainText(std::string_view markedText);
/// The same, handed out in pieces of about 64 KB.
void PlainText(std::string_view markedText, const Sink& sink);

}  // namespace quillmate::output
