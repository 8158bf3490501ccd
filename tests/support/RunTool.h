#pragma once

#include <string>

// What one run of the built tool gave.
struct ToolRun {
    int status = -1; // exit status; -1 when it ended otherwise
    std::string out;
    std::string err;
};

// Runs the tool with these arguments, in the shell's words.
ToolRun RunTool(const std::string& arguments);
