#include <algorithm>
#include <cmath>
#include <string_view>

#include <quillmate/export/html.h>

#include "page_colours_p.h"
#include "site_style_p.h"

namespace quillmate::output {
namespace {

/// Everything but the user's colours. "--k", "--c" and "--s" are those: keywords, comments, strings.
constexpr std::string_view kRules[] = {
    ":root{--words:system-ui,\"Segoe UI\",Roboto,\"Noto Sans\",\"DejaVu Sans\",sans-serif}",
    ":root{--code:Consolas,\"Cascadia Mono\",Menlo,\"DejaVu Sans Mono\",\"Liberation Mono\",monospace}",
    "*{box-sizing:border-box}",
    "html{scroll-padding-top:1rem}",
    "body{margin:0;background:var(--ground);color:var(--text);font:1rem/1.5 var(--words)}",
    "a{color:var(--link);text-decoration-thickness:1px;text-underline-offset:.3em}",
    "a:hover{text-decoration-thickness:2px}",
    ":focus-visible{outline:2px solid var(--link);outline-offset:2px}",
    "header{display:flex;flex-wrap:wrap;align-items:baseline;gap:.25rem 2rem;padding:.75rem 2rem}",
    "header{background:var(--soft);border-bottom:1px solid var(--line)}",
    ".skip{position:absolute;left:-100vw}",
    ".skip:focus{left:0;z-index:1;padding:.5rem 1rem;background:var(--ground)}",
    "header p{flex:1;margin:0;font-weight:600}",
    "header nav{flex-basis:100%}",
    "nav ul{display:flex;flex-wrap:wrap;gap:.25rem 1.25rem;margin:0;padding:0;list-style:none}",
    "nav [aria-current]{color:inherit;font-weight:600;text-decoration:none}",
    "form label span{position:absolute;left:-100vw}",
    "input,button{padding:.15rem .5rem;border:1px solid var(--dim);border-radius:3px}",
    "input,button{background:var(--ground);color:inherit;font:inherit}",
    "header input{width:11rem}",
    "main{padding:1rem 2rem 3rem}",
    "h1{margin:.5rem 0 .25rem;font-size:1.75rem;line-height:1.25;overflow-wrap:anywhere}",
    "h2{margin:2.5rem 0 .75rem;padding-bottom:.25rem;border-bottom:1px solid var(--line);font-size:1.3rem}",
    "h3{margin:0;font-size:1.05rem;overflow-wrap:anywhere}",
    ".facts{margin:0 0 1rem;color:var(--dim)}",
    ".note{max-width:50rem;margin:.5rem 0;white-space:pre-line;overflow-wrap:anywhere}",
    "table{border-collapse:collapse;margin:1rem 0}",
    "caption{padding:.25rem 0;text-align:left;color:var(--dim)}",
    "th,td{padding:.35rem 1.5rem .35rem 0;border-bottom:1px solid var(--line);text-align:left;vertical-align:top}",
    "thead th{color:var(--dim);font-weight:600;font-size:.9rem}",
    "tbody th{font-weight:400}",
    "tfoot th,tfoot td{border-bottom:0;font-weight:600}",
    ".kind{white-space:nowrap}",
    ".number{text-align:right;font-variant-numeric:tabular-nums}",
    ".names{columns:20rem auto;column-gap:2rem;margin:.5rem 0;padding:0;list-style:none}",
    ".names li{break-inside:avoid;padding:.1rem 0;overflow-wrap:anywhere}",
    ".names small,.routine small,th small{color:var(--dim);font-size:.875rem;font-weight:400}",
    ".found{max-width:60rem;margin:.5rem 0;padding:0;list-style:none}",
    ".found li{padding:.15rem 0;overflow-wrap:anywhere}",
    ".found small{color:var(--dim)}",
    ".letters{display:flex;flex-wrap:wrap;gap:.25rem .9rem;margin:1rem 0;padding:0;list-style:none}",
    ".routine{margin:1.75rem 0 0;padding:.1rem 0 .1rem 1rem;border-left:3px solid var(--line)}",
    ".routine:has(:target){border-left-color:var(--link)}",
    ".pairs{display:grid;grid-template-columns:max-content 1fr;gap:.15rem 1rem;margin:.5rem 0 0}",
    ".pairs dt{color:var(--dim)}",
    ".pairs dd{margin:0;overflow-wrap:anywhere}",
    "pre{margin:.5rem 0;overflow-x:auto;tab-size:4;font:.875rem/1.45 var(--code)}",
    "pre code{font:inherit}",
    ".head{white-space:pre-wrap;overflow-wrap:anywhere}",
    ".code{padding:.75rem 0;background:var(--soft);border:1px solid var(--line)}",
    ".code [id^=z]{display:inline-block;width:4.5rem;margin-right:1rem;padding-right:.75rem}",
    ".code [id^=z]{border-right:1px solid var(--line);color:var(--dim);font-weight:400;text-align:right}",
    ".code [id^=z]{-webkit-user-select:none;user-select:none}",
    ".code a{color:inherit;text-decoration:underline dotted;text-underline-offset:.25em}",
    ".code a[href*='#z'],.code a[href*='#d-']{text-decoration:none}",
    ".code a:hover{color:var(--link);text-decoration-style:solid}",
    ".code :target{background:var(--mark)}",
    ".k{color:var(--k)}",
    ".c{color:var(--c)}",
    ".s{color:var(--s)}",
    ".declared td,.declared th{padding-right:1rem;overflow-wrap:break-word}",
    ".declared code{overflow-wrap:anywhere}",
    "td code{font-family:var(--code);font-size:.875rem}",
    ".numbers td,.numbers th{padding-right:1rem}",
    ".numbers abbr{text-decoration:none}",
    ".error{color:var(--bad);font-weight:600}",
    ".warning{font-weight:600}",
    "td small{color:var(--dim)}",
    ".calls{display:block;max-width:100%;height:auto;margin:.5rem 0}",
    ".calls path{fill:none;stroke:var(--dim);stroke-opacity:.6}",
    ".calls rect{fill:var(--soft);stroke:var(--dim)}",
    ".calls text{fill:var(--link);font:13px var(--words)}",
    ".calls a:hover text,.calls a:focus text{text-decoration:underline}",
    ".calls .more{fill:var(--dim)}",
    ".calls .in text{text-anchor:end}",
    ".calls .me{fill:var(--text);font-weight:600;text-anchor:middle}",
    ".tree,.tree ul{margin:0;padding:0 0 0 1.5rem;list-style:none}",
    ".tree{padding:0}",
    ".tree li{padding:.1rem 0}",
    ".tree li:not(:has(>details)){padding-left:1.1rem}",
    ".tree small{color:var(--dim)}",
    ".wide{overflow-x:auto}",
    ".matrix td,.matrix thead th{text-align:right;white-space:nowrap}",
    ".matrix tbody th{white-space:nowrap}",
    ".matrix thead th:first-child{text-align:left}",
    ".matrix abbr{text-decoration:none}",
    ".cycle{background:var(--mark)}",
    "@media (max-width:40rem){header{padding:.75rem 1rem}main{padding:1rem 1rem 2rem}}",
    "@media (max-width:40rem){table{display:block;overflow-x:auto}}",
};

constexpr std::string_view kLight = QUILLMATE_LIGHT_PAGE "--mark:#fff0b8;--bad:#b3261e;";
constexpr std::string_view kDark = QUILLMATE_DARK_PAGE "--mark:#4a4114;--bad:#ffb4ab;";

/// On paper the code needs no frame, but all of it has to be there.
constexpr std::string_view kPrintRules[] = {
    "body{font-size:10pt}",
    "nav,form,.letters,.skip{display:none}",
    "header{padding:0;background:none;border:0}",
    "main{padding:0}",
    "pre{font-size:7.5pt;white-space:pre-wrap;overflow-wrap:anywhere}",
    ".code{padding:0;background:none;border:0}",
    ".code [id^=z]{width:2.25rem;margin-right:.5rem;padding-right:.4rem}",
    "a,.code a{color:inherit;text-decoration:none}",
    "h1,h2,h3,thead,caption{break-after:avoid}",
    "tr,.head,.pairs{break-inside:avoid}",
};

constexpr std::int32_t kColourBits = 0xFFFFFF;

std::string Variables(std::string_view ground, std::int32_t keyword, std::int32_t comment, std::int32_t string) {
  std::string css = ":root{";
  css.append(ground).append("--k:").append(ColourToHex(keyword));
  return css.append(";--c:").append(ColourToHex(comment)).append(";--s:").append(ColourToHex(string)).append("}\n");
}

std::string LightVariables(const text::CodeLook& look) {
  return Variables(kLight, look.keywordColour & kColourBits, look.commentColour & kColourBits,
                   look.stringColour & kColourBits);
}

std::string DarkVariables(const text::CodeLook& look) {
  return Variables(kDark, ColourOnDark(look.keywordColour), ColourOnDark(look.commentColour),
                   ColourOnDark(look.stringColour));
}

/// Parts from 0 to 1.
struct Rgb {
  double red, green, blue;
};

Rgb PartsOf(std::int32_t colour) {
  return {(colour & 0xFF) / 255.0, (colour >> 8 & 0xFF) / 255.0, (colour >> 16 & 0xFF) / 255.0};
}

std::int32_t ColourOf(const Rgb& rgb) {
  const auto part = [](double value) { return static_cast<std::int32_t>(std::lround(value * 255)); };
  return part(rgb.red) + part(rgb.green) * 256 + part(rgb.blue) * 65536;
}

double Linear(double part) { return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); }

/// What the eye makes of it, 0 to 1.
double Luminance(const Rgb& rgb) {
  return 0.2126 * Linear(rgb.red) + 0.7152 * Linear(rgb.green) + 0.0722 * Linear(rgb.blue);
}

/// Seven times as bright as the ground of code, which is what small text needs to be read with ease.
bool IsReadableOnDark(const Rgb& rgb) {
  static const double ground = Luminance(PartsOf(0x26201D));
  return (Luminance(rgb) + 0.05) / (ground + 0.05) >= 7;
}

/// The colour with another lightness (half of the greatest and the least part) of the same hue and saturation.
Rgb WithLightness(const Rgb& rgb, double lightness) {
  const double greatest = std::max({rgb.red, rgb.green, rgb.blue});
  const double least = std::min({rgb.red, rgb.green, rgb.blue});
  const double middle = (greatest + least) / 2;
  const double oldReach = std::min(middle, 1 - middle);
  const double stretch = oldReach > 0 ? std::min(lightness, 1 - lightness) / oldReach : 0;
  const auto move = [&](double part) { return std::clamp(lightness + (part - middle) * stretch, 0.0, 1.0); };
  return {move(rgb.red), move(rgb.green), move(rgb.blue)};
}

}  // namespace

std::int32_t ColourOnDark(std::int32_t colour) {
  const Rgb rgb = PartsOf(colour);
  if (IsReadableOnDark(rgb)) return colour & kColourBits;
  Rgb lighter = rgb;
  for (int percent = 1; percent <= 100 && !IsReadableOnDark(lighter); ++percent) {
    lighter = WithLightness(rgb, percent / 100.0);
  }
  return ColourOf(lighter);
}

std::string StyleSheet(const text::CodeLook& look) {
  std::string css = LightVariables(look);
  css.append("@media (prefers-color-scheme:dark){\n").append(DarkVariables(look)).append("}\n");
  for (const std::string_view rule : kRules) css.append(rule).append("\n");
  if (!look.boldRoutines) css += "pre b{font-weight:400}\n";
  css.append("@media print{\n").append(LightVariables(look));
  for (const std::string_view rule : kPrintRules) css.append(rule).append("\n");
  return css += "}\n";
}

}  // namespace quillmate::output
