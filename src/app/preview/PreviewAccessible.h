// What a screen reader is told about the preview: its name and, as its value, the selected candidate.
#pragma once

#include <QString>

namespace tessaly {

class CalibrationPreviewView;

/// Once or more often, before the first preview is asked about.
void installPreviewAccessibility();

void announcePreviewValue(CalibrationPreviewView& view, const QString& value);

}  // namespace tessaly
