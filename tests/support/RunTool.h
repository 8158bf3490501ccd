#pragma once

#include <string>

// Result of one run of the built tool.
struct ToolRun {
    int status = -1; // exit status; -1 when the process was killed
    std::string out;
    std::string err;
};

// Runs the tool with these arguments in a shell. Standard input is empty.
ToolRun RunTool(const std::string& arguments);
