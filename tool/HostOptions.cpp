#include "tool/HostOptions.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <map>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using stricthost::Personality;

const std::map<std::string, Personality> s_Hosts = {
    {"ae", Personality::AfterEffects},
    {"ae-plain", Personality::AfterEffectsPlain},
    {"premiere", Personality::Premiere},
};
constexpr unsigned s_MostReduced = 64;

unsigned ParseReduction(const std::string& text) {
    unsigned by = 0;
    const char* const begin = text.data() + 2;
    const char* const end = text.data() + text.size();
    if (text.rfind("1/", 0) == 0) {
        const auto [stop, error] = std::from_chars(begin, end, by);
        if (error != std::errc() || stop != end)
            by = 0;
    }
    if (by < 1 || by > s_MostReduced)
        throw WrongUse("--downsample " + text + ": 1/1, 1/2, 1/3 ... 1/" + std::to_string(s_MostReduced) +
                       " was expected");
    return by;
}

std::string QuirkHelp() {
    std::string text =
        "Show a behaviour of real programs that plug-ins must survive (docs/hosts.md): a selection by "
        "number, or one or more of";
    for (const stricthost::QuirkRow* row = stricthost::QuirkTable(); row->name; ++row)
        text += std::string(row == stricthost::QuirkTable() ? " " : ", ") + row->name;
    return text;
}

bool IsBundle(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().extension() == ".plugin" ||
           std::filesystem::path(path).parent_path().extension() == ".plugin";
}

} // namespace

stricthost::Quirks ParseQuirks(const std::vector<std::string>& names) {
    stricthost::Quirks quirks;
    for (const std::string& name : names) {
        std::uint32_t seed = 0;
        const bool isSeed = name.rfind("seed:", 0) == 0;
        const char* const end = name.data() + name.size();
        if (isSeed && std::from_chars(name.data() + 5, end, seed).ptr == end && name.size() > 5) {
            quirks = stricthost::QuirksFromSeed(seed);
            std::fprintf(stderr, "strict host %s: %s\n", name.c_str(),
                         stricthost::QuirkNames(quirks).c_str());
        } else if (isSeed || !stricthost::EnableQuirk(quirks, name)) {
            throw WrongUse("--strict-host " + name +
                           ": seed:NUMBER or a name that --help lists was expected");
        }
    }
    return quirks;
}

void AddStrictHostOption(CLI::App& command, std::vector<std::string>& names) {
    command.add_option("--strict-host", names, QuirkHelp())->delimiter(',')->type_name("NAME,...|seed:N");
}

void AddHostOptions(CLI::App& command, HostOptions& options) {
    command
        .add_option("--host", options.host,
                    "Program to emulate: After Effects with or without smart render, or Premiere Pro")
        ->check(CLI::IsMember(s_Hosts))
        ->capture_default_str()
        ->type_name("ae|ae-plain|premiere");
    command.add_option("--downsample", options.downsample, "Preview resolution: scale the layer down first")
        ->capture_default_str()
        ->type_name("1/N");
    command.add_option("--pixel-aspect", options.pixelAspect, "Width of a pixel divided by its height")
        ->check(CLI::Range(0.01, 100.0))
        ->capture_default_str()
        ->type_name("RATIO");
    command.add_option("--plugin", options.plugin, "Bundle to load as a host does, instead of EFFECT")
        ->type_name("NAME.plugin");
    AddStrictHostOption(command, options.strictHost);
    command.add_flag("--allow-param-gap", options.allowParamGap,
                     "Accept a parameter of a type that hosts do not know; real programs refuse the effect");
}

HostSettings ToHostSettings(const HostOptions& options, const std::string& effect) {
    if (effect.empty() == options.plugin.empty())
        throw WrongUse("give either EFFECT, a folder or package, or --plugin NAME.plugin");
    HostSettings settings;
    settings.personality = s_Hosts.at(options.host);
    settings.across = settings.down = ParseReduction(options.downsample);
    settings.pixelAspect = options.pixelAspect;
    settings.quirks = ParseQuirks(options.strictHost);
    settings.allowParamGap = options.allowParamGap;
    settings.bundle = !options.plugin.empty() ? options.plugin : IsBundle(effect) ? effect : std::string();
    return settings;
}

} // namespace fxhost
