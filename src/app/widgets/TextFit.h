// Fits a text into a number of lines.
#pragma once

#include <QFont>
#include <QString>

namespace tessaly {

/// Where a text that does not fit loses its words.
enum class Elision { middle, end };

/// `text` broken into at most `lines` lines of `width` pixels; what does not fit is replaced by "…".
[[nodiscard]] QString fittedText(const QString& text, const QFont& font, int width, int lines, Elision elision);

/// `text` with line breaks where a word alone is wider than `width`: a path without blanks.
[[nodiscard]] QString brokenText(const QString& text, const QFont& font, int width);

}  // namespace tessaly
