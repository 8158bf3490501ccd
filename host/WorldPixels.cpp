#include "host/WorldPixels.h"

#include <algorithm>
#include <cstring>

#include "host/CommandCall.h"
#include "host/Suites.h"
#include "sdk/PixelFormats.h"
#include "sdk/PremiereApi.h"

namespace Adapter {

namespace {

std::uint32_t QueryPremiere(const PF_InData& in, PF_LayerDef* world) {
    RequiredSuite<PF_PixelFormatSuite1> suite(in, {kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1});
    auto format = static_cast<PrPixelFormat>(PixelFormats::Invalid);
    const PF_Err err = suite->GetPixelFormat(world, &format);
    return err == PF_Err_NONE ? static_cast<std::uint32_t>(format) : PixelFormats::Invalid;
}

std::uint32_t QueryAfterEffects(const PF_InData& in, PF_LayerDef* world) {
    RequiredSuite<PF_WorldSuite2> suite(in, {kPFWorldSuite, kPFWorldSuiteVersion2});
    auto format = static_cast<PF_PixelFormat>(PixelFormats::Invalid);
    const PF_Err err = suite->PF_GetPixelFormat(world, &format);
    return err == PF_Err_NONE ? static_cast<std::uint32_t>(format) : PixelFormats::Invalid;
}

} // namespace

int GetPixelDataBpp(PF_LayerDef* world, PF_InData* in, PF_OutData*, int* formatOut) {
    const std::uint32_t format = IsPremiere(*in) ? QueryPremiere(*in, world) : QueryAfterEffects(*in, world);
    if (formatOut)
        *formatOut = static_cast<int>(format);
    return PixelFormats::BitsOf(format);
}

int GetPixelData(PF_InData* in, void** pixels, PF_LayerDef* world) {
    *pixels = world->data;
    return GetPixelDataBpp(world, in, nullptr, nullptr);
}

void ClearPixels(PF_LayerDef& world, int bits) {
    auto* row = reinterpret_cast<std::byte*>(world.data);
    for (A_long y = 0; row && y < world.height; ++y, row += world.rowbytes)
        std::memset(row, 0, PackedRowBytes(static_cast<std::size_t>(std::max(world.width, 0)), bits));
}

Overlap::Overlap(std::int64_t size, std::int64_t offset, std::int64_t otherSize)
    : source(std::max<std::int64_t>(-offset, 0)), target(std::max<std::int64_t>(offset, 0)),
      count(std::max<std::int64_t>(std::min(size - source, otherSize - target), 0)) {}

} // namespace Adapter
