#include "host/PixelData.h"

#include <cstdint>

#include "AE_EffectCBSuites.h"
#include "AE_EffectPixelFormat.h"
#include "PrSDKAESupport.h"
#include "host/HostKind.h"
#include "host/Suites.h"
#include "sdk/PixelFormats.h"

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

} // namespace Adapter
