#include "app/support/AppTest.h"
#include "app/widgets/LocalizeView.h"
#include "app/widgets/LocalizedLabel.h"
#include "localization/Localization.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tessaly::tests {
namespace {

class Localized : public AppTest {
 protected:
  template <typename Widget>
  Widget& add(Widget* widget) {
    column->addWidget(widget);
    return *widget;
  }

  void show(AppLanguage language) {
    AppPreferences::shared().setLanguage(language);
    localizeView(view);
  }

  QWidget view;
  QVBoxLayout* column = new QVBoxLayout(&view);
};

TEST_F(Localized, ButtonsChangeFromAnyLanguageToAnyOther) {
  auto& button = add(new QPushButton("Add Pixel"));
  button.setToolTip("Settings");
  show(AppLanguage::french);
  EXPECT_EQ(button.text().toStdString(), Localization::text("Add Pixel", AppLanguage::french));
  show(AppLanguage::chinese);
  EXPECT_EQ(button.text().toStdString(), Localization::text("Add Pixel", AppLanguage::chinese));
  EXPECT_EQ(button.toolTip().toStdString(), Localization::text("Settings", AppLanguage::chinese));
  show(AppLanguage::english);
  EXPECT_EQ(button.text(), "Add Pixel");
  EXPECT_EQ(button.toolTip(), "Settings");
}

TEST_F(Localized, LabelsFollowTheirSourceText) {
  auto& label = add(new LocalizedLabel("Not selected"));
  auto& plain = add(new QLabel("Details"));
  show(AppLanguage::french);
  EXPECT_EQ(label.stringValue(), Localization::text("Not selected", AppLanguage::french));
  EXPECT_EQ(label.sourceText(), "Not selected");
  EXPECT_EQ(plain.text().toStdString(), Localization::text("Details", AppLanguage::french));
}

TEST_F(Localized, WhatTheUserTypedOrNamedIsLeftAlone) {
  auto& field = add(new QLineEdit("Details"));
  auto& profiles = add(new QComboBox);
  profiles.setObjectName(QLatin1String(userProfilesIdentifier));
  profiles.addItem("Details");
  auto& name = add(new LocalizedLabel);
  name.setName("Details");
  show(AppLanguage::french);
  EXPECT_EQ(field.text(), "Details");
  EXPECT_EQ(profiles.itemText(0), "Details");
  EXPECT_EQ(name.stringValue(), "Details");
}

TEST_F(Localized, PopUpsTabsAndTablesFollow) {
  auto& popUp = add(new QComboBox);
  popUp.addItems({"Automatic", "2"});
  auto& tabs = add(new QTabWidget);
  tabs.addTab(new QWidget, "2. Batch Repair DNG");
  auto& table = add(new QTableWidget(1, 1));
  table.setHorizontalHeaderLabels({"Reason"});
  show(AppLanguage::chinese);
  EXPECT_EQ(popUp.itemText(0).toStdString(), Localization::text("Automatic", AppLanguage::chinese));
  EXPECT_EQ(tabs.tabText(0).toStdString(), Localization::text("2. Batch Repair DNG", AppLanguage::chinese));
  EXPECT_EQ(table.horizontalHeaderItem(0)->text().toStdString(), Localization::text("Reason", AppLanguage::chinese));
}

TEST_F(Localized, ComposedTextsAreMadeAnew) {
  auto& label = add(new LocalizedLabel);
  label.setComposed([] { return LF("Found %d DNG files in the input folder.", {std::int64_t{7}}); });
  show(AppLanguage::french);
  EXPECT_EQ(label.stringValue(), "7 fichiers DNG trouvés dans le dossier d’entrée.");
}

TEST_F(Localized, NothingIsReadAsMarkupOrMnemonic) {
  auto& label = add(new LocalizedLabel);
  label.setName("<b>a</b> & b.dng");
  EXPECT_EQ(label.text(), "<b>a</b> & b.dng");
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST_F(Localized, NamesAreShownAndNotObeyed) {
  LocalizedLabel label;
  label.setLines(1, Elision::end);
  label.setName("a\nb\u202Egnd.dng", "/in/a\nb");
  EXPECT_EQ(label.stringValue(), "a␊b<U+202E>gnd.dng");
  EXPECT_EQ(label.toolTip().toStdString(), "/in/a␊b");
  label.setComposed([] { return "Two\nlines\x1B"; });
  EXPECT_EQ(label.stringValue(), "Two\nlines␛");
}

}  // namespace
}  // namespace tessaly::tests
