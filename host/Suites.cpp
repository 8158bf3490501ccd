#include "host/Suites.h"

// The suite handler declares this function and leaves its definition to the plug-in. It must not return.
void AEGP_SuiteHandler::MissingSuiteError() const {
    throw Adapter::MissingSuite;
}
