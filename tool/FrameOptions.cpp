#include "tool/FrameOptions.h"

#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

CLI::Option* AddFrameOptions(CLI::App& command, FrameOptions& options) {
    CLI::Option* const effect = command.add_option(
        "EFFECT", options.effect, "Folder that holds fx.js, a package file, or a plug-in bundle");
    command.add_option("-i,--input", options.input, "Picture that the effect is applied to")
        ->type_name("IMAGE");
    command
        .add_option("-p,--param", options.parameters,
                    "Set a parameter, found by name or label; may be repeated")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_option("-l,--layer", options.layers, "Set the picture of a layer parameter; may be repeated")
        ->type_name("NAME=IMAGE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_option("-t,--time", options.time, "Time of the frame")->type_name("SECONDS");
    command
        .add_option("--alpha", options.alpha,
                    "How files store colours: straight, premultiplied by alpha, or as the format defines it")
        ->transform(CLI::CheckedTransformer(AlphaModes()))
        ->type_name("auto|straight|premultiplied");
    command
        .add_option("-d,--depth", options.depth,
                    "Bits per channel, 32 is float; the depth of the input by default")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("BITS");
    command.add_option("-s,--size", options.size, "Without --input: size of a transparent black layer")
        ->type_name("WxH");
    return effect;
}

const std::map<std::string, AlphaMode>& AlphaModes() {
    static const std::map<std::string, AlphaMode> s_Modes = {{"auto", AlphaMode::Auto},
                                                             {"straight", AlphaMode::Straight},
                                                             {"premultiplied", AlphaMode::Premultiplied}};
    return s_Modes;
}

Picture EmptyLayer(const std::string& size, unsigned depth) {
    const PixelSize pixels = ParsePixelSize("--size", size);
    return Picture(pixels.width, pixels.height, depth);
}

void RequireOneInput(const FrameOptions& options) {
    if (options.input.empty() && options.size.empty())
        throw WrongUse(
            "give a picture with --input IMAGE, or --size WIDTHxHEIGHT for an effect that needs none");
    if (!options.input.empty() && !options.size.empty())
        throw WrongUse("--size is for effects without a picture and cannot be given with --input");
}

Picture InputLayer(const FrameOptions& options) {
    RequireOneInput(options);
    if (options.input.empty())
        return EmptyLayer(options.size, options.depth.value_or(8));
    return ReadPicture(options.input, ReadingOf(options));
}

PictureReading ReadingOf(const FrameOptions& options) {
    return {options.depth, options.alpha, options.channels, options.part, options.overscan};
}

std::vector<LayerInput> ReadLayers(const std::vector<std::string>& assignments,
                                   const std::vector<Parameter>& parameters, unsigned depth,
                                   AlphaMode alpha) {
    std::vector<LayerInput> layers;
    for (const auto& text : assignments) {
        const auto [name, path] = SplitAssignment("--layer", text);
        const unsigned index = FindParameter("--layer", name, parameters);
        if (parameters[index].type != Parameter::LAYER)
            throw WrongUse("--layer " + text + ": \"" + name + "\" is a " +
                           TraitsOf(parameters[index].type).name + ", not a layer; use --param");
        layers.push_back({index, ReadPicture(path, depth, alpha)});
    }
    return layers;
}

FrameInputs MakeFrameInputs(const FrameOptions& options, Picture input,
                            const std::vector<Parameter>& parameters) {
    FrameInputs request;
    request.input = std::move(input);
    request.time = options.time;
    for (const auto& text : options.parameters)
        request.settings.push_back(ParseSetting(
            PercentToPixels(text, parameters, request.input.width, request.input.height), parameters));
    request.layers = ReadLayers(options.layers, parameters, request.input.depth, options.alpha);
    return request;
}

} // namespace fxhost
