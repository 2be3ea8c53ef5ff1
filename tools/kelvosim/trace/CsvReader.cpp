#include "CsvReader.h"

#include <csv.h>
#include <string.h>

#include <cerrno>
#include <new>

#include "Failure.h"

using command_line::Failure;

namespace {

constexpr char kByteOrderMark[] = "\xef\xbb\xbf";

/** The one of the usual separators that the line holds; a comma may also be a decimal one. */
char separatorOf(const std::string& line) {
    for (const char separator : {';', '\t'}) {
        if (line.find(separator) != std::string::npos) {
            return separator;
        }
    }
    return ',';
}

int isBlank(unsigned char c) {
    return c == ' ';  // a tab may be the separator
}

void addCell(void* cell, size_t size, void* cells) {
    static_cast<std::vector<std::string>*>(cells)->emplace_back(static_cast<const char*>(cell),
                                                                size);
}

/** False for quotes that do not match. */
bool split(const std::string& line, char separator, std::vector<std::string>& cells) {
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) {
        throw std::bad_alloc();
    }
    csv_set_delim(&parser, static_cast<unsigned char>(separator));
    csv_set_space_func(&parser, isBlank);
    cells.clear();
    const bool whole =
            csv_parse(&parser, line.data(), line.size(), addCell, nullptr, &cells) == line.size() &&
            csv_fini(&parser, addCell, nullptr, &cells) == 0;
    csv_free(&parser);
    return whole;
}

}  // namespace

CsvReader::CsvReader(const std::string& file, std::optional<char> separator)
      : mFile(file), mSeparator(separator), mInput(file, std::ios::binary) {
    if (!mInput) {
        throw Failure(std::string("cannot be read (") + strerror(errno) + ")", file);
    }
}

void CsvReader::fail(const std::string& problem) const {
    throw Failure(problem, mFile + ": line " + std::to_string(mLineNumber));
}

void CsvReader::failAt(size_t column, const std::string& problem) const {
    fail(problem + " in column " + std::to_string(column + 1));
}

bool CsvReader::readLine() {
    while (std::getline(mInput, mLine)) {
        if (++mLineNumber == 1 && mLine.starts_with(kByteOrderMark)) {
            mLine.erase(0, strlen(kByteOrderMark));
        }
        if (mLine.ends_with('\r')) {
            mLine.pop_back();
        }
        if (mLine.find_first_not_of(' ') != std::string::npos && !mLine.starts_with('#')) {
            return true;
        }
    }
    if (mInput.bad()) {
        throw Failure(std::string("cannot be read (") + strerror(errno) + ")", mFile);
    }
    return false;
}

bool CsvReader::next(std::vector<std::string>& cells) {
    if (!readLine()) {
        return false;
    }
    if (!mSeparator) {
        mSeparator = separatorOf(mLine);
    }
    if (!split(mLine, *mSeparator, cells)) {
        fail("a quoted cell has no end in its line, or goes on after it");
    }
    return true;
}
