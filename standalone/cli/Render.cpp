#include <charconv>
#include <memory>
#include <optional>

#include "standalone/Errors.h"
#include "standalone/cli/Commands.h"
#include "standalone/cli/Session.h"
#include "standalone/images/PictureFile.h"

namespace fxhost {

namespace {

struct RenderOptions {
    std::string effect, input, output, size;
    std::vector<std::string> parameters, layers;
    double time = 0;
    std::optional<unsigned> depth;
};

// "WxH" as a transparent black layer.
Picture EmptyLayer(const std::string& size, unsigned depth) {
    unsigned extent[2] = {};
    const auto cross = size.find('x');
    const std::string parts[2] = {size.substr(0, cross),
                                  cross == std::string::npos ? "" : size.substr(cross + 1)};
    for (int i = 0; i < 2; ++i) {
        const char* end = parts[i].data() + parts[i].size();
        const auto [stop, error] = std::from_chars(parts[i].data(), end, extent[i]);
        if (error != std::errc() || stop != end || extent[i] < 1 || extent[i] > MaxExtent)
            throw WrongUse("--size " + size + ": WIDTHxHEIGHT expected, such as 1920x1080, each from 1 to " +
                           std::to_string(MaxExtent));
    }
    return Picture(extent[0], extent[1], depth);
}

Picture InputLayer(const RenderOptions& options) {
    if (options.input.empty() && options.size.empty())
        throw WrongUse("render: give a picture with --input IMAGE, or --size WIDTHxHEIGHT for an effect that "
                       "needs none");
    if (!options.input.empty() && !options.size.empty())
        throw WrongUse("render: --size is for effects without a picture and cannot be given with --input");
    if (options.input.empty())
        return EmptyLayer(options.size, options.depth.value_or(8));
    return ReadPicture(options.input, options.depth);
}

std::vector<LayerInput> Layers(const RenderOptions& options, const std::vector<Parameter>& parameters,
                               unsigned depth) {
    std::vector<LayerInput> layers;
    for (const auto& text : options.layers) {
        const auto [name, path] = SplitAssignment("--layer", text);
        const unsigned index = FindParameter("--layer", name, parameters);
        if (parameters[index].type != Parameter::LAYER)
            throw WrongUse("--layer " + text + ": \"" + name + "\" is a " + TypeName(parameters[index].type) +
                           ", not a layer; use --param");
        layers.push_back({index, ReadPicture(path, depth)});
    }
    return layers;
}

int Render(const RenderOptions& options) {
    RequireWritable(options.output);
    FrameRequest request;
    request.input = InputLayer(options);
    request.time = options.time;

    EffectSession session(options.effect);
    const auto parameters = session.driver().parameters();
    for (const auto& text : options.parameters)
        request.settings.push_back(ParseSetting(text, parameters));
    request.layers = Layers(options, parameters, request.input.depth);

    const Picture picture = session.driver().render(request);
    session.reportAll();
    WritePicture(options.output, picture);
    return session.failed() ? ExitEffectFailed : ExitOk;
}

} // namespace

Command AddRender(CLI::App& tool) {
    const auto options = std::make_shared<RenderOptions>();
    CLI::App* app = tool.add_subcommand("render", "Render a picture through an effect");
    app->add_option("EFFECT", options->effect, "Folder that holds fx.js, or a package file")->required();
    app->add_option("-i,--input", options->input, "Picture that the effect is applied to")
        ->type_name("IMAGE");
    app->add_option("-o,--output", options->output, "Picture to write; the ending chooses the format")
        ->required()
        ->type_name("IMAGE");
    app->add_option("-p,--param", options->parameters,
                    "Set a parameter by its name or label; may be repeated")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app->add_option("-l,--layer", options->layers, "Give a layer parameter a picture; may be repeated")
        ->type_name("NAME=IMAGE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app->add_option("-t,--time", options->time, "Time of the frame")->type_name("SECONDS");
    app->add_option("-d,--depth", options->depth,
                    "Bits per channel, 32 being float; the input's own otherwise")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("8|16|32");
    app->add_option("-s,--size", options->size, "Without --input: size of a transparent black layer")
        ->type_name("WxH");
    app->footer("Values: a number; x,y or x,y,z in pixels; red,green,blue[,alpha] from 0 to 1; on or off;\n"
                "a pop-up's number from 1 or its entry's text.\n\n"
                "Examples:\n"
                "  fxhost render effects/blur -i samples/photo.png -o out.png --param Radius=12\n"
                "  fxhost render effects/plasma --size 1280x720 --time 2.5 -o out.exr --depth 32");
    return {app, [options] { return Render(*options); }};
}

} // namespace fxhost
