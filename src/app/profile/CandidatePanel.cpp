#include "app/profile/CandidatePanel.h"

#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WindowState.h"
#include "app/widgets/WrapLayout.h"
#include "presentation/CalibrationTexts.h"

#include <QBoxLayout>
#include <QHeaderView>

namespace tessaly {
namespace {

constexpr const char* headerKey = "tableColumns";
constexpr int lastColumn = static_cast<int>(candidateColumns.size()) - 1;

QComboBox* kindPopUp() {
  QComboBox* const popUp = Controls::popUp("Kind", {"All Kinds"});
  for (const CandidateTexts::Kind kind : CandidateTexts::kinds)
    popUp->addItem(localized(CandidateTexts::name(kind)));
  return popUp;
}

}  // namespace

CandidatePanel::CandidatePanel(CandidateStore& store, QWidget* parent)
    : QWidget(parent),
      kindFilter(kindPopUp()),
      confidenceThreshold(Controls::field(
          "Pixel confidence ≥", 5, "Select pixels at or above this confidence. Columns and spots still need review.")),
      matchingButton(Controls::button("Select Matching Pixels")),
      selectAllButton(Controls::button("Select All")),
      deselectAllButton(Controls::button("Deselect All")),
      excludeUnconfirmedButton(Controls::button("Exclude what is not confirmed")),
      store_(store),
      model_(new CandidateTableModel(store, this)),
      order_(new CandidateOrder(*model_, this)),
      heading_(new LocalizedLabel("Detected Candidates (red: excluded, green: included)")),
      count_(new LocalizedLabel) {
  table = new CandidateTable(store, *order_);
  table->setAccessibleName(QString::fromStdString(heading_->stringValue()));
  confidenceThreshold->setText(QStringLiteral("98"));
  makeHeading(*heading_);
  heading_->setWordWrap(true);
  count_->setForegroundRole(QPalette::PlaceholderText);
  count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  layOut();
  connectControls();
  restoreColumns();
  showCount();
}

void CandidatePanel::layOut() {
  auto* filterRow = Controls::onGrid<QHBoxLayout>(Metrics::grid);
  filterRow->addWidget(kindFilter);
  filterRow->addWidget(count_, 1);
  auto* threshold = new WrapLayout;
  threshold->addWidget(Controls::caption("Pixel confidence ≥", *confidenceThreshold));
  threshold->addWidget(confidenceThreshold);
  threshold->addWidget(matchingButton);
  auto* all = new WrapLayout;
  all->addWidget(selectAllButton);
  all->addWidget(deselectAllButton);
  all->addWidget(excludeUnconfirmedButton);
  excludeUnconfirmedButton->hide();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Metrics::grid);
  column->addWidget(heading_);
  column->addLayout(filterRow);
  column->addWidget(table, 1);
  column->addLayout(threshold);
  column->addLayout(all);
}

void CandidatePanel::connectControls() {
  connect(kindFilter, &QComboBox::currentIndexChanged, this, [this](int item) {
    order_->setKind(item > 0 ? std::optional(CandidateTexts::kinds[static_cast<std::size_t>(item) - 1]) : std::nullopt);
  });
  connect(matchingButton, &QPushButton::clicked, this, &CandidatePanel::matchingRequested);
  connect(confidenceThreshold, &QLineEdit::returnPressed, this, &CandidatePanel::matchingRequested);
  connect(selectAllButton, &QPushButton::clicked, this, [this] { includeAll(true); });
  connect(deselectAllButton, &QPushButton::clicked, this, [this] { includeAll(false); });
  connect(excludeUnconfirmedButton, &QPushButton::clicked, this, &CandidatePanel::excludeUnconfirmed);
  connect(&store_, &CandidateStore::inclusionChanged, this, &CandidatePanel::showCount);
  connect(&store_, &CandidateStore::wasReset, this,
          [this] { excludeUnconfirmedButton->setVisible(store_.isOpinionShown()); });
}

// Rows that wrap need more height where there is less width; what lies around must not cover them.
void CandidatePanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  setMinimumHeight(layout()->minimumHeightForWidth(width()));
}

void CandidatePanel::select(int row) {
  if (!order_->shows(row)) kindFilter->setCurrentIndex(0);
  table->selectCandidate(row);
}

// All of the candidates that can be included, whatever the filter shows.
void CandidatePanel::includeAll(bool included) {
  store_.setIncluded(store_.includableRows(), included);
}

void CandidatePanel::excludeUnconfirmed() {
  const std::vector<int> rows = store_.includedUnconfirmed();
  store_.setIncluded(rows, false);
  emit unconfirmedExcluded(static_cast<int>(rows.size()));
}

void CandidatePanel::showCount() {
  count_->setComposed([this] { return CalibrationTexts::includedCount(store_.includedCount(), store_.count()); });
}

void CandidatePanel::refreshLanguage() {
  model_->refreshLanguage();
  table->setAccessibleName(QString::fromStdString(heading_->stringValue()));
}

void CandidatePanel::saveState() const {
  QVariantList widths;
  for (int column = 0; column < lastColumn; ++column)
    widths << table->columnWidth(column);
  WindowState::setValue(headerKey, widths);
}

void CandidatePanel::restoreColumns() {
  const QVariantList stored = WindowState::value(headerKey).toList();
  for (int column = 0; column < lastColumn; ++column) {
    const int width = stored.value(column).toInt();
    table->setColumnWidth(
        column, width > 0 ? width : Metrics::scaled(candidateColumns[static_cast<std::size_t>(column)].width));
  }
}

}  // namespace tessaly
