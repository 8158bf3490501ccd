#include "AEGP_SuiteHandler.h"
#include "host/Suites.h"

// Declared by the suite handler, which leaves the definition to the plug-in. It must not return.
void AEGP_SuiteHandler::MissingSuiteError() const {
    throw Adapter::MissingSuite;
}
