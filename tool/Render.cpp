#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "clips/Clip.h"
#include "clips/FailedPicture.h"
#include "clips/NumberPattern.h"
#include "clips/ProtectedFiles.h"
#include "guard/ErrorReport.h"
#include "guard/Stage.h"
#include "tool/ClipFlags.h"
#include "tool/Commands.h"
#include "tool/FileWatch.h"
#include "tool/FrameOptions.h"
#include "tool/GuardOptions.h"
#include "tool/GuardedCheck.h"
#include "tool/HostOptions.h"
#include "tool/HostSession.h"
#include "toolkit/ContentDigest.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

struct RenderOptions {
    FrameOptions frame;
    std::string output;
    std::optional<AlphaMode> alphaOut; // the mode of the input by default
    ClipOptions clip;
    HostOptions host;
    GuardLimits limits;
    ReportOptions report;   // quiet comes from `clip`
    PictureWriting writing; // without alpha
    bool watch = false, json = false;
};

std::unique_ptr<HostSession> OpenSession(const RenderOptions& options) {
    return std::make_unique<HostSession>(ToHostSettings(options.host, options.frame.effect),
                                         options.frame.effect, options.report);
}

std::vector<std::string> SettingsInPixels(const RenderOptions& options,
                                          const std::vector<Parameter>& parameters, unsigned width,
                                          unsigned height) {
    std::vector<std::string> settings = options.frame.parameters;
    for (std::string& text : settings)
        text = PercentToPixels(text, parameters, width, height);
    return settings;
}

PictureWriting WritingOf(const RenderOptions& options) {
    PictureWriting writing = options.writing;
    writing.alpha = options.alphaOut.value_or(options.frame.alpha);
    return writing;
}

// The files that are read besides the input.
std::vector<std::string> OtherInputs(const RenderOptions& options) {
    std::vector<std::string> files = {options.clip.keys};
    for (const std::string& layer : options.frame.layers)
        files.push_back(SplitAssignment("--layer", layer).text);
    return files;
}

// A picture may replace its own input, which is read completely before.
void RequireReplaceable(const RenderOptions& options) {
    if (options.clip.keepExisting && std::filesystem::exists(options.output))
        throw WrongUse("--output " + options.output + ": exists, and -n forbids to replace it");
    ProtectedFiles inputs;
    for (const std::string& file : OtherInputs(options))
        inputs.add(file);
    inputs.requireOther(options.output);
}

int RenderPicture(const RenderOptions& options) {
    PictureWriting writing = WritingOf(options);
    RequireWritable(options.output, writing);
    RequireReplaceable(options);
    Picture input = InputLayer(options.frame);
    const auto session = OpenSession(options);
    const auto parameters = session->parameters();
    const FrameRate rate = options.clip.fps.empty() ? FrameRate{} : FrameRate::Parse(options.clip.fps);
    FrameInputs request;
    request.settings =
        ReadAnimation(options.clip.keys, SettingsInPixels(options, parameters, input.width, input.height),
                      parameters, rate)
            .at(options.frame.time);
    request.layers = ReadLayers(options.frame.layers, parameters, input.depth, options.frame.alpha);
    const auto origin = input.origin;
    request.input = std::move(input);
    request.time = options.frame.time;

    Picture picture = session->render(request);
    picture.origin = origin;
    if (options.clip.dryRun) {
        session->reportFrame();
        TryPicture(options.output, picture, writing);
    } else if (session->reportFrame()) {
        KeepFailedPicture(options.output, picture);
    } else {
        writing.reportsLoss = true;
        PrintLoss(options.output, WritePicture(options.output, picture, writing));
        RemoveFailedPicture(options.output);
    }
    return session->finish();
}

// Everything that affects the pixels of all frames: the effect, the host and the tool. A frame of an earlier
// run with another identity is rendered again.
std::uint64_t Identity(const RenderOptions& options) {
    ContentDigest digest;
    digest.addContents(options.frame.effect);
    digest.addContents(options.host.plugin);
    digest.add(options.host.host);
    digest.add(options.host.downsample);
    digest.add(options.host.pixelAspect);
    for (const std::string& text : {options.frame.channels, options.frame.part, options.writing.compression})
        digest.add(text);
    for (const int number : {int{options.frame.overscan}, static_cast<int>(options.writing.bits),
                             options.writing.quality.value_or(0)})
        digest.add(static_cast<std::uint64_t>(number));
    digest.add(FX_VERSION);
    digest.addContents("/proc/self/exe"); // where the system has it, also another build of the same version
    return digest.value();
}

int RenderClip(const RenderOptions& options) {
    ClipRequest request;
    request.input = options.frame.input;
    request.output = options.output;
    request.reading = ReadingOf(options.frame);
    request.writing = WritingOf(options);
    request.time = options.frame.time;
    if (options.frame.input.empty()) {
        const Picture layer = EmptyLayer(options.frame.size, 8);
        request.width = layer.width;
        request.height = layer.height;
    }
    request.identity = Identity(options);
    request.otherInputs = OtherInputs(options);
    Clip clip(options.clip, request);

    const auto session = OpenSession(options);
    const auto parameters = session->parameters();
    const Animation animation =
        ReadAnimation(options.clip.keys, SettingsInPixels(options, parameters, clip.width(), clip.height()),
                      parameters, clip.rate());
    const auto layers = ReadLayers(options.frame.layers, parameters, clip.depth(), options.frame.alpha);
    const auto hasFailed = [&] { return session->reportFrame(); };
    const int status = options.clip.dryRun ? clip.dryRun(*session, animation, layers, hasFailed)
                                           : clip.run(*session, animation, layers, hasFailed);
    const int effectStatus = session->finish();
    return status == ExitOk ? effectStatus : status;
}

