#include "validate/TraceReplay.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "stricthost/CommandName.h"
#include "stricthost/StrictHost.h"
#include "toolkit/Errors.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using Json = nlohmann::ordered_json;
using stricthost::Instance;
using stricthost::Personality;

constexpr long s_PremiereId = 0x50724D72; // 'PrMr'

std::vector<Json> ReadLines(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw fxhost::WrongUse(path + ": the trace cannot be read");
    std::vector<Json> lines;
    for (std::string text; std::getline(file, text);) {
        Json line = Json::parse(text, nullptr, false);
        if (!line.is_object() || !line.contains("command"))
            throw fxhost::WrongUse(path + ":" + std::to_string(lines.size() + 1) +
                                   ": a line of JSON with a command was expected");
        lines.push_back(std::move(line));
    }
    if (lines.empty())
        throw fxhost::WrongUse(path + ": the trace is empty");
    return lines;
}

PF_RationalScale Ratio(const Json& line, const char* name) {
    const std::string text = line.value(name, "1/1");
    const std::size_t slash = text.find('/');
    return {static_cast<A_long>(std::strtol(text.c_str(), nullptr, 10)),
            static_cast<A_u_long>(std::strtoul(text.c_str() + slash + 1, nullptr, 10))};
}

// A file for the probe's lines that goes with this object.
class OwnTrace {
public:
    OwnTrace() : m_Path(std::filesystem::temp_directory_path() / ("fx-trace-" + std::to_string(getpid()))) {
        std::filesystem::remove(m_Path);
        setenv("FX_TRACE", m_Path.c_str(), 1);
    }
    ~OwnTrace() {
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }
    OwnTrace(const OwnTrace&) = delete;
    OwnTrace& operator=(const OwnTrace&) = delete;

    // The lines since the last call.
    std::vector<Json> Take() {
        std::vector<Json> lines;
        if (std::filesystem::exists(m_Path))
            lines = ReadLines(m_Path);
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(m_Taken));
        m_Taken += lines.size();
        return lines;
    }

private:
    std::filesystem::path m_Path;
    std::size_t m_Taken = 0;
};

// Instances are numbered anew in the order in which they appear, as the numbers of two runs may differ.
class InstanceNumbers {
public:
    long NumberFor(long number) {
        if (number == 0)
            return 0;
        return m_Numbers.try_emplace(number, static_cast<long>(m_Numbers.size()) + 1).first->second;
    }

private:
    std::map<long, long> m_Numbers;
};

class Replay {
public:
    explicit Replay(const TraceOptions& options)
        : m_Options(options), m_Real(ReadLines(options.trace)), m_Module(options.probe) {
        stricthost::Options host = options.host;
        host.pluginPath = options.probe;
        if (options.follow)
            host.personality = Followed();
        m_Host = std::make_unique<stricthost::StrictHost>(m_Module.Entry(), host);
        m_Own.Take();
    }

    std::string Run() {
        while (m_At < m_Real.size()) {
            const std::size_t before = m_At;
            try {
                Perform(m_Real[m_At]);
            } catch (const std::exception& error) {
                return Where(before) + "the emulated host stops: " + error.what();
            }
            for (const Json& own : m_Own.Take())
                if (std::string difference = Compare(own); !difference.empty())
                    return difference;
            if (m_At == before)
                return Where(before) + "the real host sends " + NameOf(m_Real[before]) +
                       ", the emulated one sends nothing";
        }
        return {};
    }

private:
    Personality Followed() const {
        if (m_Real.front().value("host", 0L) == s_PremiereId)
            return Personality::Premiere;
        const bool smart = std::any_of(m_Real.begin(), m_Real.end(), [](const Json& line) {
            return line.value("command", -1) == PF_Cmd_SMART_PRE_RENDER;
        });
        return smart ? Personality::AfterEffects : Personality::AfterEffectsPlain;
    }

    static std::string NameOf(const Json& line) {
        return stricthost::CommandName(line.value("command", -1)) + (" (" + line.at("command").dump() + ")");
    }

    std::string Where(std::size_t index) const {
        return m_Options.trace + ":" + std::to_string(index + 1) + ": ";
    }

    // The instance that a line means; the oldest one that no line has named yet for a new number.
    Instance& Find(const Json& line) {
        const long number = line.value("instance", 0L);
        if (const auto found = m_Instances.find(number); found != m_Instances.end())
            return *found->second;
        if (m_Unnamed.empty())
            throw std::runtime_error("the trace names an instance that was not set up before");
        Instance* const instance = m_Unnamed.front();
        m_Unnamed.pop_front();
        if (number != 0)
            m_Instances[number] = instance;
        return *instance;
    }

    void Reopen(const Json& line) {
        std::vector<char> bytes(16);
        const A_long number = line.value("instance", 0);
        std::memcpy(bytes.data(), &number, sizeof number);
        m_Unnamed.push_back(&m_Host->OpenInstance(line.value("sequenceData", false) ? &bytes : nullptr));
    }

