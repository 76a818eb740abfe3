#include "localization/Localization.h"
#include "presentation/ReportPage.h"
#include "presentation/ReportPlot.h"

#include <gmock/gmock.h>

namespace tessaly {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(ReportPage, PutsItsPartsBelowOneAnother) {
  Localization::setLanguageOverride(AppLanguage::chinese);
  ReportPage page("Body");
  page.heading("Noise");
  page.table({{"Setting", "Noise"}, {{"ISO 100", "2 u"}}});
  page.figure("<svg></svg>\n", "what it shows");
  const std::string html = page.html();
  Localization::setLanguageOverride(std::nullopt);
  EXPECT_THAT(html, HasSubstr("<html lang=\"zh-Hans\">"));
  EXPECT_THAT(html, HasSubstr("<title>Body</title>"));
  EXPECT_THAT(html, HasSubstr("<h1>Body</h1>\n<h2>Noise</h2>\n<table>\n<tr><th>Setting</th><th>Noise</th></tr>\n"
                              "<tr><td>ISO 100</td><td>2 u</td></tr>\n</table>\n<figure>\n<svg></svg>\n"
                              "<figcaption>what it shows</figcaption>\n</figure>\n</body>"));
}

TEST(ReportPage, TakesNothingForMarkup) {
  ReportPage page("<b>\"A & B's\"</b>");
  page.paragraph("<script>");
  page.table({{}, {{"</table>"}}});
  EXPECT_THAT(page.html(), HasSubstr("<h1>&lt;b&gt;&quot;A &amp; B&#39;s&quot;&lt;/b&gt;</h1>"));
  EXPECT_THAT(page.html(), Not(HasSubstr("<script")));
  EXPECT_THAT(page.html(), HasSubstr("<td>&lt;/table&gt;</td>"));
}

TEST(ReportPage, NeedsNothingFromElsewhere) {
  const std::string html = ReportPage("Body").html();
  for (const char* outside : {"http:", "https:", "src=", "@import", "url("})
    EXPECT_THAT(html, Not(HasSubstr(outside)));
}

TEST(ReportPlot, RunsOverWholeDecades) {
  Localization::setLanguageOverride(AppLanguage::english);
  const LogPlot plot{"departure, u", "photosites", {{"ISO 100", {{0.05, 2000}, {30, 4}}}, {"<b>", {{1, 90}}}}};
  const std::string svg = plot.svg();
  for (const char* tick : {">0.01<", ">1<", ">100<", ">1000<", ">10000<"})
    EXPECT_THAT(svg, HasSubstr(tick));
  EXPECT_THAT(svg, Not(HasSubstr(">1000000<")));
  EXPECT_THAT(svg, HasSubstr("&lt;b&gt;"));
  // x: 0.01 … 100 in 650, y: 1 … 10000 in 328; 1 lies in the middle of the first axis.
  EXPECT_THAT(svg, HasSubstr("points=\"415.0,183.8 \""));
  Localization::setLanguageOverride(std::nullopt);
}

TEST(ReportPlot, IsEmptyWithoutAPositivePoint) {
  EXPECT_EQ((LogPlot{"x", "y", {{"none", {{0, 5}, {5, 0}}}}}).svg(), "");
}

TEST(ReportPlot, GivesASinglePointADecade) {
  EXPECT_THAT((LogPlot{"x", "y", {{"one", {{1, 1}}}}}).svg(), HasSubstr("points=\"90.0,344.0 \""));
}

}  // namespace
}  // namespace tessaly
