#pragma once

#include "validate/TestRun.h"

namespace validate {

// One test. It reports what it finds to the run, and may throw stricthost::CommandError.
struct TestRow {
    const char* name;
    int level;            // 1 to 10
    const char* protects; // what it protects a user from; completes "protects from"
    void (*test)(TestRun& run);
};

// All tests by level; the last row has no name.
const TestRow* TestTable();

// The tests, one group in each source file (BasicTests.cpp ...).
void Loads(TestRun& run);
void RendersOneFrame(TestRun& run);
void Unloads(TestRun& run);
void Depths(TestRun& run);
void Sizes(TestRun& run);
void RowPadding(TestRun& run);
void Downsampling(TestRun& run);
void PixelAspect(TestRun& run);

void SameFrameTwice(TestRun& run);
void SaveAndReopen(TestRun& run);
void DuplicateInstance(TestRun& run);
void Undo(TestRun& run);
void OtherThread(TestRun& run);
void FrameOrder(TestRun& run);
void SeveralInstances(TestRun& run);

void ParameterNames(TestRun& run);
void ParameterDefaults(TestRun& run);
void ParameterExtremes(TestRun& run);
void AnimatedParameters(TestRun& run);
void PiplFlags(TestRun& run);

void LifeCycles(TestRun& run);
void OutOfMemory(TestRun& run);
void Interruptions(TestRun& run);
void HostQuirks(TestRun& run);
void ParallelRendering(TestRun& run);
void ShuffledCommands(TestRun& run);

} // namespace validate
