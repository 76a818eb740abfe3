#include "app/widgets/LocalizeView.h"

#include "app/widgets/FollowsLanguage.h"
#include "app/widgets/LocalizedLabel.h"
#include "app/widgets/QtText.h"
#include "localization/Shown.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>
#include <QTableView>

namespace tessaly {
namespace {

QString translated(const QString& text) {
  return localized(Localization::shownOriginal(fromQt(text)));
}

void localizeItems(QComboBox& popUp) {
  if (popUp.objectName() == QLatin1String(userProfilesIdentifier)) return;
  for (int item = 0; item < popUp.count(); ++item)
    popUp.setItemText(item, translated(popUp.itemText(item)));
  // Qt measures the smallest size once; this makes it do so again.
  QEvent remeasure(QEvent::StyleChange);
  QCoreApplication::sendEvent(&popUp, &remeasure);
}

void localizeTabs(QTabWidget& tabs) {
  for (int tab = 0; tab < tabs.count(); ++tab)
    tabs.setTabText(tab, translated(tabs.tabText(tab)));
}

// A model that translates by itself refuses the titles; the view asks it again all the same.
void localizeHeader(QTableView& table) {
  QAbstractItemModel* model = table.model();
  if (!model) return;
  for (int column = 0; column < model->columnCount(); ++column) {
    const QString title = model->headerData(column, Qt::Horizontal).toString();
    model->setHeaderData(column, Qt::Horizontal, translated(title));
  }
  table.viewport()->update();
}

void localizeTexts(QWidget& view) {
  if (auto* label = qobject_cast<QLabel*>(&view)) label->setText(translated(label->text()));
  if (auto* button = qobject_cast<QAbstractButton*>(&view)) button->setText(translated(button->text()));
  if (auto* popUp = qobject_cast<QComboBox*>(&view)) localizeItems(*popUp);
  if (auto* tabs = qobject_cast<QTabWidget*>(&view)) localizeTabs(*tabs);
  if (auto* table = qobject_cast<QTableView*>(&view)) localizeHeader(*table);
}

// A label that elides its text tells the whole text itself, and that may be a name.
bool describesItself(QWidget& view) {
  auto* label = qobject_cast<LocalizedLabel*>(&view);
  return label && label->keepsToolTip();
}

void localizeDescriptions(QWidget& view) {
  if (describesItself(view)) return;
  if (!view.toolTip().isEmpty()) view.setToolTip(translated(view.toolTip()));
  if (!view.accessibleName().isEmpty()) view.setAccessibleName(translated(view.accessibleName()));
  if (!view.windowTitle().isEmpty()) view.setWindowTitle(translated(view.windowTitle()));
}

}  // namespace

void localizeView(QWidget& view) {
  for (QObject* child : view.children()) {
    auto* widget = qobject_cast<QWidget*>(child);
    if (widget && !widget->isWindow()) localizeView(*widget);
  }
  auto* follower = dynamic_cast<FollowsLanguage*>(&view);
  if (follower) {
    follower->refreshLanguage();
  } else {
    localizeTexts(view);
  }
  localizeDescriptions(view);
}

}  // namespace tessaly
