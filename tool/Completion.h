#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace fxhost {

// First argument that makes the tool print suggestions instead of running a command. The scripts for the
// shells use it.
inline constexpr char CompletionArgument[] = "__complete";

// The script that makes a shell complete the tool's command lines: "bash", "zsh" or "fish". It asks the tool
// at `path`.
std::string CompletionScript(const std::string& shell, const std::string& path);

// Words that can replace the last one of `words`, which are the arguments typed so far: commands, options,
// values of options, and the names and values of the effect's parameters. Empty where a file name is
// expected.
std::vector<std::string> Suggestions(const CLI::App& tool, const std::vector<std::string>& words);

} // namespace fxhost
