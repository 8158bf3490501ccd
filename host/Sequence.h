#pragma once

#include "host/CommandCall.h"
#include "host/SequenceRecord.h"

namespace Adapter {

// The record of the command's instance, or null when the command has no sequence data. The record's engine
// sequence is alive and belongs to this handle alone: a record that the host copied byte by byte, or that
// comes from a saved project, gets a new sequence here.
SequenceRecord* FindOwnRecord(CommandCall& call);

} // namespace Adapter
