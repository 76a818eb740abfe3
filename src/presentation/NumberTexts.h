// Numbers as the interface's language writes them: a decimal comma in French.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include <string>

namespace tessaly::NumberTexts {

/// With so many digits behind the point.
[[nodiscard]] std::string decimal(double value, int digits);

/// With about three digits that count: "0.0042", "1.70", "42700".
[[nodiscard]] std::string significant(double value);

}  // namespace tessaly::NumberTexts
