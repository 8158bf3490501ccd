#include "validate/TestRun.h"

#include <atomic>
#include <cstring>
#include <random>
#include <utility>

#include "stricthost/CommandName.h"
#include "stricthost/PixelFormats.h"

namespace validate {

namespace {

using stricthost::Personality;

PF_FilterProc s_Entry = nullptr;
SharedReport* s_Report = nullptr;
std::atomic<int> s_Threads{0};

int ThreadNumber() {
    thread_local const int s_Number = ++s_Threads;
    return s_Number;
}

bool IsRendering(PF_Cmd command) {
    return (command >= PF_Cmd_FRAME_SETUP && command <= PF_Cmd_FRAME_SETDOWN) ||
           command == PF_Cmd_SMART_PRE_RENDER || command == PF_Cmd_SMART_RENDER;
}

std::string Describe(PF_Cmd command, const PF_InData& in) {
    std::string text = stricthost::CommandName(command);
    if (IsRendering(command))
        text += " at time " + std::to_string(in.current_time) + "/" + std::to_string(in.time_scale) +
                ", layer " + std::to_string(in.width) + "x" + std::to_string(in.height);
    return text + ", thread " + std::to_string(ThreadNumber());
}

PF_Err LoggedEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                   void* extra) {
    const std::size_t number = s_Report->BeginCommand(Describe(command, *in));
    const PF_Err err = s_Entry(command, in, out, params, output, extra);
    s_Report->EndCommand(number, err);
    return err;
}

template <class Channel>
void FillNoise(fxhost::Picture& picture, double white, std::mt19937& random) {
    for (std::size_t i = 0; i < picture.bytes.size(); i += sizeof(Channel)) {
        const double unit = static_cast<double>(random() % 4097) / 4096;
        const auto channel = static_cast<Channel>(unit * white);
        std::memcpy(picture.bytes.data() + i, &channel, sizeof channel);
    }
}

} // namespace

TestRun::TestRun(std::string path, std::uint32_t seed, SharedReport& report, const HostSystem& system,
                 std::size_t shuffledSteps)
    : m_Path(std::move(path)), m_Seed(seed), m_Report(report), m_System(system),
      m_ShuffledSteps(shuffledSteps) {
    s_Report = &report;
    if (m_System.bundleAt)
        m_Bundle = m_System.bundleAt(m_Path);
}

PF_FilterProc TestRun::Entry() {
    if (!m_Module)
        m_Module = new stricthost::PluginModule(m_Path);
    s_Entry = m_Module->Entry();
    return LoggedEntry;
}

void TestRun::Unload() {
    const std::size_t number = m_Report.BeginCommand("unloading of the module");
    s_Entry = nullptr;
    delete std::exchange(m_Module, nullptr);
    m_Report.EndCommand(number, 0);
}

stricthost::Options TestRun::OptionsFor(Personality personality) const {
    stricthost::Options options;
    options.personality = personality;
    options.currentContext = m_System.currentContext;
    options.bundleReference = m_Bundle.get();
    options.pluginPath = std::filesystem::absolute(m_Path).lexically_normal().string();
    return options;
}

const TestRun::Abilities& TestRun::Find() {
    if (m_Abilities)
        return *m_Abilities;
    m_Abilities = std::make_unique<Abilities>();
    stricthost::StrictHost effects(Entry(), OptionsFor(Personality::AfterEffects));
    effects.GlobalSetup();
    m_Abilities->smart = (effects.OutFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
    m_Abilities->deep = (effects.OutFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0;
    m_Abilities->isFloat = (effects.OutFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0;
    effects.Finish();
    stricthost::StrictHost premiere(Entry(), OptionsFor(Personality::Premiere));
    premiere.GlobalSetup();
    for (const unsigned depth : {8u, 16u, 32u})
        for (const std::uint32_t format : premiere.PixelFormats())
            if (stricthost::FormatBits(format) == depth &&
                (m_Abilities->premiereDepths.empty() || m_Abilities->premiereDepths.back() != depth))
                m_Abilities->premiereDepths.push_back(depth);
    if (premiere.PixelFormats().empty())
        m_Abilities->premiereDepths = {8};
    return *m_Abilities;
}

std::vector<Personality> TestRun::Personalities() {
    if (Find().smart)
        return {Personality::AfterEffects, Personality::AfterEffectsPlain, Personality::Premiere};
    return {Personality::AfterEffectsPlain, Personality::Premiere};
}

// After Effects renders floats through smart render only.
std::vector<unsigned> TestRun::Depths(Personality personality) {
    if (personality == Personality::Premiere)
        return Find().premiereDepths;
    std::vector<unsigned> depths = {8};
    if (Find().deep)
        depths.push_back(16);
    if (Find().deep && Find().isFloat && personality == Personality::AfterEffects)
        depths.push_back(32);
    return depths;
}

const char* NameOf(Personality personality) {
    switch (personality) {
    case Personality::AfterEffects:
        return "After Effects with smart render";
    case Personality::AfterEffectsPlain:
        return "After Effects without smart render";
    default:
        return "Premiere Pro";
    }
}

fxhost::Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed) {
    fxhost::Picture picture(width, height, depth);
    std::mt19937 random(seed * 7919 + width * 31 + height);
    if (depth == 8)
        FillNoise<std::uint8_t>(picture, 255, random);
    else if (depth == 16)
        FillNoise<std::uint16_t>(picture, 32768, random);
    else
        FillNoise<float>(picture, 1, random);
    return picture;
}

} // namespace validate
