// The controls that every tab is made of, with the sizes, names and focus that all of them share. Texts are English
// keys; localizeView changes their language later.
#pragma once

#include "app/widgets/LocalizedLabel.h"

#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <functional>
#include <initializer_list>
#include <string>

class QBoxLayout;
class QShortcut;

namespace tessaly::Controls {

[[nodiscard]] QPushButton* button(const char* title, const char* toolTip = nullptr);

/// A button that opens a folder panel.
[[nodiscard]] QPushButton* folderButton(const char* title);

/// The tab's main action stands out from the others.
void setMainAction(QPushButton& button, bool isMain);

/// A label that names the control next to it.
[[nodiscard]] LocalizedLabel* caption(const char* title, QWidget& buddy);

/// A field for a few characters, named for screen readers.
[[nodiscard]] QLineEdit* field(const char* name, int characters, const char* toolTip = nullptr);

[[nodiscard]] QComboBox* popUp(const char* name, std::initializer_list<const char*> items = {});

/// A pop-up whose items are the user's own names.
[[nodiscard]] QComboBox* namesPopUp(const char* name);
[[nodiscard]] QComboBox* concurrentFilesPopUp(const char* name);
[[nodiscard]] QProgressBar* progressBar();

/// A path or name in one line, and the status in two.
[[nodiscard]] LocalizedLabel* pathLabel();
[[nodiscard]] LocalizedLabel* statusLabel();

/// A thin line between two sections.
[[nodiscard]] QWidget* separator();

/// A row or column without margins on the grid.
template <typename Layout>
[[nodiscard]] Layout* onGrid(int spacing) {
  auto* layout = new Layout;
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  return layout;
}

/// Calls `action` at the key while the focus is inside `scope`.
void addShortcut(QWidget& scope, const QKeySequence& key, std::function<void()> action);

/// Clicks the button at the key, unless it is disabled.
void addShortcut(QWidget& scope, const QKeySequence& key, QAbstractButton& button);

/// Makes Tab go through the widgets in this order.
void setFocusOrder(const QList<QWidget*>& widgets);

}  // namespace tessaly::Controls
