// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace vantrell::test {

/// The lines of each fenced block of a document whose fence is followed by `word`.
inline std::vector<std::vector<std::string>> documentedBlocks(const std::string& document, const std::string& word) {
    std::vector<std::vector<std::string>> blocks;
    std::ifstream file(VANTRELL_DOCS "/" + document);
    bool isInside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("```")) {
            isInside = line == "```" + word;
            if (isInside) blocks.emplace_back();
        } else if (isInside) {
            blocks.back().push_back(line);
        }
    }
    return blocks;
}

}  // namespace vantrell::test
