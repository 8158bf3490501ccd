#include "stricthost/Call.h"

#include <cstring>
#include <mutex>
#include <set>
#include <utility>

#include "stricthost/HostCore.h"

namespace stricthost {

namespace {

struct CommandRow {
    PF_Cmd code;
    const char* name;
};
constexpr CommandRow s_Commands[] = {
    {PF_Cmd_ABOUT, "ABOUT"},
    {PF_Cmd_GLOBAL_SETUP, "GLOBAL_SETUP"},
    {PF_Cmd_GLOBAL_SETDOWN, "GLOBAL_SETDOWN"},
    {PF_Cmd_PARAMS_SETUP, "PARAMS_SETUP"},
    {PF_Cmd_SEQUENCE_SETUP, "SEQUENCE_SETUP"},
    {PF_Cmd_SEQUENCE_RESETUP, "SEQUENCE_RESETUP"},
    {PF_Cmd_SEQUENCE_FLATTEN, "SEQUENCE_FLATTEN"},
    {PF_Cmd_SEQUENCE_SETDOWN, "SEQUENCE_SETDOWN"},
    {PF_Cmd_FRAME_SETUP, "FRAME_SETUP"},
    {PF_Cmd_RENDER, "RENDER"},
    {PF_Cmd_FRAME_SETDOWN, "FRAME_SETDOWN"},
    {PF_Cmd_USER_CHANGED_PARAM, "USER_CHANGED_PARAM"},
    {PF_Cmd_UPDATE_PARAMS_UI, "UPDATE_PARAMS_UI"},
    {PF_Cmd_SMART_PRE_RENDER, "SMART_PRE_RENDER"},
    {PF_Cmd_SMART_RENDER, "SMART_RENDER"},
};

thread_local Call* t_Current = nullptr;

// The hosts that live in this process, to tell them of callbacks that belong to no command.
class LiveHosts {
public:
    static LiveHosts& Get() {
        static LiveHosts s_Hosts;
        return s_Hosts;
    }
    void Add(HostCore* host) {
        const std::lock_guard lock(m_Mutex);
        m_Hosts.insert(host);
    }
    void Remove(HostCore* host) {
        const std::lock_guard lock(m_Mutex);
        m_Hosts.erase(host);
    }
    void Report(const std::string& text) {
        const std::lock_guard lock(m_Mutex);
        for (HostCore* host : m_Hosts)
            host->violations.Add(text);
    }

private:
    std::mutex m_Mutex;
    std::set<HostCore*> m_Hosts;
};

} // namespace

void EnterLiveHosts(HostCore& host) {
    LiveHosts::Get().Add(&host);
}

void LeaveLiveHosts(HostCore& host) {
    LiveHosts::Get().Remove(&host);
}

const char* CommandName(PF_Cmd command) {
    for (const CommandRow& row : s_Commands)
        if (row.code == command)
            return row.name;
    return "a command";
}

CurrentCall::CurrentCall(Call& call) : m_Before(std::exchange(t_Current, &call)) {}

CurrentCall::~CurrentCall() {
    t_Current = m_Before;
}

Call::Call(HostCore& core, PF_Cmd cmd, Instance* owner) : host(core), command(cmd), instance(owner) {}

Call::~Call() = default;

Call* Call::Require(const char* what) {
    if (!t_Current)
        LiveHosts::Get().Report(std::string("the plug-in called ") + what +
                                " outside of a command or on a thread of its own");
    return t_Current;
}

Call* Call::From(PF_ProgPtr effect, const char* what) {
    Call* call = Require(what);
    if (call && reinterpret_cast<Call*>(effect) != call) {
        call->Report(std::string("called ") + what + " with an effect_ref that is not its own");
        return nullptr;
    }
    return call;
}

const char* Call::Name() const {
    return CommandName(command);
}

void Call::Report(const std::string& what) const {
    host.violations.Add(std::string(Name()) + " " + what);
}

std::string Call::Message() const {
    return {out.return_msg, strnlen(out.return_msg, sizeof out.return_msg)};
}

void Call::PassParams(std::vector<PF_ParamDef> defs) {
    params = std::move(defs);
    paramPointers.clear();
    for (PF_ParamDef& def : params)
        paramPointers.push_back(&def);
    paramPointers.push_back(nullptr);
}

A_long Call::IndexOf(const PF_ParamDef* def) const {
    if (const auto found = checkouts.find(def); found != checkouts.end())
        return found->second.index;
    for (std::size_t i = 0; i < params.size(); ++i)
        if (&params[i] == def)
            return static_cast<A_long>(i);
    return -1;
}

} // namespace stricthost
