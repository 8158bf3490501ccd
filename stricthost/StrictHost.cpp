#include "stricthost/StrictHost.h"

#include <stdexcept>
#include <utility>

#include "stricthost/HostCall.h"

namespace stricthost {

namespace {

Options WithPath(Options options, const std::filesystem::path& bundle) {
    if (options.pluginPath.empty())
        options.pluginPath = std::filesystem::absolute(bundle).lexically_normal().string();
    return options;
}

} // namespace

StrictHost::StrictHost(PF_FilterProc entry, Options options) : m_Core(entry, std::move(options)) {}

StrictHost::StrictHost(const std::filesystem::path& bundle, Options options)
    : m_Module(std::make_unique<PluginModule>(bundle)),
      m_Core(m_Module->Entry(), WithPath(std::move(options), bundle)) {}

StrictHost::~StrictHost() {
    Finish();
}

void StrictHost::Require(Stage stage, const char* what) const {
    if (m_Stage != stage)
        throw std::logic_error(std::string(what) + " is out of order");
}

void StrictHost::GlobalSetup() {
    Require(Stage::Loaded, "GlobalSetup");
    SendGlobalSetup();
    if (m_Core.options.quirks.secondGlobalSetup)
        SendGlobalSetup();
    m_Stage = Stage::GlobalsSetUp;
    CheckFlags();
}

// The host disposes of the data of an earlier set-up.
void StrictHost::SendGlobalSetup() {
    const PF_Handle earlier = std::exchange(m_Core.globalData, nullptr);
    HostCall call(m_Core, PF_Cmd_GLOBAL_SETUP);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    const PF_Handle data = call.out.global_data;
    if (data != earlier)
        m_Core.handles.DisposeOwn(earlier);
    m_Core.globalData = m_Core.handles.IsLive(data) ? data : nullptr;
    m_Core.version = call.out.my_version;
    m_Core.outFlags = call.out.out_flags;
    m_Core.outFlags2 = call.out.out_flags2;
    if (err != PF_Err_NONE)
        throw CommandError(PF_Cmd_GLOBAL_SETUP, err, call.Message());
}

void StrictHost::CheckFlags() {
    if ((m_Core.outFlags2 & PF_OutFlag2_SUPPORTS_THREADED_RENDERING) &&
        (m_Core.outFlags & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING) &&
        !(m_Core.outFlags2 & PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA))
        m_Core.violations.Add(
            "GLOBAL_SETUP promised threaded rendering of data that needs flattening without "
            "PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA");
}

void StrictHost::ParamsSetup() {
    Require(Stage::GlobalsSetUp, "ParamsSetup");
    HostCall call(m_Core, PF_Cmd_PARAMS_SETUP);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    if (err != PF_Err_NONE)
        throw CommandError(PF_Cmd_PARAMS_SETUP, err, call.Message());
    const bool gap = call.out.num_params > call.added + 1;
    if (call.out.num_params != call.added + 1 && !(gap && m_Core.options.allowParamGap))
        call.Report("reported " + std::to_string(call.out.num_params) + " parameters, but added " +
                    std::to_string(call.added) + " beside the input");
    m_Stage = Stage::Ready;
}

std::string StrictHost::About() {
    if (m_Stage == Stage::Loaded || m_Stage == Stage::Finished)
        throw std::logic_error("About is out of order");
    HostCall call(m_Core, PF_Cmd_ABOUT);
    if (const PF_Err err = m_Core.Send(call, nullptr, nullptr); err != PF_Err_NONE)
        throw CommandError(PF_Cmd_ABOUT, err, call.Message());
    return call.Message();
}

Instance& StrictHost::AddInstance(A_long width, A_long height) {
    Require(Stage::Ready, "a new instance");
    const std::lock_guard lock(m_Mutex);
    m_Instances.push_back(std::unique_ptr<Instance>(new Instance(*this, m_Core, width, height)));
    return *m_Instances.back();
}

Instance& StrictHost::NewInstance(A_long width, A_long height) {
    Instance& instance = AddInstance(width, height);
    instance.SetUp();
    return instance;
}

Instance& StrictHost::OpenInstance(const std::vector<char>* flat, A_long width, A_long height) {
    Instance& instance = AddInstance(width, height);
    instance.Resetup(instance.m_Sequence, flat ? m_Core.handles.NewFrom(*flat) : nullptr);
    return instance;
}

void StrictHost::FinishInstances() {
    for (const auto& instance : m_Instances) {
        if (instance->IsDeleted())
            continue;
        try {
            instance->Delete();
        } catch (const CommandError& error) {
            m_Core.violations.Add(error.what());
        }
    }
}

// Plug-ins may leave the disposal of their global handle to the host.
void StrictHost::Finish() {
    if (m_Stage == Stage::Finished)
        return;
    FinishInstances();
    if (m_Stage != Stage::Loaded) {
        HostCall call(m_Core, PF_Cmd_GLOBAL_SETDOWN);
        if (const PF_Err err = m_Core.Send(call, nullptr, nullptr); err != PF_Err_NONE)
            call.Report("gave error " + std::to_string(err));
        m_Core.handles.DisposeOwn(call.out.global_data);
    }
    m_Core.handles.DisposeOwn(m_Core.globalData);
    m_Core.suites.CheckAtEnd();
    m_Core.aegp.CheckAtEnd();
    m_Core.worlds.CheckAtEnd();
    m_Core.handles.CheckAtEnd();
    m_Stage = Stage::Finished;
}

} // namespace stricthost
