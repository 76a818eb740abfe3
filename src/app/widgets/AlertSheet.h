// An alert over its window: plain text that wraps, scrolls when it is long and can be selected and copied.
#pragma once

#include "app/widgets/FollowsLanguage.h"
#include "app/widgets/Panels.h"

#include <QDialog>

class QScrollArea;

namespace tessaly {

class AlertPageView;

class AlertSheet : public QDialog, public FollowsLanguage {
  Q_OBJECT

 public:
  /// Shows the alert over the window now, or after the one that is there. `answered` gets the index of the button;
  /// it is not called when the window goes away before an answer.
  static void show(QWidget& window, Alert alert, Panels::ButtonHandler answered);

  void refreshLanguage() override;
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AlertSheet(QWidget& window, Alert alert, Panels::ButtonHandler answered);

  void answer(std::size_t button);
  [[nodiscard]] QWidget* makeText();
  [[nodiscard]] QWidget* makeButtons();
  void fitToText();
  void fitToPage();

  Alert alert_;
  Panels::ButtonHandler answered_;
  LocalizedLabel* text_ = nullptr;
  LocalizedLabel* informativeText_ = nullptr;
  QScrollArea* scrollArea_ = nullptr;
  AlertPageView* page_ = nullptr;  ///< instead of the texts above
};

}  // namespace tessaly