int RenderOnce(const RenderOptions& options) {
    const bool isClip = IsClip(options.clip, options.frame.input, options.output);
    const std::string& shown = options.host.plugin.empty() ? options.frame.effect : options.host.plugin;
    const int status = RunGuarded(options.limits, shown,
                                  [&] { return isClip ? RenderClip(options) : RenderPicture(options); });
    if (status == ExitRanAway)
        for (const Diagnostic& found : FindHang(options.limits, shown))
            PrintMessage(MessageKind::Error, ToText(found), -1, false);
    return status;
}

// Runs once and sends the summary event.
int RenderAndSummarize(const RenderOptions& options) {
    const auto begin = std::chrono::steady_clock::now();
    ReportWritten(0, 0, false);
    const int status = RunAndReport([&] { return RenderOnce(options); });
    const auto [written, total] = ReportedWritten();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    Event("summary")
        .add("status", long{status})
        .add("written", written)
        .add("total", total)
        .add("output", options.output)
        .add("seconds", elapsed.count())
        .send();
    return status;
}

// Removes the backslashes from names without a number.
void UsePlainPaths(RenderOptions& options) {
    for (const auto& [option, path] :
         {std::pair("--input", &options.frame.input), std::pair("--output", &options.output)})
        if (!NumberPattern::Parse(option, *path))
            *path = PlainPath(*path);
}

int Render(RenderOptions options) {
    if (options.json) // Standard output may carry frames.
        UseJsonEvents(options.output == "-" ? stderr : stdout);
    UsePlainPaths(options);
    RequireOneInput(options.frame);
    options.report.quiet = options.clip.quiet;
    MuteWarnings(options.clip.quiet);
    if (!options.watch)
        return RenderAndSummarize(options);
    return RunOnChange({options.frame.effect, options.frame.input},
                       [&] { return RenderAndSummarize(options); });
}

void AddPictureOptions(CLI::App& app, FrameOptions& frame, PictureWriting& writing) {
    static const std::map<std::string, SampleType> types = {{"8", SampleType::Bits8},
                                                            {"10", SampleType::Bits10},
                                                            {"16", SampleType::Bits16},
                                                            {"half", SampleType::Half},
                                                            {"float", SampleType::Float}};
    const auto add = [&](const char* name, auto& value, const char* help) {
        return app.add_option(name, value, help)->group("Pictures");
    };
    add("--channels", frame.channels,
        "Channels of the input that the effect sees: a layer, or names such as diffuse.R,diffuse.G,diffuse.B")
        ->type_name("NAMES");
    add("--part", frame.part, "Part of the input, by name or by number from 0")->type_name("NAME");
    app.add_flag("--overscan", frame.overscan,
                 "Show the effect the whole data window of EXR files, and write it with the same windows")
        ->group("Pictures");
    add("--bits", writing.bits, "Type of the channels in the output, apart from --depth")
        ->transform(CLI::CheckedTransformer(types))
        ->type_name("8|10|16|half|float");
    add("--compression", writing.compression, "Compression of .exr and .tif: none, zip, piz, dwaa, lzw, ...")
        ->type_name("NAME");
    add("--quality", writing.quality, "Quality of .jpg and .webp")
        ->check(CLI::Range(1, 100))
        ->type_name("1-100");
}

} // namespace

Command AddRender(CLI::App& tool) {
    const auto options = std::make_shared<RenderOptions>();
    CLI::App* app = tool.add_subcommand("render", "Render a picture or a clip through an effect");
    AddFrameOptions(*app, options->frame);
    app->get_option("--input")->type_name("FILE")->description(
        "Picture that the effect is applied to; for clips a numbered sequence (in_%04d.exr, in_####.exr), a "
        "video, or - for raw frames");
    app->get_option("--param")->description("Set a parameter, found by name or label, to a value or to "
                                            "keyframes (TIME:VALUE, ...); may be repeated");
    app->add_option("-o,--output", options->output,
                    "Picture to write, in the format of its extension; for clips out_####.png, a video, or -")
        ->required()
        ->type_name("FILE");
    app->add_option("--alpha-out", options->alphaOut, "The same as --alpha, for the output only")
        ->transform(CLI::CheckedTransformer(AlphaModes()))
        ->type_name("auto|straight|premultiplied");
    AddPictureOptions(*app, options->frame, options->writing);
    AddClipOptions(*app, options->clip);
    AddHostOptions(*app, options->host);
    app->add_flag("--strict", options->report.strict, "Treat warnings as errors");
    app->add_flag("--json", options->json,
                  "Print one JSON object for each frame, warning and error, and a summary, instead of text");
    app->add_flag("--watch", options->watch,
                  "Render again whenever a file of the effect, or the input, changes");
    AddGuardOptions(*app, options->limits);
    app->footer(
        "Values: a number; x,y or x,y,z in pixels; x%,y% of the layer; red,green,blue[,alpha] from 0 to 1;\n"
        "#rrggbb; on or off; a pop-up's number from 1 or its entry's text.\n\n"
        "Examples:\n"
        "  fxhost render effects/blur -i samples/photo.png -o out.png --param Radius=12\n"
        "  fxhost render effects/plasma --size 1280x720 --time 2.5 -o out.exr --depth 32\n"
        "  fxhost render effects/blur -i clip.mp4 -o out.mp4 --param \"Radius=0:0, 1s:12\"\n"
        "  fxhost render effects/blur -i in_%04d.exr --frames 1-240 -o out_####.exr --resume");
    return {app, [options] { return Render(*options); }};
}

} // namespace fxhost
