#include "host/Sequence.h"

#include <cstring>

#include "engine/IPlugin.h"
#include "host/Commands.h"
#include "host/HostHandle.h"
#include "host/HostState.h"
#include "host/Instance.h"
#include "host/ParameterBridge.h"

namespace Adapter {

namespace {

// A new, zero-filled handle with the size of a record.
class NewRecord {
public:
    explicit NewRecord(const AEGP_SuiteHandler& suites) : m_Handle(suites, SequenceRecordSize) {
        if (m_Handle.Data())
            std::memset(m_Handle.Data(), 0, SequenceRecordSize);
    }
    explicit operator bool() const { return m_Handle.Data() != nullptr; }
    SequenceRecord* operator->() const { return static_cast<SequenceRecord*>(m_Handle.Data()); }
    void* Buffer() const { return m_Handle.Data(); }
    PF_Handle Publish(PF_OutData& out) {
        m_Handle.HandOver(out.sequence_data);
        return out.sequence_data;
    }

private:
    HostHandle m_Handle;
};

// A new engine sequence, which is released again when the command fails before the host gets its record.
class NewSequence {
public:
    explicit NewSequence(IPlugin& engine) : m_Engine(engine), m_Data(InitSequence(engine)) {}
    ~NewSequence() {
        if (!m_Data)
            return;
        try {
            ReleaseSequence(m_Engine, m_Data);
        } catch (...) {
            // The command already failed with another error.
        }
    }
    NewSequence(const NewSequence&) = delete;
    NewSequence& operator=(const NewSequence&) = delete;

    void* Data() const { return m_Data; }
    void HandOver() { m_Data = nullptr; }

private:
    IPlugin& m_Engine;
    void* m_Data;
};

void Publish(NewRecord& record, NewSequence& sequence, PF_OutData& out) {
    record->engineSequence = sequence.Data();
    s_SequenceOfHandle[record.Publish(out)] = sequence.Data();
    sequence.HandOver();
}

// A pointer in a record may be stale: hosts copy records, and projects contain old ones.
bool OwnsSequence(PF_Handle handle, const SequenceRecord& record) {
    const auto found = s_SequenceOfHandle.find(handle);
    return record.engineSequence && found != s_SequenceOfHandle.end() &&
           found->second == record.engineSequence;
}

} // namespace

SequenceRecord* FindOwnRecord(CommandCall& call) {
    SequenceRecord* record = FindRecord(*call.in);
    if (record && !OwnsSequence(call.in->sequence_data, *record)) {
        record->engineSequence = InitSequence(call.engine);
        s_SequenceOfHandle[call.in->sequence_data] = record->engineSequence;
    }
    return record;
}

PF_Err SequenceSetup(CommandCall& call) {
    SequenceSetdown(call);
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    NewRecord record(suites);
    if (!record)
        return PF_Err_OUT_OF_MEMORY;
    NewSequence sequence(call.engine);
    Publish(record, sequence, *call.out);
    return PF_Err_NONE;
}

// The old data may come from a saved project, so no pointer in it is used: the engine creates a new sequence
// and reads the old data. The old handle still belongs to the host. Hosts set up the instances that render
// without old data, which makes a fresh instance.
PF_Err SequenceResetup(CommandCall& call) {
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    NewRecord record(suites);
    if (!record)
        return PF_Err_OUT_OF_MEMORY;
    record->wasResetup = 1;
    record->uiReady = IsPremiere(*call.in) ? 0 : 1;
    NewSequence sequence(call.engine);
    if (SequenceRecord* old = FindRecord(*call.in)) {
        SelectSequence(call.engine, sequence.Data());
        call.engine.unflatten(old);
    }
    Publish(record, sequence, *call.out);
    if (!IsPremiere(*call.in) && NeedsForcedRerender(*call.in))
        call.out->out_flags |= PF_OutFlag_FORCE_RERENDER;
    UpdateParametersUI(call, nullptr);
    return PF_Err_NONE;
}

// The flat block contains no pointer: its engineSequence stays null.
PF_Err SequenceFlatten(CommandCall& call) {
    if (!call.in->sequence_data)
        return PF_Err_NONE;
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    NewRecord flat(suites);
    if (!flat)
        return PF_Err_OUT_OF_MEMORY;
    if (const SequenceRecord* record = FindOwnRecord(call)) {
        SelectSequence(call.engine, record->engineSequence);
        call.engine.flatten(flat.Buffer());
    }
    flat.Publish(*call.out);
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(CommandCall& call) {
    if (!call.in->sequence_data)
        return PF_Err_NONE;
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    const SequenceRecord* record = FindRecord(*call.in);
    const bool owned = record && OwnsSequence(call.in->sequence_data, *record);
    s_SequenceOfHandle.erase(call.in->sequence_data);
    if (owned)
        ReleaseSequence(call.engine, record->engineSequence);
    suites.HandleSuite1()->host_dispose_handle(call.in->sequence_data);
    call.in->sequence_data = nullptr;
    call.out->sequence_data = nullptr; // hosts preset it to the old handle
    return PF_Err_NONE;
}

} // namespace Adapter
