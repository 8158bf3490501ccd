#pragma once

#include <memory>
#include <string>

namespace fxhost {

// A CFBundleRef for a folder, which hosts may report instead of the plug-in's path. Null when the folder is
// no bundle. The last owner releases it.
std::shared_ptr<void> BundleAt(const std::string& path);

} // namespace fxhost
