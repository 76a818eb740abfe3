#include "app/widgets/TextFit.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>

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

}  // namespace tessaly
