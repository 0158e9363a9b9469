#include <string_view>

#include "compare_style_p.h"
#include "page_colours_p.h"

namespace quillmate::output {
namespace {

constexpr std::string_view kLight =
    QUILLMATE_LIGHT_PAGE "--del:#ffecec;--delword:#ffb9b9;--ins:#e6f7e8;--insword:#9fe0a8;";
constexpr std::string_view kDark =
    QUILLMATE_DARK_PAGE "--del:#3b1f22;--delword:#7a2f35;--ins:#18321f;--insword:#2c6b3b;";

constexpr std::string_view kRules[] = {
    ":root{--words:system-ui,\"Segoe UI\",Roboto,\"Noto Sans\",\"DejaVu Sans\",sans-serif}",
    ":root{--code:Consolas,\"Cascadia Mono\",Menlo,\"DejaVu Sans Mono\",\"Liberation Mono\",monospace}",
    "*{box-sizing:border-box}",
    "body{margin:0;display:grid;grid-template:auto 1fr/minmax(12rem,20rem) minmax(0,1fr)}",
    "body{background:var(--ground);color:var(--text);font:1rem/1.5 var(--words)}",
    "header{grid-column:1/-1;padding:.75rem 2rem;background:var(--soft);border-bottom:1px solid var(--line)}",
    "h1{margin:0 0 .25rem;font-size:1.4rem}",
    "dl{display:grid;grid-template-columns:max-content 1fr;gap:.1rem 1rem;margin:0}",
    "dt{color:var(--dim)}",
    "dd{margin:0;overflow-wrap:anywhere}",
    "header p{margin:.5rem 0}",
    "fieldset{display:flex;flex-wrap:wrap;gap:.25rem 1.25rem;margin:0;padding:0;border:0}",
    "legend{float:left;padding:0;margin-right:1rem;color:var(--dim)}",
    "a{color:var(--link);text-underline-offset:.2em}",
    ":focus-visible{outline:2px solid var(--link);outline-offset:2px}",
    "nav{position:sticky;top:0;max-height:100vh;overflow:auto;padding:1rem 1rem 2rem 2rem;font-size:.9rem}",
    "nav ul{margin:0;padding:0;list-style:none}",
    "nav ul ul{padding-left:1rem}",
    "nav li{margin:.15rem 0;overflow-wrap:anywhere}",
    "nav a{text-decoration:none}",
    "nav a:hover{text-decoration:underline}",
    "main{padding:.5rem 2rem 4rem 1rem}",
    "h2{margin:2rem 0 .75rem;padding-bottom:.25rem;border-bottom:1px solid var(--line);font-size:1.3rem}",
    "section:first-child h2{margin-top:.5rem}",
    "h3{margin:1.5rem 0 .25rem;font-size:1.05rem;overflow-wrap:anywhere}",
    ".b{color:var(--dim);font-size:.8rem;font-weight:400;white-space:nowrap}",
    "h2 .b,h3 .b{padding:.1rem .5rem;border:1px solid var(--line);border-radius:1rem}",
    ".note{margin:.1rem 0;color:var(--dim);font-size:.9rem;overflow-wrap:anywhere}",
    ".facts{margin:.5rem 0;padding-left:1.25rem;overflow-wrap:anywhere}",
    "article:target h3{color:var(--link)}",
    "table{width:100%;margin:.5rem 0;border-collapse:collapse;table-layout:fixed;border:1px solid var(--line)}",
    "table{font:.8125rem/1.45 var(--code);tab-size:4}",
    "col.n{width:4.5rem}",
    "th{padding:.1rem .5rem;border-bottom:1px solid var(--line);color:var(--dim);font:.8rem var(--words)}",
    "th{text-align:left}",
    "td{padding:0 .5rem;vertical-align:top;white-space:pre-wrap;overflow-wrap:anywhere}",
    "td.n{color:var(--dim);text-align:right;white-space:nowrap;-webkit-user-select:none;user-select:none}",
    "td:nth-child(3),td.e+td,td+td.e{border-left:1px solid var(--line)}",
    "td.d{background:var(--del)}",
    "td.i{background:var(--ins)}",
    "td.n.d::after{content:\" -\"}",
    "td.n.i::after{content:\" +\"}",
    "td.e{background:var(--soft)}",
    "del{background:var(--delword);text-decoration:none}",
    "ins{background:var(--insword);text-decoration:none}",
    ".skip td{padding:.1rem .5rem;background:var(--soft);color:var(--dim);font:.8rem var(--words)}",
    "body:has(#f-layout:not(:checked)) .s-layout{display:none}",
    "body:has(#f-changed:not(:checked)) .s-changed{display:none}",
    "body:has(#f-moved:not(:checked)) .s-moved{display:none}",
    "body:has(#f-renamed:not(:checked)) .s-renamed{display:none}",
    "body:has(#f-new:not(:checked)) .s-new{display:none}",
    "body:has(#f-gone:not(:checked)) .s-gone{display:none}",
};

/// A small screen has no room beside the code.
constexpr std::string_view kNarrow =
    "@media (max-width:60rem){body{display:block}nav{position:static;max-height:none}main,nav,header{padding:.5rem "
    "1rem}}\n";

/// On paper there is nothing to click, and the colours of the changes have to stay.
constexpr std::string_view kPrintRules[] = {
    "body{display:block;font-size:10pt}",
    "nav,fieldset{display:none}",
    "header{padding:0;background:none}",
    "main{padding:0}",
    "a{color:inherit;text-decoration:none}",
    "table{font-size:7.5pt}",
    "col.n{width:3.25rem}",
    "td,del,ins{-webkit-print-color-adjust:exact;print-color-adjust:exact}",
    "h2,h3,.note,thead{break-after:avoid}",
    "tr{break-inside:avoid}",
    "del{text-decoration:line-through}",
    "ins{text-decoration:underline}",
};

}  // namespace

std::string CompareStyle() {
  std::string css;
  css.append(":root{").append(kLight).append("}\n");
  css.append("@media screen and (prefers-color-scheme:dark){:root{").append(kDark).append("}}\n");
  for (const std::string_view rule : kRules) css.append(rule).append("\n");
  css += kNarrow;
  css += "@media print{\n";
  for (const std::string_view rule : kPrintRules) css.append(rule).append("\n");
  return css += "}\n";
}

}  // namespace quillmate::output
