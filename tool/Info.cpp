#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "parameters/ParameterTraits.h"
#include "tool/Commands.h"
#include "tool/EngineSession.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

struct InfoOptions {
    std::string effect;
    bool json = false;
};

std::string Version(const EffectInfo& info) {
    return std::to_string(info.major) + "." + std::to_string(info.minor) + "." + std::to_string(info.build);
}

// A number, an array of numbers, a boolean, a pop-up's number, or null.
Json DefaultOf(const Parameter& parameter) {
    if (parameter.type == Parameter::BOOL)
        return parameter.value.Int(0) != 0;
    if (TraitsOf(parameter.type).hasChoices())
        return parameter.value.Int(0);
    const std::vector<double> numbers = HostDefault(parameter);
    if (numbers.empty())
        return nullptr;
    return numbers.size() == 1 ? Json(numbers[0]) : Json(numbers);
}

// The scale flags that the script has set, by their names in SV_ParamFlags.
Json FlagNames(const Parameter& parameter) {
    constexpr std::pair<Parameter::Flag, const char*> flags[] = {{Parameter::ScaleByWidth, "ScaleByWidth"},
                                                                 {Parameter::ScaleByHeight, "ScaleByHeight"},
                                                                 {Parameter::RemoveScale, "RemoveScale"}};
    Json names = Json::array();
    for (const auto& [flag, name] : flags)
        if (parameter.flags & flag)
            names.push_back(name);
    return names;
}

Json Describe(const Parameter& parameter) {
    Json described = {{"name", parameter.name},
                      {"label", parameter.label},
                      {"type", TraitsOf(parameter.type).name},
                      {"shown", !(parameter.flags & Parameter::NotPublished)},
                      {"enabled", !(parameter.flags & Parameter::Disabled)},
                      {"default", DefaultOf(parameter)},
                      {"flags", FlagNames(parameter)}};
    if (parameter.type == Parameter::FLOAT) {
        described["min"] = parameter.min.Float(0);
        described["max"] = parameter.max.Float(0);
        described["precision"] = parameter.flags >> Parameter::PrecisionShift;
    }
    if (parameter.type == Parameter::POINT2D)
        described["defaultUnit"] = "percent of the layer";
    if (TraitsOf(parameter.type).hasChoices())
        described["choices"] = Choices(parameter);
    return described;
}

void PrintJson(const EffectInfo& info, const std::vector<Parameter>& parameters) {
    Json described = {{"name", info.name},   {"version", Version(info)}, {"stage", info.stage},
                      {"about", info.about}, {"id", info.hostId},        {"parameters", Json::array()}};
    for (const Parameter& parameter : parameters)
        described["parameters"].push_back(Describe(parameter));
    // Text that is not UTF-8 must not stop the listing.
    std::printf("%s\n", described.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

std::string Details(const Parameter& parameter) {
    std::string details;
    if (parameter.type == Parameter::FLOAT) {
        char range[80];
        std::snprintf(range, sizeof range, "%.7g to %.7g, ", static_cast<double>(parameter.min.Float(0)),
                      static_cast<double>(parameter.max.Float(0)));
        details = range;
    }
    if (TraitsOf(parameter.type).hasChoices()) {
        const auto choices = Choices(parameter);
        for (std::size_t i = 0; i < choices.size(); ++i)
            details += std::to_string(i + 1) + " " + choices[i] + ", ";
    }
    if (const auto text = DefaultText(parameter); !text.empty())
        details += "default " + text;
    if (parameter.flags & Parameter::Disabled)
        details += " (disabled)";
    return details;
}

void PrintText(const EffectInfo& info, const std::vector<Parameter>& parameters) {
    std::printf("%s %s\n", info.name.c_str(), Version(info).c_str());
    if (!info.about.empty())
        std::printf("%s\n", info.about.c_str());
    int depth = 1;
    for (const Parameter& parameter : parameters) {
        if (parameter.type == Parameter::GROUP_END) {
            depth = std::max(1, depth - 1);
            continue;
        }
        if (parameter.flags & Parameter::NotPublished)
            continue;
        std::printf("%*s%-16s %-24s %-14s %s\n", depth * 2, "", parameter.name.c_str(),
                    parameter.label.c_str(), TraitsOf(parameter.type).name, Details(parameter).c_str());
        if (parameter.type == Parameter::GROUP_START)
            ++depth;
    }
}

int Info(const InfoOptions& options) {
    EngineSession session(options.effect);
    session.driver().updateUI();
    const auto parameters = session.driver().parameters();
    (options.json ? PrintJson : PrintText)(session.driver().info(), parameters);
    session.reportAll();
    return session.failed() ? ExitEffectFailed : ExitOk;
}

} // namespace

Command AddInfo(CLI::App& tool) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* app = tool.add_subcommand("info", "List an effect's name, version and parameters");
    app->add_option("EFFECT", options->effect, "Folder that holds fx.js, or a package file")->required();
    app->add_flag("--json", options->json, "Print JSON, for editors and scripts");
    app->footer("Example:\n  fxhost info effects/blur --json");
    return {app, [options] { return Info(*options); }};
}

} // namespace fxhost
