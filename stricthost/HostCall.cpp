#include "stricthost/HostCall.h"

#include <cstring>
#include <utility>

#include "stricthost/CommandName.h"
#include "stricthost/HostCore.h"
#include "stricthost/LiveHosts.h"

namespace stricthost {

namespace {

thread_local HostCall* t_Current = nullptr;

} // namespace

CurrentCall::CurrentCall(HostCall& call) : m_Before(std::exchange(t_Current, &call)) {}

CurrentCall::~CurrentCall() {
    t_Current = m_Before;
}

HostCall::HostCall(HostCore& core, PF_Cmd cmd, Instance* owner) : host(core), command(cmd), instance(owner) {}

HostCall* HostCall::Require(const char* what) {
    if (!t_Current)
        LiveHosts::Report(std::string("the plug-in called ") + what +
                          " outside of a command or on another thread");
    return t_Current;
}

HostCall* HostCall::From(PF_ProgPtr effect, const char* what) {
    HostCall* call = Require(what);
    if (call && reinterpret_cast<HostCall*>(effect) != call) {
        call->Report(std::string("called ") + what + " with an effect_ref that is not its own");
        return nullptr;
    }
    return call;
}

const char* HostCall::Name() const {
    return CommandName(command);
}

void HostCall::Report(const std::string& what) const {
    host.violations.Add(std::string(Name()) + " " + what);
}

std::string HostCall::Message() const {
    return {out.return_msg, strnlen(out.return_msg, sizeof out.return_msg)};
}

void HostCall::PassParams(std::vector<PF_ParamDef> defs) {
    params = std::move(defs);
    paramPointers.clear();
    for (PF_ParamDef& def : params)
        paramPointers.push_back(&def);
    paramPointers.push_back(nullptr);
}

void HostCall::Protect(PF_Handle handle) {
    if (handle)
        readOnly.emplace(handle, host.handles.Bytes(handle));
}

HostTime HostCall::TimeOf(const PF_ParamDef* def) const {
    const auto found = checkouts.find(def);
    return found != checkouts.end() ? found->second.time : HostTime{in.current_time, in.time_scale};
}

A_long HostCall::IndexOf(const PF_ParamDef* def) const {
    if (const auto found = checkouts.find(def); found != checkouts.end())
        return found->second.index;
    for (std::size_t i = 0; i < params.size(); ++i)
        if (&params[i] == def)
            return static_cast<A_long>(i);
    return -1;
}

} // namespace stricthost
