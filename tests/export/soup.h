#pragma once

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace quillmate::output {

/// Text of random fragments: whole, broken and touching markers, line breaks and their halves, what RTF and HTML
/// escape.
inline std::string MarkerSoup(unsigned seed, std::size_t fragments) {
  static constexpr std::string_view kFragments[] = {"|\237k|", "|\237f|", "|\237s|",
                                                    "|n\237|", "|\237x|", "|y\237|",
                                                    "|\237b|", "|",       "\237",
                                                    "k",       "n",       "x",
                                                    "y",       "f",       "|y",
                                                    "\237|",   "n\237|",  "\237x|",
                                                    "\r",      "\n",      "\r\n",
                                                    "\r\n",    "\t",      "\\",
                                                    "{",       "}",       "\\par ",
                                                    "\\cf0 ",  " ",       "a",
                                                    "End Sub", "\344",    std::string_view("\0", 1),
                                                    "&",       "<",       "&#38;",
                                                    "(\"+",    ":)",      "\326\337#"};
  std::mt19937 random(seed);
  // Few kinds of fragments in one text: what matters meets more often.
  std::string_view chosen[6];
  for (auto& c : chosen) c = kFragments[random() % std::size(kFragments)];
  std::string soup;
  for (std::size_t i = 0; i < fragments; ++i) soup += chosen[random() % std::size(chosen)];
  return soup;
}

}  // namespace quillmate::output
