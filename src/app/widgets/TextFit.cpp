#include "app/widgets/TextFit.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <limits>

namespace tessaly {
namespace {

/// The end of the first line of `text`.
qsizetype firstLineLength(const QString& text, const QFont& font, int width) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(width);
  const qsizetype length = line.isValid() ? line.textLength() : text.size();
  layout.endLayout();
  return length;
}

Qt::TextElideMode mode(Elision elision) {
  return elision == Elision::middle ? Qt::ElideMiddle : Qt::ElideRight;
}

bool hasLongWord(const QString& paragraph, const QFontMetrics& metrics, int width) {
  const QStringList words = paragraph.split(QLatin1Char(' '));
  return std::ranges::any_of(words, [&](const QString& word) { return metrics.horizontalAdvance(word) > width; });
}

}  // namespace

QString fittedText(const QString& text, const QFont& font, int width, int lines, Elision elision) {
  const QFontMetrics metrics(font);
  QStringList fitted;
  QString rest = text;
  while (fitted.size() + 1 < lines && metrics.horizontalAdvance(rest) > width) {
    const qsizetype length = firstLineLength(rest, font, width);
    fitted << rest.left(length).trimmed();
    rest = rest.mid(length);
  }
  fitted << metrics.elidedText(rest, mode(elision), width);
  return fitted.join(QLatin1Char('\n'));
}

QString brokenText(const QString& text, const QFont& font, int width) {
  const QFontMetrics metrics(font);
  QStringList paragraphs = text.split(QLatin1Char('\n'));
  for (QString& paragraph : paragraphs) {
    if (hasLongWord(paragraph, metrics, width))
      paragraph = fittedText(paragraph, font, width, std::numeric_limits<int>::max(), Elision::end);
  }
  return paragraphs.join(QLatin1Char('\n'));
}

}  // namespace tessaly