    // Saving is followed by set-down, copying is not.
    void Flatten(const Json& line) {
        const bool saves =
            m_At + 1 < m_Real.size() && m_Real[m_At + 1].value("command", -1) == PF_Cmd_SEQUENCE_SETDOWN;
        Instance& instance = Find(line);
        if (saves)
            instance.SaveAndReopen();
        else
            m_Unnamed.push_back(&instance.Duplicate());
    }

    // Forgets the instance, whose number a copy may still have.
    void Delete(const Json& line) {
        Instance& instance = Find(line);
        instance.Delete();
        std::erase_if(m_Instances, [&](const auto& entry) { return entry.second == &instance; });
    }

    static unsigned Extent(const Json& line, const char* full, const PF_RationalScale& scale) {
        const double pixels =
            line.value(full, 1) * (scale.den ? static_cast<double>(scale.num) / scale.den : 1);
        return static_cast<unsigned>(std::clamp(std::ceil(pixels), 1.0, 30000.0));
    }

    void Render(const Json& line) {
        stricthost::FrameSpec spec;
        spec.downsampleX = Ratio(line, "downsampleX");
        spec.downsampleY = Ratio(line, "downsampleY");
        spec.pixelAspect = Ratio(line, "pixelAspect");
        const auto input = Noise(Extent(line, "width", spec.downsampleX),
                                 Extent(line, "height", spec.downsampleY), line.value("bits", 8u));
        spec.input = &input;
        spec.time = line.value("time", 0);
        spec.timeStep = line.value("timeStep", 1);
        spec.timeScale = line.value("timeScale", 1u);
        spec.layerWidth = line.value("width", 0);
        spec.layerHeight = line.value("height", 0);
        if (line.contains("requestLeft"))
            spec.wanted = PF_LRect{line.value("requestLeft", 0), line.value("requestTop", 0),
                                   line.value("requestRight", 0), line.value("requestBottom", 0)};
        Find(line).Render(spec);
    }

    void Perform(const Json& line) {
        switch (line.value("command", -1)) {
        case PF_Cmd_ABOUT:
            m_Host->About();
            return;
        case PF_Cmd_GLOBAL_SETUP:
            return m_Host->GlobalSetup();
        case PF_Cmd_GLOBAL_SETDOWN:
            return m_Host->Finish();
        case PF_Cmd_PARAMS_SETUP:
            return m_Host->ParamsSetup();
        case PF_Cmd_SEQUENCE_SETUP:
            m_Unnamed.push_back(&m_Host->NewInstance());
            return;
        case PF_Cmd_SEQUENCE_RESETUP:
            return Reopen(line);
        case PF_Cmd_SEQUENCE_FLATTEN:
            return Flatten(line);
        case PF_Cmd_SEQUENCE_SETDOWN:
            return Delete(line);
        case PF_Cmd_UPDATE_PARAMS_UI:
            Find(line).UpdateUI();
            return;
        case PF_Cmd_USER_CHANGED_PARAM:
            Find(line).UserChanged(1);
            return;
        case PF_Cmd_FRAME_SETUP:
        case PF_Cmd_SMART_PRE_RENDER:
            return Render(line);
        default:
            return;
        }
    }

    bool IsIgnored(const std::string& field) const {
        return field == "thread" ||
               std::find(m_Options.ignore.begin(), m_Options.ignore.end(), field) != m_Options.ignore.end();
    }

    // Compares a line of the emulated host with the next one of the real host.
    std::string Compare(Json own) {
        if (m_At == m_Real.size())
            return Where(m_At - 1) + "the trace ends here, the emulated host sends " + NameOf(own);
        const std::size_t at = m_At++;
        Json real = m_Real[at];
        if (real["command"] != own["command"])
            return Where(at) + "the real host sends " + NameOf(real) + ", the emulated one " + NameOf(own);
        real["instance"] = m_RealNumbers.NumberFor(real.value("instance", 0L));
        own["instance"] = m_OwnNumbers.NumberFor(own.value("instance", 0L));
        for (const auto& [field, value] : real.items())
            if (!IsIgnored(field) && own.contains(field) && own[field] != value)
                return Where(at) + NameOf(real) + ": \"" + field + "\" is " + value.dump() +
                       " in the real host, and " + own[field].dump() + " in the emulated one";
        return {};
    }

    const TraceOptions& m_Options;
    std::vector<Json> m_Real;
    OwnTrace m_Own;
    stricthost::PluginModule m_Module;
    std::unique_ptr<stricthost::StrictHost> m_Host; // before its module
    std::size_t m_At = 0;                           // line of the real trace
    std::map<long, Instance*> m_Instances;          // by the numbers of the real trace
    std::deque<Instance*> m_Unnamed;
    InstanceNumbers m_RealNumbers, m_OwnNumbers;
};

} // namespace

std::string FirstDifference(const TraceOptions& options) {
    try {
        return Replay(options).Run();
    } catch (const fxhost::WrongUse&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw fxhost::WrongUse(std::string("--probe: ") + error.what());
    }
}

} // namespace validate
