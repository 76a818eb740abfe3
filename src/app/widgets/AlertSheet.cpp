#include "app/widgets/AlertSheet.h"

#include "app/widgets/AlertPageView.h"
#include "app/widgets/Icons.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>
#include <algorithm>
#include <utility>

namespace tessaly {
namespace {

constexpr int narrowest = 300;
constexpr int widest = 560;
constexpr int iconSize = 48;
constexpr double alertShareOfScreen = 0.6;

const char* iconName(Alert::Style style) {
  switch (style) {
    case Alert::Style::plain:
      return "tessaly";
    case Alert::Style::informational:
      return "informational";
    case Alert::Style::warning:
      return "warning";
    case Alert::Style::critical:
      break;
  }
  return "critical";
}

QLabel* makeIcon(Alert::Style style) {
  auto* icon = new QLabel;
  const int size = Metrics::scaled(iconSize);
  icon->setPixmap(colouredIcon(iconName(style)).pixmap(QSize(size, size), icon->devicePixelRatioF()));
  icon->setAlignment(Qt::AlignTop);
  return icon;
}

LocalizedLabel* makeTextLabel() {
  auto* label = new LocalizedLabel;
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

QList<AlertSheet*> sheets(QWidget& window) {
  return window.findChildren<AlertSheet*>(Qt::FindDirectChildrenOnly);
}

}  // namespace

void AlertSheet::show(QWidget& window, Alert alert, Panels::ButtonHandler answered) {
  const bool isFirst = sheets(window).isEmpty();
  auto* sheet = new AlertSheet(window, std::move(alert), std::move(answered));
  if (isFirst) sheet->setVisible(true);
}

AlertSheet::AlertSheet(QWidget& window, Alert alert, Panels::ButtonHandler answered)
    : QDialog(&window), alert_(std::move(alert)), answered_(std::move(answered)) {
  setWindowModality(Qt::ApplicationModal);  // nothing else goes on until it is answered, whichever window it is over
  setWindowTitle(localized("Tessaly"));
  auto* line = new QHBoxLayout;
  line->setSpacing(Metrics::groupSpacing);
  line->addWidget(makeIcon(alert_.style));
  line->addWidget(makeText(), 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Metrics::windowMargin, Metrics::windowMargin, Metrics::windowMargin,
                             Metrics::windowMargin);
  column->setSpacing(Metrics::groupSpacing);
  column->addLayout(line, 1);
  column->addWidget(makeButtons());
}

QWidget* AlertSheet::makeText() {
  if (alert_.page) return page_ = new AlertPageView(alert_.page);
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  text_ = makeTextLabel();
  text_->setComposed(alert_.text);
  column->addWidget(text_);
  if (!alert_.informativeText.empty()) {
    makeHeading(*text_);
    informativeText_ = makeTextLabel();
    informativeText_->setStringValue(alert_.informativeText);
    column->addWidget(informativeText_);
  }
  column->addStretch(1);
  scrollArea_ = new QScrollArea;
  scrollArea_->setFrameShape(QFrame::NoFrame);
  scrollArea_->setWidgetResizable(true);
  scrollArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scrollArea_->setWidget(content);
  return scrollArea_;
}

QWidget* AlertSheet::makeButtons() {
  auto* row = new QWidget(this);  // the dialog takes note of a focus inside it only
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->addStretch(1);
  for (std::size_t index = 0; index < alert_.buttons.size(); ++index) {
    auto* button = new QPushButton(localized(alert_.buttons[index]));
    button->setAutoDefault(false);
    button->setDefault(index == alert_.defaultButton);
    connect(button, &QPushButton::clicked, this, [this, index] { answer(index); });
    line->addWidget(button);
    if (index == alert_.defaultButton) button->setFocus();
  }
  return row;
}

void AlertSheet::refreshLanguage() {
  page_ ? fitToPage() : fitToText();
}

void AlertSheet::showEvent(QShowEvent* event) {
  page_ ? fitToPage() : fitToText();
  QDialog::showEvent(event);
  page_ ? page_->announce() : text_->announce();
}

void AlertSheet::fitToPage() {
  const int limit = static_cast<int>(screen()->availableGeometry().height() * alertShareOfScreen);
  page_->fit(Metrics::scaled(widest), limit);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  layout()->activate();  // its size decides where the window is put
}

// Room for the whole text, as far as the screen allows; beyond that it scrolls.
void AlertSheet::fitToText() {
  QWidget* content = scrollArea_->widget();
  text_->setWidestWord(Metrics::scaled(widest));
  const int natural = content->sizeHint().width();
  const int preferred =
      text_->fontMetrics()
          .boundingRect(QRect(0, 0, Metrics::scaled(widest), 1 << 20), Qt::TextWordWrap, text_->text())
          .width();
  const int width = std::clamp(std::max(natural, preferred), Metrics::scaled(narrowest), Metrics::scaled(widest));
  const int height = content->heightForWidth(width);
  const int limit = static_cast<int>(screen()->availableGeometry().height() * alertShareOfScreen);
  const int scrollBar = height > limit ? scrollArea_->verticalScrollBar()->sizeHint().width() : 0;
  scrollArea_->setMinimumSize(width + scrollBar, std::min(height, limit));
  adjustSize();
}

void AlertSheet::reject() {
  answer(alert_.defaultButton);
}

// Once: the second click of a double click comes to a sheet that only waits for its end.
void AlertSheet::answer(std::size_t button) {
  if (!parentWidget()) return;
  hide();
  const QList<AlertSheet*> waiting = sheets(*parentWidget());
  const qsizetype next = waiting.indexOf(this) + 1;
  const Panels::ButtonHandler answered = std::move(answered_);
  if (next < waiting.size()) waiting[next]->setVisible(true);
  setParent(nullptr);
  deleteLater();
  if (answered) answered(button);
}

}  // namespace tessaly
