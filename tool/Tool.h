#pragma once

namespace fxhost {

// The whole tool: parses the command line, runs the sub-command, and returns the exit status.
int RunTool(int argc, char** argv);

} // namespace fxhost
