#include "app/widgets/AlertPageView.h"

#include "app/widgets/Metrics.h"

#include <QBoxLayout>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace tessaly {
namespace {

constexpr int fewestDetails = 3;  // lines that are in view on any screen

void setFixedText(LocalizedLabel& label, int width) {
  label.setWidestWord(width);
  label.setFixedSize(width, label.hasHeightForWidth() ? label.heightForWidth(width) : label.sizeHint().height());
}

}  // namespace

AlertPageView::AlertPageView(std::function<AlertPage()> page) : page_(std::move(page)), area_(new QScrollArea) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Metrics::grid);
  first_ = addLabel(&AlertPage::first);
  emphasis_ = addLabel(&AlertPage::emphasis);
  makeHeading(*emphasis_);
  addDetails();
  note_ = addLabel(&AlertPage::note);
  note_->setForegroundRole(QPalette::PlaceholderText);
  last_ = addLabel(&AlertPage::last);
  for (QWidget* part : QList<QWidget*>{first_, emphasis_, area_, note_, last_})
    column->addWidget(part);
}

LocalizedLabel* AlertPageView::addLabel(std::string AlertPage::*part) {
  auto* label = new LocalizedLabel;
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setComposed([this, part] { return page_().*part; });
  return label;
}

void AlertPageView::addDetails() {
  details_ = addLabel(&AlertPage::details);
  area_->setFrameShape(QFrame::NoFrame);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area_->setWidget(details_);
}

int AlertPageView::heightOfOthers() const {
  int height = 0;
  for (const QWidget* part : QList<QWidget*>{first_, emphasis_, note_, last_})
    if (!part->isHidden()) height += part->height() + Metrics::grid;
  return height;
}

void AlertPageView::fit(int width, int highest) {
  for (LocalizedLabel* part : {first_, emphasis_, note_, last_}) {
    part->setVisible(!part->stringValue().empty());
    setFixedText(*part, width);
  }
  area_->setVisible(!details_->stringValue().empty());
  const int fewest = fewestDetails * fontMetrics().lineSpacing();
  const int most = std::max(highest - heightOfOthers(), fewest);
  setFixedText(*details_, width);
  const bool scrolls = details_->height() > most;
  if (scrolls) setFixedText(*details_, width - area_->verticalScrollBar()->sizeHint().width());
  area_->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
  area_->setFixedSize(width, std::min(details_->height(), most));
  const int details = area_->isHidden() ? 0 : area_->height() + Metrics::grid;
  setFixedSize(width, heightOfOthers() + details - Metrics::grid);
}

}  // namespace tessaly
