#include "app/widgets/Controls.h"

#include "app/widgets/Icons.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"

#include <QFrame>
#include <QListView>
#include <QShortcut>
#include <utility>

namespace tessaly::Controls {

QPushButton* button(const char* title, const char* toolTip) {
  auto* result = new QPushButton(localized(title));
  result->setAutoDefault(false);
  if (toolTip) result->setToolTip(localized(toolTip));
  return result;
}

QPushButton* folderButton(const char* title) {
  QPushButton* result = button(title);
  result->setIcon(tintedIcon("folder"));
  return result;
}

void setMainAction(QPushButton& button, bool isMain) {
  button.setDefault(isMain);
  button.update();
}

LocalizedLabel* caption(const char* title, QWidget& buddy) {
  auto* result = new LocalizedLabel(title);
  result->setBuddy(&buddy);
  return result;
}

QLineEdit* field(const char* name, int characters, const char* toolTip) {
  auto* result = new QLineEdit;
  result->setAccessibleName(localized(name));
  result->setAcceptDrops(false);  // a dropped folder is for the tab
  const int margins = 2 * Metrics::grid + 4;
  result->setFixedWidth(result->fontMetrics().horizontalAdvance(QLatin1Char('0')) * characters + margins);
  if (toolTip) result->setToolTip(localized(toolTip));
  return result;
}

QComboBox* popUp(const char* name, std::initializer_list<const char*> items) {
  auto* result = new QComboBox;
  result->setAccessibleName(localized(name));
  result->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  result->setView(new QListView(result));
  for (const char* item : items)
    result->addItem(localized(item));
  return result;
}

// A long name must not make the window wider.
QComboBox* namesPopUp(const char* name) {
  constexpr int fewestCharacters = 16;
  QComboBox* result = popUp(name);
  result->setObjectName(QLatin1String(userProfilesIdentifier));
  result->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  result->setMinimumContentsLength(fewestCharacters);
  result->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return result;
}

QComboBox* concurrentFilesPopUp(const char* name) {
  return popUp(name, {"Automatic", "1 (Lowest Memory)", "2", "3", "4"});
}

QProgressBar* progressBar() {
  auto* result = new QProgressBar;
  result->setAccessibleName(localized("Progress"));
  result->setTextVisible(false);
  result->setRange(0, 1);
  result->setValue(0);
  return result;
}

LocalizedLabel* pathLabel() {
  auto* result = new LocalizedLabel;
  result->setLines(1, Elision::middle);
  return result;
}

LocalizedLabel* statusLabel() {
  auto* result = new LocalizedLabel;
  result->setLines(2, Elision::end);
  return result;
}

QWidget* separator() {
  auto* line = new QFrame;
  line->setFixedHeight(1);
  line->setAutoFillBackground(true);
  line->setBackgroundRole(QPalette::Mid);
  return line;
}

void addShortcut(QWidget& scope, const QKeySequence& key, std::function<void()> action) {
  auto* shortcut = new QShortcut(key, &scope);
  shortcut->setContext(Qt::WidgetWithChildrenShortcut);
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &scope, std::move(action));
}

void addShortcut(QWidget& scope, const QKeySequence& key, QAbstractButton& button) {
  addShortcut(scope, key, [&button] { button.click(); });
}

void setFocusOrder(const QList<QWidget*>& widgets) {
  for (qsizetype index = 1; index < widgets.size(); ++index)
    QWidget::setTabOrder(widgets[index - 1], widgets[index]);
}

}  // namespace tessaly::Controls
