#pragma once

#include <memory>
#include <string>

namespace validate {

// What the emulated hosts need from the system.
struct HostSystem {
    // Returns the GL context of the calling thread; null: contexts are not compared.
    void* (*currentContext)() = nullptr;
    // Returns a CFBundleRef for a bundle's folder, or null; a null function: hosts report paths only.
    std::shared_ptr<void> (*bundleAt)(const std::string& path) = nullptr;
};

} // namespace validate
