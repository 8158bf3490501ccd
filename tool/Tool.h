#pragma once

namespace fxhost {

// The whole tool: parses the command line and runs the subcommand; the exit status.
int RunTool(int argc, char** argv);

} // namespace fxhost
