#pragma once

#include <string>
#include <vector>

// What one life cycle of an effect gave.
struct LifeCycleResult {
    std::vector<unsigned char> pixels; // of the frame; empty without one
    std::string report;                // all that the engine reported; empty when nothing failed
};

// Writes the effect into the folder.
void WriteEffect(const class TemporaryFolder& folder);

// Sets up an engine with the effect, renders a frame of an instance, saves and releases the instance, and
// destroys the engine.
LifeCycleResult RunLifeCycle();
