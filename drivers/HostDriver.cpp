#include "drivers/HostDriver.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "drivers/BundleReference.h"
#include "drivers/EffectDiagnostics.h"
#include "drivers/HostValues.h"
#include "engine/Config.h"
#include "engine/IPlugin.h"
#include "guard/Stage.h"
#include "host/EntryPoint.h"
#include "parameters/ParameterTraits.h"
#include "platform/CGL.h"
#include "platform/GLProblem.h"
#include "toolkit/Downsampling.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Divisible by the usual frame rates, their 1000/1001 forms included; a clip may last two hours.
constexpr A_u_long s_UnitsPerSecond = 240000;
constexpr double s_MostSeconds = 8900;

PF_FilterProc s_Entry = nullptr; // entry point of the plug-in

Stage StageOf(PF_Cmd command) {
    switch (command) {
    case PF_Cmd_GLOBAL_SETUP:
    case PF_Cmd_PARAMS_SETUP:
        return Stage::Setup;
    case PF_Cmd_UPDATE_PARAMS_UI:
        return Stage::UpdateUI;
    case PF_Cmd_FRAME_SETUP:
    case PF_Cmd_SMART_PRE_RENDER:
        return Stage::PreRender;
    case PF_Cmd_RENDER:
    case PF_Cmd_SMART_RENDER:
        return Stage::Script;
    default:
        return Stage::Idle;
    }
}

// Reports the stage to the watchdog, then sends the command to the plug-in.
PF_Err WatchedEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                    void* extra) {
    const StageSpan span(StageOf(command));
    return s_Entry(command, in, out, params, output, extra);
}

void* CurrentContext() {
    return CGLGetCurrentContext();
}

// The reason why global setup failed.
std::string SetupProblem(const EffectSource* source, const stricthost::CommandError& error) {
    if (source) {
        try {
            const Config config(nullptr);
        } catch (const ConfigError& problem) {
            throw EffectFailure(source->DisplayPath("config.xml"), problem.line(),
                                std::string("not well-formed XML: ") + problem.what());
        }
    }
    if (error.Code() == PF_Err_INTERNAL_STRUCT_DAMAGED)
        return "no OpenGL context could be made: " + PlatformGLProblem();
    return error.what();
}

PF_RationalScale Ratio(double value) {
    constexpr unsigned denominator = 1000;
    return {static_cast<A_long>(std::lround(value * denominator)), denominator};
}

} // namespace

HostDriver::HostDriver(const HostSettings& settings, const EffectSource* source,
                       const EffectSource::ScriptTransform& transform)
    : m_Settings(settings) {
    stricthost::Options options;
    options.personality = settings.personality;
    options.currentContext = CurrentContext;
    options.quirks = settings.quirks;
    options.allowParamGap = settings.allowParamGap;
    if (source) {
        source->Select(transform);
        s_Entry = EntryPointFunc;
        options.pluginPath = source->BundlePath();
    } else {
        try {
            m_Module = std::make_unique<stricthost::PluginModule>(settings.bundle);
        } catch (const std::runtime_error& error) {
            throw WrongUse("--plugin " + settings.bundle + ": " + error.what());
        }
        s_Entry = m_Module->Entry();
        options.pluginPath = settings.bundle;
    }
    m_Bundle = BundleAt(options.pluginPath);
    options.bundleReference = m_Bundle.get();
    m_Host = std::make_unique<stricthost::StrictHost>(WatchedEntry, options);
    setUp(source);
}

HostDriver::~HostDriver() {
    m_Host.reset(); // before the module that it drives
    if (!m_Module)
        GetPlugin()->release();
}

void HostDriver::setUp(const EffectSource* source) {
    try {
        m_Host->GlobalSetup();
        m_Host->ParamsSetup();
    } catch (const stricthost::CommandError& error) {
        throw EffectFailure(SetupProblem(source, error));
    }
    if (source)
        listLinkedParameters();
    else
        listPublishedParameters();
}

