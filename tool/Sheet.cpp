#include <memory>

#include "guard/Stage.h"
#include "tool/Commands.h"
#include "tool/ContactSheet.h"
#include "tool/FrameOptions.h"
#include "tool/GuardOptions.h"
#include "tool/HostOptions.h"
#include "tool/HostSession.h"
#include "tool/Variations.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

constexpr std::size_t s_MostCells = 1024;

struct SheetOptions {
    FrameOptions frame;
    std::vector<std::string> variations;
    std::string output;
    unsigned cell = 320;
    HostOptions host;
    GuardLimits limits;
};

// Renders the values of the first variation from left to right, and those of an optional second one from top
// to bottom.
std::vector<SheetCell> RenderCells(FrameRenderer& renderer, const FrameInputs& base,
                                   const std::vector<Variation>& variations) {
    const Variation& across = variations.front();
    const Variation* down = variations.size() > 1 ? &variations[1] : nullptr;
    const std::size_t rows = down ? down->texts.size() : 1;
    if (across.texts.size() * rows > s_MostCells)
        throw WrongUse("--vary: at most " + std::to_string(s_MostCells) + " pictures fit on a sheet");
    std::vector<SheetCell> cells;
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < across.texts.size(); ++column) {
            FrameInputs request = base;
            request.settings.push_back(across.settings[column]);
            std::string label = across.name + " " + across.texts[column];
            if (down) {
                request.settings.push_back(down->settings[row]);
                label += ", " + down->name + " " + down->texts[row];
            }
            ReportFrame(static_cast<long>(cells.size()) + 1);
            cells.push_back({renderer.render(request), label});
        }
    return cells;
}

int Sheet(const SheetOptions& options) {
    RequireWritable(options.output);
    if (options.variations.size() > 2)
        throw WrongUse("--vary: at most two parameters can vary on a sheet");
    Picture input = InputLayer(options.frame);
    HostSession session(ToHostSettings(options.host, options.frame.effect), options.frame.effect);
    const auto parameters = session.parameters();
    std::vector<Variation> variations;
    for (const auto& text : options.variations)
        variations.push_back(ParseVariation(text, parameters));
    const FrameInputs base = MakeFrameInputs(options.frame, std::move(input), parameters);
    const auto cells = RenderCells(session, base, variations);
    WritePicture(
        options.output,
        MakeContactSheet(cells, static_cast<unsigned>(variations.front().texts.size()), options.cell));
    return session.finish();
}

} // namespace

Command AddSheet(CLI::App& tool) {
    const auto options = std::make_shared<SheetOptions>();
    CLI::App* app =
        tool.add_subcommand("sheet", "Render a labelled contact sheet of the values of a parameter");
    AddFrameOptions(*app, options->frame);
    app->add_option(
           "-v,--vary", options->variations,
           "Values of a parameter, from left to right; a second --vary goes from top to bottom. Separate "
           "points and colours by semicolons")
        ->required()
        ->type_name("NAME=V1,V2,...")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app->add_option("-o,--output", options->output, "Picture to write; the ending chooses the format")
        ->required()
        ->type_name("IMAGE");
    app->add_option("--cell", options->cell, "Largest width of one picture on the sheet")
        ->check(CLI::Range(16u, MaxExtent))
        ->capture_default_str()
        ->type_name("PIXELS");
    AddHostOptions(*app, options->host);
    AddGuardOptions(*app, options->limits);
    app->footer("Examples:\n"
                "  fxhost sheet effects/blur -i samples/photo.png --vary Radius=0,10,20,40 -o sheet.png\n"
                "  fxhost sheet effects/blur -i samples/photo.png --vary Radius=5,50 "
                "--vary Direction=Horizontal,Vertical -o sheet.png");
    return {app, [options] {
                return RunGuarded(options->limits, options->frame.effect, [&] { return Sheet(*options); });
            }};
}

} // namespace fxhost
