// A report as a web page: one file without scripts and without anything from elsewhere, readable in light and dark, on
// screen and on paper. Headings, paragraphs, tables and drawings follow one another as they are added.
//
// Texts are given as they are to be read; the page escapes them. Not for several threads on one page.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The first cell of a row names it; the others are numbers, or texts as short as numbers.
struct ReportTable {
  std::vector<std::string> header;  ///< may be empty
  std::vector<std::vector<std::string>> rows;
};

class ReportPage {
 public:
  /// `title` is the page's title and its first heading.
  explicit ReportPage(std::string_view title);

  void heading(std::string_view text);
  void paragraph(std::string_view text);
  void table(const ReportTable& table);
  /// A drawing, given as SVG, and what it shows.
  void figure(std::string_view svg, std::string_view caption);

  /// The whole file, in the language of the interface.
  [[nodiscard]] std::string html() const;

  /// A text with the five characters that mean something in HTML and SVG written otherwise.
  [[nodiscard]] static std::string escaped(std::string_view text);

 private:
  void element(std::string_view name, std::string_view text);
  void row(std::string_view cell, const std::vector<std::string>& cells);

  std::string title_;
  std::string body_;
};

}  // namespace tessaly
