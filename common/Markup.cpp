#include "common/Markup.h"

namespace common {

std::string escapedMarkup(const std::string& text) {
    constexpr unsigned char kFirstPrintable = 0x20;
    std::string result;
    for (const char byte : text) {
        switch (byte) {
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '&':
                result += "&amp;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += static_cast<unsigned char>(byte) < kFirstPrintable ? '?' : byte;
        }
    }
    return result;
}

}  // namespace common
