#include "app/widgets/LocalizedLabel.h"

#include "app/widgets/QtText.h"
#include "localization/Shown.h"
#include "platform/VisibleText.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QKeyEvent>
#include <QResizeEvent>
#include <utility>

namespace tessaly {
namespace {

// Wide enough for the end of a path; layouts give such a label whatever is left.
constexpr int minimumCharacters = 12;
constexpr int hintedCharacters = 30;

}  // namespace

LocalizedLabel::LocalizedLabel(std::string sourceText, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setStringValue(std::move(sourceText));
}

void LocalizedLabel::setStringValue(std::string sourceText) {
  sourceText_ = std::move(sourceText);
  show([this] { return L(sourceText_); }, {});
}

void LocalizedLabel::setName(std::string_view name, std::string_view detail) {
  sourceText_.clear();
  show([name = visibleText(name)] { return name; }, visibleText(detail));
}

void LocalizedLabel::setComposed(TextSource text) {
  sourceText_.clear();
  show(std::move(text), {});
}

void LocalizedLabel::show(TextSource text, const std::string& detail) {
  text_ = std::move(text);
  detail_ = toQt(detail);
  refreshLanguage();
}

std::string LocalizedLabel::stringValue() const {
  return fromQt(full_);
}

void LocalizedLabel::refreshLanguage() {
  const Localization::ShownWording shown;
  full_ = toQt(visibleLines(text_()));
  showText();
}

void LocalizedLabel::setLines(int lines, Elision elision) {
  lines_ = lines;
  elision_ = elision;
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setAlignment(lines > 1 ? Qt::AlignLeft | Qt::AlignTop : Qt::AlignLeft | Qt::AlignVCenter);
  showText();
}

void LocalizedLabel::setWidestWord(int width) {
  widestWord_ = width;
  showText();
}

void LocalizedLabel::announce() {
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

QSize LocalizedLabel::sizeHint() const {
  if (lines_ == 0) return QLabel::sizeHint();
  return {fontMetrics().averageCharWidth() * hintedCharacters, heightOfLines()};
}

QSize LocalizedLabel::minimumSizeHint() const {
  if (lines_ == 0) return QLabel::minimumSizeHint();
  return {fontMetrics().horizontalAdvance(QLatin1Char('0')) * minimumCharacters, heightOfLines()};
}

void LocalizedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  if (lines_ > 0 && event->oldSize().width() != event->size().width()) showText();
}

void LocalizedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange && lines_ > 0) showText();
}

void LocalizedLabel::copy() {
  if (!hasSelectedText()) return;
  const bool isAll = selectedText().size() == text().size();
  QApplication::clipboard()->setText(isAll ? full_ : selectedText());
}

void LocalizedLabel::selectAll() {
  setSelection(0, static_cast<int>(text().size()));
}

void LocalizedLabel::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copy();
  QLabel::keyPressEvent(event);
}

void LocalizedLabel::showText() {
  if (lines_ == 0) return setText(widestWord_ > 0 ? brokenText(full_, font(), widestWord_) : full_);
  const QString fitted = fittedText(full_, font(), contentsRect().width(), lines_, elision_);
  setText(fitted);
  setAccessibleName(full_);
  const QString whole = fitted == full_ ? QString() : full_;
  setToolTip(plainToolTip(detail_.isEmpty() ? whole : detail_));
}

int LocalizedLabel::heightOfLines() const {
  const QMargins margins = contentsMargins();
  return lines_ * fontMetrics().lineSpacing() + margins.top() + margins.bottom() + 2;
}

void LocalizedLabel::setRelativeFont(double size, bool bold) {
  relativeSize_ = size;
  bold_ = bold;
  followFont();
}

void LocalizedLabel::followFont() {
  if (relativeSize_ == 1 && !bold_) return;
  QFont font = QApplication::font(this);
  font.setBold(bold_);
  font.setPointSizeF(QFontInfo(font).pointSizeF() * relativeSize_);
  setFont(font);
}

void makeHeading(LocalizedLabel& label, double size) {
  label.setRelativeFont(size, true);
}

void makeNote(LocalizedLabel& label) {
  constexpr double noteSize = 0.92;
  label.setRelativeFont(noteSize, false);
  label.setForegroundRole(QPalette::PlaceholderText);
  label.setWordWrap(true);
}

}  // namespace tessaly
