#include "imagelib/Quantize.h"

#include "imagelib/Dither.h"

#include <iterator>

namespace ImageLib {
namespace {

enum class Pass { Nearest, Diffusion, Ordered };

struct ModeRow {
    DitheringMode mode;
    Pass pass;
    const Surface<Pixel32>* kernel;
};

constexpr ModeRow s_Modes[] = {
    {DitheringMode::None, Pass::Nearest, nullptr},
    {DitheringMode::FloydSteinberg, Pass::Diffusion, &FloydSteinbergKernel},
    {DitheringMode::JarvisJudice, Pass::Diffusion, &JarvisJudiceKernel},
    {DitheringMode::Stucki, Pass::Diffusion, &StuckiKernel},
    {DitheringMode::Atkinson, Pass::Diffusion, &AtkinsonKernel},
    {DitheringMode::Burkes, Pass::Diffusion, &BurkesKernel},
    {DitheringMode::Sierra, Pass::Diffusion, &SierraKernel},
    {DitheringMode::Sierra2, Pass::Diffusion, &Sierra2Kernel},
    {DitheringMode::Sierra3, Pass::Diffusion, &Sierra3Kernel},
    {DitheringMode::StevensonArce, Pass::Diffusion, &StevensonArceKernel},
    {DitheringMode::Bayer2x2, Pass::Ordered, &Bayer2x2Kernel},
    {DitheringMode::Bayer4x4, Pass::Ordered, &Bayer4x4Kernel},
    {DitheringMode::Bayer8x8, Pass::Ordered, &Bayer8x8Kernel},
};

const ModeRow* FindMode(DitheringMode mode) {
    for (const ModeRow& row : s_Modes)
        if (row.mode == mode)
            return &row;
    return nullptr;
}

struct Request {
    Surface<Pixel32>& surface;
    const ModeRow& mode;
    float threshold;
    bool serpentine;
};

template <class Quantizer>
void Run(const Request& request, const Quantizer& quantizer) {
    switch (request.mode.pass) {
    case Pass::Nearest:
        return Quantizers::Process(request.surface, quantizer);
    case Pass::Diffusion:
        return Dither::ErrorDiffusion(request.surface, *request.mode.kernel, quantizer, request.serpentine);
    case Pass::Ordered:
        return Dither::Ordered(request.surface, *request.mode.kernel, quantizer, request.threshold);
    }
}

void RunBitmap(const Request& request) {
    Run(request, Quantizers::Bitmap(request.threshold));
}

template <unsigned N>
void RunOctree(const Request& request) {
    Run(request, Quantizers::OctreeQuant<N>(request.surface));
}

template <unsigned N>
void RunPalette(const Request& request) {
    Run(request, Quantizers::PaletteQuant<N>());
}

using Runner = void (*)(const Request&);

// Indexed by the selector.
constexpr Runner s_Runners[] = {
    nullptr,        RunBitmap,      RunOctree<8>,   RunOctree<16>,  RunOctree<32>, RunOctree<64>,
    RunOctree<128>, RunOctree<256>, nullptr,        RunPalette<1>,  RunPalette<2>, RunPalette<3>,
    RunPalette<4>,  RunPalette<5>,  RunPalette<6>,  RunPalette<7>,  RunPalette<8>, RunPalette<9>,
    RunPalette<10>, RunPalette<11>, RunPalette<12>, RunPalette<13>,
};

} // namespace

void Quantize(Surface<Pixel32>& surface, unsigned selector, DitheringMode mode, float threshold,
              bool serpentine) {
    const ModeRow* const row = FindMode(mode);
    if (surface.IsEmpty() || !row || selector >= std::size(s_Runners) || !s_Runners[selector])
        return;
    s_Runners[selector]({surface, *row, threshold, serpentine});
}

} // namespace ImageLib
