// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vantrell {

/// What the program says instead of starting.
struct CommandLineAnswer {
    std::string text;  ///< whole lines
    bool isError = false;
    int exitStatus = 0;
};

/// The answer to --help and --version, wherever they stand among the arguments; they need no display.
[[nodiscard]] std::optional<CommandLineAnswer> answerToQuestion(const std::vector<std::string>& arguments);
/// The answer to an argument that nobody knows.
[[nodiscard]] CommandLineAnswer refusalOf(const std::string& argument);

}  // namespace vantrell
