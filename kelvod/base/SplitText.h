#pragma once

#include <string_view>
#include <vector>

namespace kelvo {

/** The pieces between the separators, empty ones too; of an empty text one empty piece. Pure. */
inline std::vector<std::string_view> splitText(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    size_t start = 0;
    for (size_t end = 0; (end = text.find(separator, start)) != std::string_view::npos;
         start = end + 1) {
        pieces.push_back(text.substr(start, end - start));
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

}  // namespace kelvo
