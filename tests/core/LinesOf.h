#pragma once

#include <string>
#include <vector>

#include "support/LogCapture.h"

/** The lines of a log with the letter of their priority: "E kelvo main start". */
inline std::vector<std::string> linesOf(const LogCapture& log) {
    std::vector<std::string> lines;
    for (const LogCapture::Line& line : log.lines()) {
        lines.push_back(std::string(1, "??VDIWEF"[line.priority]) + " " + line.text);
    }
    return lines;
}
