#include <charconv>
#include <memory>
#include <optional>

#include "standalone/Errors.h"
#include "standalone/cli/Commands.h"
#include "standalone/cli/Session.h"
#include "standalone/clips/Clip.h"
#include "standalone/guard/GuardOptions.h"
#include "standalone/images/PictureFile.h"

namespace fxhost {

namespace {

struct RenderOptions {
    std::string effect, input, output, size;
    std::vector<std::string> parameters, layers;
    double time = 0;
    std::optional<unsigned> depth;
    ClipOptions clip;
    GuardLimits limits;
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

void RequireOneInput(const RenderOptions& options) {
    if (options.input.empty() && options.size.empty())
        throw WrongUse("render: give a picture with --input IMAGE, or --size WIDTHxHEIGHT for an effect that "
                       "needs none");
    if (!options.input.empty() && !options.size.empty())
        throw WrongUse("render: --size is for effects without a picture and cannot be given with --input");
}

Picture InputLayer(const RenderOptions& options) {
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

int RenderPicture(const RenderOptions& options) {
    RequireWritable(options.output);
    FrameRequest request;
    request.input = InputLayer(options);
    request.time = options.time;

    EffectSession session(options.effect);
    const auto parameters = session.driver().parameters();
    const FrameRate rate = options.clip.fps.empty() ? FrameRate{} : FrameRate::Parse(options.clip.fps);
    request.settings = ReadAnimation(options.clip, options.parameters, parameters, rate).at(options.time);
    request.layers = Layers(options, parameters, request.input.depth);

    const Picture picture = session.driver().render(request);
    session.reportAll();
    WritePicture(options.output, picture);
    return session.failed() ? ExitEffectFailed : ExitOk;
}

int RenderClip(const RenderOptions& options) {
    ClipRequest request;
    request.input = options.input;
    request.output = options.output;
    request.depth = options.depth;
    request.time = options.time;
    if (options.input.empty()) {
        const Picture layer = EmptyLayer(options.size, 8);
        request.width = layer.width;
        request.height = layer.height;
    }
    request.identity = {options.effect};
    for (const auto* texts : {&options.parameters, &options.layers})
        request.identity.insert(request.identity.end(), texts->begin(), texts->end());
    Clip clip(options.clip, request);

    EffectSession session(options.effect);
    const auto parameters = session.driver().parameters();
    const Animation animation = ReadAnimation(options.clip, options.parameters, parameters, clip.rate());
    const auto layers = Layers(options, parameters, clip.depth());
    const int status = clip.run(session.driver(), animation, layers, [&] { session.reportScript(); });
    session.reportAll();
    return status == ExitOk && session.failed() ? ExitEffectFailed : status;
}

int Render(const RenderOptions& options) {
    RequireOneInput(options);
    const bool isClip = IsClip(options.clip, options.input, options.output);
    return RunGuarded(options.limits, options.effect,
                      [&] { return isClip ? RenderClip(options) : RenderPicture(options); });
}

} // namespace

Command AddRender(CLI::App& tool) {
    const auto options = std::make_shared<RenderOptions>();
    CLI::App* app = tool.add_subcommand("render", "Render a picture or a clip through an effect");
    app->add_option("EFFECT", options->effect, "Folder that holds fx.js, or a package file")->required();
    app->add_option(
           "-i,--input", options->input,
           "Picture that the effect is applied to; for clips numbered ones (in_%04d.exr, in_####.exr), "
           "a video, or - for raw frames")
        ->type_name("FILE");
    app->add_option("-o,--output", options->output,
                    "Picture to write, the ending chooses the format; for clips out_####.png, a video, or -")
        ->required()
        ->type_name("FILE");
    app->add_option("-p,--param", options->parameters,
                    "Set a parameter by its name or label, or its keys (TIME:VALUE, ...); may be repeated")
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
    AddClipOptions(*app, options->clip);
    AddGuardOptions(*app, options->limits);
    app->footer("Values: a number; x,y or x,y,z in pixels; red,green,blue[,alpha] from 0 to 1; on or off;\n"
                "a pop-up's number from 1 or its entry's text.\n\n"
                "Examples:\n"
                "  fxhost render effects/blur -i samples/photo.png -o out.png --param Radius=12\n"
                "  fxhost render effects/plasma --size 1280x720 --time 2.5 -o out.exr --depth 32\n"
                "  fxhost render effects/blur -i clip.mp4 -o out.mp4 --param \"Radius=0:0, 1s:12\"\n"
                "  fxhost render effects/blur -i in_%04d.exr --frames 1-240 -o out_####.exr --resume");
    return {app, [options] { return Render(*options); }};
}

} // namespace fxhost
