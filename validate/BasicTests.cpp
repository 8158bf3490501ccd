#include "validate/TestTable.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using stricthost::Personality;

constexpr unsigned s_Width = 64, s_Height = 36;

void RenderSize(TestRun& run, Personality personality, unsigned width, unsigned height, unsigned depth) {
    Trial trial(run, run.OptionsFor(personality),
                "with " + std::to_string(width) + "x" + std::to_string(height) + " pixels of " +
                    std::to_string(depth) + " bits");
    const auto input = Noise(width, height, depth);
    trial.Render(trial.Apply(width, height), FrameOf(input));
}

} // namespace

void Loads(TestRun& run) {
    for (const Personality personality : {Personality::AfterEffects, Personality::Premiere})
        Trial trial(run, run.OptionsFor(personality));
}

void RendersOneFrame(TestRun& run) {
    for (const Personality personality : run.Personalities())
        RenderSize(run, personality, s_Width, s_Height, 8);
}

void Unloads(TestRun& run) {
    for (const char* where :
         {"in the first life of the module", "after the module was unloaded and loaded again"}) {
        Trial(run, run.OptionsFor(Personality::AfterEffects), where).Apply(s_Width, s_Height);
        run.Unload();
    }
}

void Depths(TestRun& run) {
    for (const Personality personality : run.Personalities())
        for (const unsigned depth : run.Depths(personality))
            RenderSize(run, personality, s_Width + 1, s_Height + 1, depth);
}

void Sizes(TestRun& run) {
    constexpr std::pair<unsigned, unsigned> sizes[] = {{1, 1},  {1, 37},  {37, 1},
                                                       {17, 9}, {333, 2}, {16384, 2}};
    for (const Personality personality : run.Personalities())
        for (const auto& [width, height] : sizes)
            RenderSize(run, personality, width, height, 8);
}

void RowPadding(TestRun& run) {
    for (const Personality personality : run.Personalities())
        for (const unsigned depth : run.Depths(personality)) {
            const auto input = Noise(s_Width, s_Height, depth);
            fxhost::Picture expected;
            for (const auto& [padding, value] :
                 {std::pair{0u, 0xA5}, {48u, 0x00}, {48u, 0xFF}, {52u, 0x3C}}) {
                stricthost::Options options = run.OptionsFor(personality);
                options.rowPadding = padding;
                options.paddingValue = static_cast<std::uint8_t>(value);
                Trial trial(run, options, "with " + std::to_string(padding) + " bytes after each row");
                const auto got = trial.Render(trial.Apply(s_Width, s_Height), FrameOf(input));
                if (padding == 0)
                    expected = got;
                else
                    trial.ExpectSame(got, expected, "from the one of rows without a border");
            }
        }
}

void Downsampling(TestRun& run) {
    for (const Personality personality : run.Personalities())
        for (const auto& [x, y] : {std::pair{2u, 2u}, {4u, 4u}, {3u, 1u}}) {
            Trial trial(run, run.OptionsFor(personality),
                        "at 1/" + std::to_string(x) + " by 1/" + std::to_string(y) + " of the resolution");
            const auto input = Noise(s_Width / x, s_Height / y, 8);
            stricthost::FrameSpec spec = FrameOf(input);
            spec.downsampleX = {1, x};
            spec.downsampleY = {1, y};
            spec.layerWidth = s_Width;
            spec.layerHeight = s_Height;
            trial.Render(trial.Apply(s_Width, s_Height), spec);
        }
}

void PixelAspect(TestRun& run) {
    for (const Personality personality : run.Personalities())
        for (const PF_RationalScale aspect : {PF_RationalScale{10, 11}, {2, 1}, {1, 3}}) {
            Trial trial(run, run.OptionsFor(personality),
                        "with a pixel aspect of " + std::to_string(aspect.num) + "/" +
                            std::to_string(aspect.den));
            const auto input = Noise(s_Width, s_Height, 8);
            stricthost::FrameSpec spec = FrameOf(input);
            spec.pixelAspect = aspect;
            trial.Render(trial.Apply(s_Width, s_Height), spec);
        }
}

} // namespace validate
