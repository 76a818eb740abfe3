#include "app/preview/PreviewAccessible.h"

#include "app/preview/CalibrationPreviewView.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace tessaly {
namespace {

class PreviewInterface : public QAccessibleWidget {
 public:
  explicit PreviewInterface(CalibrationPreviewView& view) : QAccessibleWidget(&view, QAccessible::Graphic) {}

  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
    return static_cast<CalibrationPreviewView*>(widget())->currentDescription();
  }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* view = qobject_cast<CalibrationPreviewView*>(object);
  return view ? new PreviewInterface(*view) : nullptr;
}

}  // namespace

void installPreviewAccessibility() {
  static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
  (void)installed;
}

void announcePreviewValue(CalibrationPreviewView& view, const QString& value) {
  QAccessibleValueChangeEvent event(&view, value);
  QAccessible::updateAccessibility(&event);
}

}  // namespace tessaly
