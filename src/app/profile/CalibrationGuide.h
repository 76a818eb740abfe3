// How to take calibration frames, in a few sentences that can be folded away.
//
// Open until a camera profile exists, unless the user has opened or closed it: that choice is kept between launches.
#pragma once

#include <QToolButton>
#include <QWidget>

namespace tessaly {

class CalibrationGuide : public QWidget {
  Q_OBJECT

 public:
  explicit CalibrationGuide(QWidget* parent = nullptr);

  /// The control that opens and closes the guide; its place is up to the tab, its life to this object's parent.
  [[nodiscard]] QToolButton& disclosure() { return *disclosure_; }

  /// Says whether there is a profile already; decides unless the user has.
  void setProfilesExist(bool exist);

 private:
  void setOpen(bool open);

  QToolButton* disclosure_;
};

}  // namespace tessaly
