#include "imagelib/Quantizers.h"

#include "imagelib/Convert.h"
#include "imagelib/MapSurface.h"

namespace ImageLib {

ColourSet Quantizers::Bitmap::Colours() const {
    static constexpr Pixel32 s_Colours[2] = {Pixel32::one, Pixel32::alpha_zero};
    return {s_Colours, 2, true, m_Threshold};
}

void Quantizers::Process(Surface<Pixel32>& surface, const ColourSet& colours) {
    MapSurface(surface, colours, nullptr);
}

void Quantizers::MakeOctreePalette(const Surface<Pixel32>& surface, unsigned colourCount,
                                   OctreeQuantEngine& engine) {
    const auto bytes =
        std::make_unique_for_overwrite<std::uint8_t[]>(std::size_t{surface.Width()} * surface.Height() * 4);
    StoreRGBA8(surface, bytes.get());
    engine.work(bytes.get(), surface.Width(), surface.Height(), colourCount);
}

} // namespace ImageLib
