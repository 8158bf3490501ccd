#pragma once

#include <functional>
#include <optional>
#include <string>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Finds out why an effect does not end: runs it with a time limit in every loop of the script and waits for
// the GPU after every pass. Calls `report` with the script loop that does not end. Before each pass it calls
// `suspect` with a diagnostic that is true if the pass never ends, and after the pass with nothing. Run it in
// a guarded process, as a shader that does not end cannot be interrupted. One effect per process.
void DiagnoseHang(const std::string& effect, const std::function<void(const Diagnostic&)>& report,
                  const std::function<void(const std::optional<Diagnostic>&)>& suspect);

} // namespace fxhost
