// SPDX-License-Identifier: MIT
#include "core/command_line.h"

#include <algorithm>

#include "base/display_text.h"
#include "core/about_facts.h"

namespace vantrell {

namespace {

constexpr char kHelp[] =
    "Usage: ZEP [--help | --version]\n"
    "Encrypts every file that is dropped into a folder. What it does is set up in its window.\n"
    "\n"
    "  --help     shows this and ends\n"
    "  --version  shows the version and ends\n"
    "\n"
    "The options of the toolkit, such as -platform NAME and -style NAME, are taken too. Settings, passwords and logs "
    "lie\n"
    "in \"Quillon, Inc/Vantrell/Bin\" below ALLUSERSPROFILE, XDG_DATA_HOME or ~/.local/share.\n";

}  // namespace

std::optional<CommandLineAnswer> answerToQuestion(const std::vector<std::string>& arguments) {
    const auto stands = [&](const char* word) {
        return std::find(arguments.begin(), arguments.end(), word) != arguments.end();
    };
    if (stands("--help") || stands("-h")) return CommandLineAnswer{kHelp};
    if (stands("--version")) return CommandLineAnswer{"Vantrell " + programVersion() + "\n"};
    return std::nullopt;
}

CommandLineAnswer refusalOf(const std::string& argument) {
    return {"ZEP: the argument \"" + displayText(argument) + "\" is not known; --help shows what is.\n", true, 2};
}

}  // namespace vantrell
