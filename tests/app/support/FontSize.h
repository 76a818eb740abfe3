// The application's font in another size, as long as this lives.
#pragma once

#include <QApplication>
#include <QFont>

namespace tessaly::tests {

class FontSize {
 public:
  explicit FontSize(double factor) : usual_(QApplication::font()) {
    QFont font = usual_;
    font.setPointSizeF(font.pointSizeF() * factor);
    QApplication::setFont(font);
  }
  FontSize(const FontSize&) = delete;
  FontSize& operator=(const FontSize&) = delete;
  ~FontSize() { QApplication::setFont(usual_); }

 private:
  QFont usual_;
};

}  // namespace tessaly::tests
