#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace torva::test {

/// Drawing text from a short form: groups of code and value with one blank between, each on a line or behind " | ". Blanks
/// in front of a line and empty lines are passed over; a value may be empty.
inline std::string groupsFrom(std::string_view shortForm) {
  std::string text;
  std::istringstream lines{std::string(shortForm)};
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
    while (!line.empty()) {
      const std::string group = line.substr(0, line.find(" | "));
      line.erase(0, group.size() + 3);
      const std::size_t blank = std::min(group.find(' '), group.size());
      text += group.substr(0, blank) + "\n" + (blank < group.size() ? group.substr(blank + 1) : "") + "\n";
    }
  }
  return text;
}

/// The groups of a drawing's text, one "code value" each.
inline std::vector<std::string> groupLines(std::string_view text) {
  std::vector<std::string> groups;
  std::istringstream lines{std::string(text)};
  for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);) {
    code.erase(0, std::min(code.find_first_not_of(' '), code.size()));
    groups.push_back(code + " " + value);
  }
  return groups;
}

/// The same text with the codes right-aligned in three columns, as most programs write them.
inline std::string inColumns(std::string_view text) {
  std::string result;
  for (const std::string& group : groupLines(text)) {
    const std::size_t blank = group.find(' ');
    result += std::string(blank < 3 ? 3 - blank : 0, ' ') + group.substr(0, blank) + "\n" + group.substr(blank + 1) + "\n";
  }
  return result;
}

/// What has to be taken out of and put into one text to get the other: "-code value" and "+code value", in their order.
inline std::vector<std::string> difference(std::string_view before, std::string_view after) {
  const std::vector<std::string> a = groupLines(before), b = groupLines(after);
  std::vector<std::vector<std::size_t>> common(a.size() + 1, std::vector<std::size_t>(b.size() + 1, 0));
  for (std::size_t i = a.size(); i-- > 0;) {
    for (std::size_t j = b.size(); j-- > 0;) {
      common[i][j] = a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  std::vector<std::string> result;
  std::size_t i = 0, j = 0;
  while (i < a.size() || j < b.size()) {
    if (i < a.size() && j < b.size() && a[i] == b[j]) {
      ++i, ++j;
    } else if (j == b.size() || (i < a.size() && common[i + 1][j] >= common[i][j + 1])) {
      result.push_back("-" + a[i++]);
    } else {
      result.push_back("+" + b[j++]);
    }
  }
  return result;
}

}  // namespace torva::test
