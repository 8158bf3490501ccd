#pragma once

#include "SPBasic.h"

class FakeHost;

// The suites of a FakeHost. Some of their calls carry no reference to the effect, hence the current host.
SPBasicSuite* FakeBasicSuite();
void SetCurrentFakeHost(FakeHost* host);
