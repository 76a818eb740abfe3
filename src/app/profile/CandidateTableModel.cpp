#include "app/profile/CandidateTableModel.h"

#include "app/widgets/Icons.h"
#include "app/widgets/QtText.h"
#include "presentation/DuplicateColumns.h"
#include "presentation/SecondOpinionTexts.h"

#include <utility>

namespace tessaly {
namespace {

using Column = CandidateTableModel::Column;

constexpr int columnCountOfAll = static_cast<int>(candidateColumns.size());
static_assert(columnCountOfAll == CandidateTableModel::reason + 1, "A column is told in one place only");

Column columnOf(const QModelIndex& index) {
  return static_cast<Column>(index.column());
}

const CandidateColumn& candidateColumn(int column) {
  return candidateColumns.at(static_cast<std::size_t>(column));
}

QVariant alignment(int column) {
  return QVariant::fromValue((candidateColumn(column).isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

}  // namespace

CandidateTableModel::CandidateTableModel(CandidateStore& store, QObject* parent)
    : QAbstractTableModel(parent), store_(store) {
  connect(&store_, &CandidateStore::aboutToReset, this, [this] { beginResetModel(); });
  connect(&store_, &CandidateStore::wasReset, this, [this] {
    findDuplicates();
    endResetModel();
  });
  connect(&store_, &CandidateStore::aboutToAppend, this,
          [this] { beginInsertRows({}, store_.count(), store_.count()); });
  connect(&store_, &CandidateStore::appended, this, [this] {
    findDuplicates();
    endInsertRows();
  });
  connect(&store_, &CandidateStore::aboutToRemove, this, [this](int row) { beginRemoveRows({}, row, row); });
  connect(&store_, &CandidateStore::removed, this, [this] {
    findDuplicates();
    endRemoveRows();
  });
  connect(&store_, &CandidateStore::inclusionChanged, this, [this] {
    if (store_.count() > 0) emit dataChanged(index(0, include), index(store_.count() - 1, include));
  });
}

int CandidateTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : store_.count();
}

int CandidateTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnCountOfAll;
}

QVariant CandidateTableModel::text(const QModelIndex& index) const {
  const CalibrationCandidate& candidate = store_.at(index.row());
  switch (columnOf(index)) {
    case include:
      break;
    case kind:
      return toQt(CandidateTexts::kind(candidate, store_.metadata()));
    case position:
      return toQt(CandidateTexts::position(candidate, store_.metadata()));
    case confidence:
      return toQt(CandidateTexts::confidence(candidate));
    case reason:
      return reasonText(index.row());
  }
  return {};
}

QVariant CandidateTableModel::toolTip(const QModelIndex& index) const {
  if (index.column() != reason) return {};
  const QString opinion = opinionText(index.row());
  const QString words = reasonText(index.row());
  return plainToolTip(opinion.isEmpty() ? words : words + QLatin1Char('\n') + opinion);
}

QVariant CandidateTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const bool isInclude = index.column() == include;
  switch (role) {
    case Qt::DisplayRole:
      return text(index);
    case Qt::CheckStateRole:
      return isInclude ? QVariant(store_.isIncluded(index.row()) ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::TextAlignmentRole:
      return alignment(index.column());
    case Qt::ToolTipRole:
      return toolTip(index);
    case Qt::DecorationRole:
      return index.column() == kind && store_.isProposed(index.row()) ? QVariant(tintedIcon("second")) : QVariant();
    case Qt::AccessibleTextRole:
      return isInclude ? QVariant(localized("Include")) : text(index);
    default:
      return {};
  }
}

bool CandidateTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || index.column() != include || role != Qt::CheckStateRole) return false;
  if (!store_.isIncludable(index.row())) return false;
  store_.setIncluded({index.row()}, value.toInt() == Qt::Checked);
  return true;
}

Qt::ItemFlags CandidateTableModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags plain = QAbstractTableModel::flags(index);
  const bool isCheckBox = index.isValid() && index.column() == include && store_.isIncludable(index.row());
  return isCheckBox ? plain | Qt::ItemIsUserCheckable : plain;
}

QVariant CandidateTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCountOfAll) return {};
  switch (role) {
    case Qt::DisplayRole:
      return localized(candidateColumn(section).title);
    case Qt::InitialSortOrderRole:
      return candidateColumn(section).isNumber ? Qt::DescendingOrder : Qt::AscendingOrder;
    case Qt::TextAlignmentRole:
      return alignment(section);
    default:
      return {};
  }
}

QString CandidateTableModel::reasonText(int row) const {
  const CalibrationCandidate& candidate = store_.at(row);
  QString& words = reasons_[toQt(candidate.reason)];
  if (words.isEmpty()) words = toQt(CandidateTexts::reason(candidate));
  QStringList parts;
  if (const auto mark = SecondOpinionTexts::mark(store_.isProposed(row), store_.confirmed(row))) parts << toQt(*mark);
  const auto column = insideColumns_.find(candidate.id);
  if (column != insideColumns_.end()) parts << toQt(DuplicateColumns::mark(column->second, store_.metadata()));
  parts << words;
  return parts.join(QStringLiteral(" · "));
}

QString CandidateTableModel::opinionText(int row) const {
  if (const SecondOpinionFinding* finding = store_.proposal(row))
    return toQt(SecondOpinionTexts::advice(*finding, fNumber_));
  const std::optional<bool> confirmed = store_.confirmed(row);
  return confirmed ? toQt(SecondOpinionTexts::meaning(*confirmed)) : QString();
}

void CandidateTableModel::findDuplicates() {
  insideColumns_ = DuplicateColumns::linesInsideColumns(store_.candidates(), store_.metadata());
}

void CandidateTableModel::refreshLanguage() {
  reasons_.clear();
  emit headerDataChanged(Qt::Horizontal, 0, columnCountOfAll - 1);
  if (store_.count() > 0) emit dataChanged(index(0, 0), index(store_.count() - 1, columnCountOfAll - 1));
}

CandidateOrder::CandidateOrder(CandidateTableModel& model, QObject* parent)
    : QSortFilterProxyModel(parent), model_(model) {
  setDynamicSortFilter(false);  // a row that has just been toggled stays under the mouse
  setSourceModel(&model);
}

void CandidateOrder::setKind(std::optional<CandidateTexts::Kind> kind) {
  kind_ = kind;
  invalidateFilter();
}

bool CandidateOrder::filterAcceptsRow(int row, const QModelIndex&) const {
  const CandidateStore& store = model_.store();
  return !kind_ || CandidateTexts::kindOf(store.at(row), store.metadata()) == *kind_;
}

bool CandidateOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  const CandidateStore& store = model_.store();
  const CalibrationCandidate& first = store.at(left.row());
  const CalibrationCandidate& second = store.at(right.row());
  switch (columnOf(left)) {
    case CandidateTableModel::include:
      return store.isIncluded(left.row()) > store.isIncluded(right.row());
    case CandidateTableModel::kind:
      return CandidateTexts::kindOf(first, store.metadata()) < CandidateTexts::kindOf(second, store.metadata());
    case CandidateTableModel::position:
      return std::pair(first.x, first.yStart) < std::pair(second.x, second.yStart);
    case CandidateTableModel::confidence:
      return first.confidence < second.confidence;
    case CandidateTableModel::reason:
      return model_.reasonText(left.row()).localeAwareCompare(model_.reasonText(right.row())) < 0;
  }
  return false;
}

}  // namespace tessaly
