// Every text of the whole window in three languages, there and back.
#include "app/AppDelegate.h"
#include "app/support/CalibrationTab.h"
#include "app/widgets/LocalizeView.h"
#include "localization/Shown.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <algorithm>
#include <set>
#include <string>

namespace tessaly::tests {
namespace {

class Language : public AppTest {
 protected:
  Language() {
    delegate.applicationDidFinishLaunching();
    delegate.showSettings();
  }

  /// All texts that are on view, menus included.
  [[nodiscard]] std::multiset<std::string> texts() {
    std::multiset<std::string> all;
    const auto take = [&all](const QString& text) {
      if (!text.isEmpty()) all.insert(text.toStdString());
    };
    for (const QWidget* widget : QApplication::allWidgets()) {
      if (widget->window() != delegate.windowController.get() && widget->window() != delegate.settingsController.get())
        continue;
      take(widget->accessibleName());
      const auto* label = qobject_cast<const LocalizedLabel*>(widget);
      if (label) take(QString::fromStdString(label->stringValue()));
      // What has no room depends on the language.
      if (!label || !label->keepsToolTip()) take(widget->toolTip());
      if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) take(button->text());
      if (const auto* popUp = qobject_cast<const QComboBox*>(widget))
        for (int item = 0; item < popUp->count(); ++item)
          take(popUp->itemText(item));
    }
    for (const QAction* menu : delegate.menuBar().actions())
      for (const QAction* action : menu->menu()->actions())
        take(action->text());
    return all;
  }

  /// Shown texts that another language would say differently.
  [[nodiscard]] static std::set<std::string> foreign(const std::multiset<std::string>& shown, AppLanguage language) {
    // The names of the languages are their own; the column's numbers are everybody's.
    const std::set<std::string> own{"English", "简体中文", "Français"};
    std::set<std::string> result;
    for (const std::string& text : shown)
      if (!own.contains(text) && Localization::shownText(Localization::shownOriginal(text), language) != text)
        result.insert(text);
    return result;
  }

  AppDelegate delegate{panels};
};

TEST_F(Language, ChangesEveryTextThereAndBack) {
  const auto english = texts();
  EXPECT_GT(english.size(), 80U);
  for (const AppLanguage language : {AppLanguage::french, AppLanguage::chinese, AppLanguage::english}) {
    delegate.settingsController->language->setCurrentIndex(static_cast<int>(language));
    EXPECT_EQ(foreign(texts(), language), std::set<std::string>()) << rawValue(language);
    EXPECT_EQ(texts().size(), english.size());
  }
  EXPECT_EQ(texts(), english);
}

TEST_F(Language, IsThatOfTheToolkitsPanelsToo) {
  const auto types = [] { return QCoreApplication::translate("QAbstractFileIconProvider", "Folder").toStdString(); };
  EXPECT_EQ(types(), "Folder");
  speak(AppLanguage::french);
  EXPECT_EQ(types(), "Dossier");
  EXPECT_EQ(QCoreApplication::translate("QFileDialog", "Look in:").toStdString(), "Voir dans :");
  speak(AppLanguage::chinese);
  EXPECT_EQ(types(), "文件夹");
  speak(AppLanguage::english);
  EXPECT_EQ(types(), "Folder");
}

TEST_F(CalibrationTab, ChangesItsComposedTextsToo) {
  analyze();
  const std::string english = status();
  tab.table->selectCandidate(0);
  AppPreferences::shared().setLanguage(AppLanguage::french);
  localizeView(tab);
  EXPECT_TRUE(status().starts_with("Terminé")) << status();
  const QAbstractItemModel& model = *tab.table->model();
  EXPECT_EQ(model.index(0, 1).data().toString().toStdString(), "Colonne");
  EXPECT_EQ(model.headerData(4, Qt::Horizontal).toString().toStdString(), "Motif");
  EXPECT_TRUE(model.index(0, 4).data().toString().startsWith("Anomalie de colonne"));
  AppPreferences::shared().setLanguage(AppLanguage::english);
  localizeView(tab);
  EXPECT_EQ(status(), english);
  EXPECT_EQ(model.index(0, 1).data().toString().toStdString(), "Column");
}

}  // namespace
}  // namespace tessaly::tests
