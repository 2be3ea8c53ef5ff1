#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kelvoconf {

/** Rows of texts in aligned columns. The first column stands left, numbers stand right. */
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> headings) : mRows{std::move(headings)} {}

    /** A row may have fewer cells than there are headings. */
    void add(std::vector<std::string> row) { mRows.push_back(std::move(row)); }
    /** Lines with newlines, each after `indent`; no blanks at their ends. */
    std::string text(const std::string& indent = "") const;

  private:
    std::vector<std::vector<std::string>> mRows;
};

}  // namespace kelvoconf