// The plug-in publishes parameters in the engine's order, except hidden ones and types that hosts do not
// have.
void HostDriver::listLinkedParameters() {
    std::size_t next = 1;
    for (unsigned i = 0; i < GetPlugin()->getNumParams(); ++i) {
        const Parameter& parameter = GetPlugin()->getParamDesc(i);
        const bool shown =
            TraitsOf(parameter.type).hasControl() && (parameter.flags & Parameter::NotPublished) == 0;
        m_Rows.push_back({parameter, shown ? next++ : 0});
    }
}

void HostDriver::listPublishedParameters() {
    const auto& params = m_Host->Params();
    for (std::size_t i = 1; i < params.size(); ++i)
        m_Rows.push_back({DescribeParam(params[i]), i});
}

std::vector<Parameter> HostDriver::parameters() {
    std::vector<Parameter> list;
    for (const Row& row : m_Rows)
        list.push_back(row.parameter);
    return list;
}

stricthost::Instance& HostDriver::instanceFor(const Picture& full) {
    const auto width = static_cast<A_long>(full.width), height = static_cast<A_long>(full.height);
    if (!m_Instance) {
        try {
            m_Instance = &m_Host->NewInstance(width, height);
        } catch (const stricthost::CommandError& error) {
            throw EffectFailure(error.what());
        }
        m_Instance->UpdateUI();
    }
    m_Instance->SetLayerSize(width, height);
    return *m_Instance;
}

void HostDriver::setValues(stricthost::Instance& instance, const FrameInputs& request) {
    const auto index = [&](unsigned number) {
        const Row& row = m_Rows.at(number);
        if (row.hostIndex == 0)
            throw WrongUse("\"" + row.parameter.name + "\" has no control in the host and cannot be set");
        return row.hostIndex;
    };
    for (const ParameterSetting& setting : request.settings)
        instance.SetValue(index(setting.index),
                          ToHostValue(m_Rows[setting.index].parameter.type, setting.value));
    for (const LayerInput& layer : request.layers)
        instance.SetValue(index(layer.index), std::make_shared<const Picture>(Downsampled(
                                                  layer.picture, m_Settings.across, m_Settings.down)));
}

Picture HostDriver::render(const FrameInputs& request) {
    if (!(std::abs(request.time) <= s_MostSeconds))
        throw WrongUse("a frame's time must lie within " + std::to_string(static_cast<int>(s_MostSeconds)) +
                       " seconds");
    stricthost::Instance& instance = instanceFor(request.input);
    setValues(instance, request);

    const bool isFullSize = m_Settings.across <= 1 && m_Settings.down <= 1;
    const Picture reduced =
        isFullSize ? Picture() : Downsampled(request.input, m_Settings.across, m_Settings.down);
    stricthost::FrameSpec frame;
    frame.input = isFullSize ? &request.input : &reduced;
    frame.timeScale = s_UnitsPerSecond;
    frame.time = static_cast<A_long>(std::lround(request.time * s_UnitsPerSecond));
    frame.timeStep = s_UnitsPerSecond / 25;
    frame.totalTime = std::max(frame.time, 0) + frame.timeStep;
    frame.downsampleX = {1, m_Settings.across};
    frame.downsampleY = {1, m_Settings.down};
    frame.pixelAspect = Ratio(m_Settings.pixelAspect);
    frame.layerWidth = static_cast<A_long>(request.input.width);
    frame.layerHeight = static_cast<A_long>(request.input.height);

    stricthost::FrameResult result = instance.Render(frame);
    if (result.error != PF_Err_NONE)
        throw EffectFailure("the plug-in answered the frame with error " + std::to_string(result.error) +
                            (result.message.empty() ? "" : ": " + result.message));
    if (const std::string problem = m_Module ? "" : FrameProblem(); !problem.empty())
        throw EffectFailure(problem);
    if (result.picture.width > MaxExtent || result.picture.height > MaxExtent)
        throw EffectFailure("the effect made an output of " + std::to_string(result.picture.width) + "x" +
                            std::to_string(result.picture.height) + " pixels; at most " +
                            std::to_string(MaxExtent) + " either way are possible");
    return std::move(result.picture);
}

bool HostDriver::withholdsData() const {
    return m_Host->WithholdsData();
}

const std::vector<std::string>& HostDriver::finish() {
    m_Host->Finish();
    return m_Host->Violations();
}

} // namespace fxhost
