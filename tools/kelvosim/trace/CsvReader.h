#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

/**
 * A CSV file as loggers and spreadsheets write it: cells separated by ";", tabs or commas, as the
 * first line tells, in quotes or not, with blanks around them or not. A byte-order mark, empty
 * lines and lines that begin with "#" are skipped. Failures name file, line and column.
 */
class CsvReader {
  public:
    /** Opens the file; without a separator the first line says which one it is. */
    explicit CsvReader(const std::string& file, std::optional<char> separator = std::nullopt);

    /** Reads the next line into its cells, which is never none; false at the end. */
    bool next(std::vector<std::string>& cells);
    /** The line that was read last, as it stands. */
    const std::string& line() const { return mLine; }
    int64_t lineNumber() const { return mLineNumber; }

    /** Throws: what is wrong with a cell of the line that was read last; columns count from 0. */
    [[noreturn]] void failAt(size_t column, const std::string& problem) const;
    /** The same for the whole line. */
    [[noreturn]] void fail(const std::string& problem) const;

  private:
    bool readLine();

    const std::string mFile;
    std::optional<char> mSeparator;
    std::ifstream mInput;
    std::string mLine;
    int64_t mLineNumber = 0;
};
