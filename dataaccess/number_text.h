// Numbers as text in the regional settings, both ways, as the platform's conversions do it.
#pragma once

#include <optional>

#include <brindleway/types.h>

namespace brindlewayProj {

// Up to 15 significant digits, the regional decimal separator, no grouping; exponent form
// ("1E+20", "1E-05") for very large and very small numbers.
String NumberText(Double value);

// The number a text reads as: blanks and tabs around it, a sign, digits with the regional
// decimal separator, an exponent. Empty when the text is no number.
std::optional<Double> ParseNumberText(const String& text);

}  // namespace brindlewayProj
