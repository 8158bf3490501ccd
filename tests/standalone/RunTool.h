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

// A folder of the running test's own, emptied first.
std::string FreshFolder();

// A whole file.
std::string ReadFileText(const std::string& path);
