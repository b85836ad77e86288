// The texts the component makes of stored fields, made here by hand for the raw sides of the
// benchmarks, from a row of any engine: a Row has IsNull(column) and Text(column), the stored
// text ("YYYY-MM-DD HH:MM:SS" for a date).
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <brindleway/brindleway.h>

namespace brindlewayProj::bench {

// A date as stored: "YYYY-MM-DD HH:MM:SS".
struct StoredTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};
std::optional<StoredTime> ParseStoredTime(std::string_view text);

// A stored date as a listing shows it: the US short date ("3/14/99", the full year outside
// 1930-2029) and " h:mm:ss AM" when the time is not midnight; nullopt for day 0 (30 Dec 1899,
// midnight), which counts as no value.
std::optional<std::string> DateText(std::string_view stored);
// A stored text when it has a value: not empty, not blanks only.
std::optional<std::string_view> TextWithValue(std::string_view stored);

template <class Row>
std::optional<std::string> DateText(const Row& row, int column) {
  return row.IsNull(column) ? std::nullopt : DateText(row.Text(column));
}
template <class Row>
std::optional<std::string_view> TextWithValue(const Row& row, int column) {
  return row.IsNull(column) ? std::nullopt : TextWithValue(row.Text(column));
}

// The texts of a list the component handed back, to compare with the raw side's.
std::vector<std::string> Texts(const Collection& items);

// How a listing shows a field.
enum class Field { kNumber, kDate, kText };

// The line of a listing for `row`: each field's text, "<Empty>" when it has no value.
template <class Row>
void AppendLine(const Row& row, std::span<const Field> fields, std::string_view separator,
                std::string& line) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i) line += separator;
    const int column = static_cast<int>(i);
    switch (fields[i]) {
      case Field::kNumber:
        if (row.IsNull(column)) break;
        line += row.Text(column);
        continue;
      case Field::kDate:
        if (auto date = DateText(row, column)) {
          line += *date;
          continue;
        }
        break;
      case Field::kText:
        if (auto text = TextWithValue(row, column)) {
          line += *text;
          continue;
        }
        break;
    }
    line += "<Empty>";
  }
}

}  // namespace brindlewayProj::bench
