#include "app/profile/CandidateTable.h"

#include "app/preview/PreviewPainter.h"
#include "app/widgets/Metrics.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace tessaly {

CandidateTable::CandidateTable(CandidateStore& store, CandidateOrder& order, QWidget* parent)
    : QTableView(parent), store_(store), order_(order) {
  setModel(&order);
  setItemDelegateForColumn(CandidateTableModel::include, new InclusionDelegate(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);  // Tab leaves the table: everything else is reached by it
  setHorizontalScrollMode(ScrollPerPixel);
  setUpHeader();
  setRowHeight();
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &CandidateTable::candidateSelectionChanged);
  connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, &CandidateTable::candidateSelectionChanged);
}

void CandidateTable::setUpHeader() {
  setSortingEnabled(true);
  QHeaderView& header = *horizontalHeader();
  header.setSortIndicatorClearable(true);  // the third click
  header.setSortIndicator(-1, Qt::AscendingOrder);
  header.setMinimumSectionSize(Metrics::targetHeight);
  connect(&header, &QHeaderView::sectionResized, this, [this](int column) {
    if (column != CandidateTableModel::reason) fitReason();
  });
  header.setHighlightSections(false);
  header.setSectionsMovable(false);
  verticalHeader()->hide();
}

// The reason takes what the other columns leave, but never less than it can be told by; then the table scrolls.
void CandidateTable::fitReason() {
  constexpr int fewestCharacters = 12;
  const QHeaderView& header = *horizontalHeader();
  const int others = header.sectionPosition(CandidateTableModel::reason);
  const int least = fontMetrics().averageCharWidth() * fewestCharacters;
  setColumnWidth(CandidateTableModel::reason, std::max(viewport()->width() - others, least));
}

void CandidateTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fitReason();
}

// All rows are alike; without this a table of thousands would measure each.
void CandidateTable::setRowHeight() {
  QHeaderView& rows = *verticalHeader();
  rows.setSectionResizeMode(QHeaderView::Fixed);
  const int height = std::max(Metrics::targetHeight, fontMetrics().height() + Metrics::grid);
  rows.setMinimumSectionSize(height);
  rows.setDefaultSectionSize(height);
}

void CandidateTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  setRowHeight();
  fitReason();
}

int CandidateTable::candidateAt(const QModelIndex& index) const {
  return order_.mapToSource(index).row();
}

std::set<int> CandidateTable::selectedCandidates() const {
  std::set<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row)
      rows.insert(candidateAt(order_.index(row, 0)));
  }
  return rows;
}

std::optional<int> CandidateTable::currentCandidate() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return std::nullopt;
  return candidateAt(current);
}

void CandidateTable::selectCandidate(int row) {
  const QModelIndex shown = order_.mapFromSource(order_.sourceModel()->index(row, CandidateTableModel::kind));
  if (!shown.isValid()) return clearSelection();
  setCurrentIndex(shown);
  scrollTo(shown);
}

void CandidateTable::step(int rows) {
  if (order_.rowCount() == 0) return;
  const QModelIndex current = currentIndex();
  const int next = current.isValid() ? current.row() + rows : 0;
  setCurrentIndex(order_.index(std::clamp(next, 0, order_.rowCount() - 1), CandidateTableModel::kind));
}

void CandidateTable::toggleSelected() {
  const QModelIndexList selected = selectedIndexes();
  if (currentIndex().isValid()) {
    toggleFrom(currentIndex());
  } else if (!selected.isEmpty()) {
    toggleFrom(selected.constFirst());
  }
}

void CandidateTable::toggleFrom(const QModelIndex& index) {
  const int row = candidateAt(index);
  std::set<int> rows = selectedCandidates();
  if (!rows.contains(row)) rows = {row};
  store_.setIncluded({rows.begin(), rows.end()}, !store_.isIncluded(row));
}

bool CandidateTable::isCheckBox(const QModelIndex& index, QPoint position) const {
  if (!index.isValid() || index.column() != CandidateTableModel::include) return false;
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  option.rect = visualRect(index);
  return InclusionDelegate::checkBox(option).adjusted(-4, -4, 4, 4).contains(position);
}

// A click on a check box of several selected rows toggles them all and leaves them selected.
void CandidateTable::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || !isCheckBox(index, event->position().toPoint()))
    return QTableView::mousePressEvent(event);
  setFocus(Qt::MouseFocusReason);
  if (!selectionModel()->isSelected(index)) setCurrentIndex(index);
  toggleFrom(index);
}

void CandidateTable::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (isCheckBox(index, event->position().toPoint())) return mousePressEvent(event);
  QTableView::mouseDoubleClickEvent(event);
}

void CandidateTable::keyPressEvent(QKeyEvent* event) {
  const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (plain && event->key() == Qt::Key_Space) return toggleSelected();
  if (plain && event->key() == Qt::Key_Delete) return emit removeRequested();
  if (!plain || !isReturn) return QTableView::keyPressEvent(event);
  if (const auto row = currentCandidate()) emit centreRequested(*row);
}

void InclusionDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem background = option;
  initStyleOption(&background, index);
  background.features &= ~QStyleOptionViewItem::HasCheckIndicator;
  QStyle& style = *option.widget->style();
  style.drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);

  const bool included = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  QStyleOptionViewItem check = option;
  check.rect = checkBox(option);
  check.state.setFlag(QStyle::State_On, included);
  check.state.setFlag(QStyle::State_Off, !included);
  check.state.setFlag(QStyle::State_Enabled, index.flags().testFlag(Qt::ItemIsUserCheckable));
  style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &check, painter, option.widget);
  const int side = check.rect.height() - 2;
  const QRect dot(check.rect.right() + Metrics::grid, check.rect.center().y() - side / 2, side, side);
  drawInclusionDot(*painter, dot, included);
}

QRect InclusionDelegate::checkBox(const QStyleOptionViewItem& option) {
  const QStyle& style = option.widget ? *option.widget->style() : *QApplication::style();
  const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget),
                   style.pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget));
  const QPoint corner(option.rect.left() + Metrics::grid, option.rect.center().y() - size.height() / 2);
  return {corner, size};
}

QSize InclusionDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
  const QSize box = checkBox(option).size();
  return {2 * box.width() + 3 * Metrics::grid, box.height()};
}

}  // namespace tessaly
