#include "presentation/ReportPage.h"

#include "localization/Localization.h"

#include <fmt/format.h>

namespace tessaly {
namespace {

// The colours of curves are told apart by lightness too, and each curve has its own dashes.
constexpr std::string_view style = R"(
:root { color-scheme: light dark; --paper: #ffffff; --ink: #1c1c1c; --quiet: #5f5f5f; --line: #c9c9c9;
        --c0: #1f5fa8; --c1: #b3400f; --c2: #2f7d32; --c3: #7b3fa0; --c4: #8a6d00; --c5: #00707a; }
@media (prefers-color-scheme: dark) {
  :root { --paper: #1f1f1f; --ink: #e6e6e6; --quiet: #a8a8a8; --line: #4a4a4a;
          --c0: #7fb4ee; --c1: #f0935f; --c2: #86cf89; --c3: #cfa0ea; --c4: #e2c35a; --c5: #6fd0d8; }
}
body { margin: 2rem auto; max-width: 52rem; padding: 0 1rem; background: var(--paper); color: var(--ink);
       font: 16px/1.5 system-ui, sans-serif; }
h1 { font-size: 1.6rem; } h2 { font-size: 1.2rem; margin-top: 2rem; }
p, figcaption { color: var(--quiet); max-width: 44rem; }
table { border-collapse: collapse; } figure { margin: 1rem 0; } svg { max-width: 100%; height: auto; }
td, th { padding: 0.2rem 1.2rem 0.2rem 0; border-bottom: 1px solid var(--line); text-align: right;
         font-variant-numeric: tabular-nums; }
td:first-child, th:first-child { text-align: left; }
svg text { fill: var(--ink); font: 13px system-ui, sans-serif; }
svg .grid { stroke: var(--line); } svg .frame { stroke: var(--quiet); fill: none; }
svg .curve { fill: none; stroke-width: 2; }
)";

}  // namespace

ReportPage::ReportPage(std::string_view title) : title_(title) {
  element("h1", title);
}

void ReportPage::heading(std::string_view text) {
  element("h2", text);
}

void ReportPage::paragraph(std::string_view text) {
  element("p", text);
}

void ReportPage::table(const ReportTable& table) {
  body_ += "<table>\n";
  if (!table.header.empty()) row("th", table.header);
  for (const std::vector<std::string>& cells : table.rows)
    row("td", cells);
  body_ += "</table>\n";
}

void ReportPage::figure(std::string_view svg, std::string_view caption) {
  body_.append("<figure>\n").append(svg);
  element("figcaption", caption);
  body_ += "</figure>\n";
}

std::string ReportPage::html() const {
  return fmt::format(
      "<!DOCTYPE html>\n<html lang=\"{}\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width\">\n<title>{}</title>\n<style>{}</style>\n</head>\n"
      "<body>\n{}</body>\n</html>\n",
      spoken(Localization::language()).tag, escaped(title_), style, body_);
}

std::string ReportPage::escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char character : text) {
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\'':
        result += "&#39;";
        break;
      default:
        result += character;
    }
  }
  return result;
}

void ReportPage::element(std::string_view name, std::string_view text) {
  body_ += fmt::format("<{0}>{1}</{0}>\n", name, escaped(text));
}

void ReportPage::row(std::string_view cell, const std::vector<std::string>& cells) {
  body_ += "<tr>";
  for (const std::string& text : cells)
    body_ += fmt::format("<{0}>{1}</{0}>", cell, escaped(text));
  body_ += "</tr>\n";
}

}  // namespace tessaly
