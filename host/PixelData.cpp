#include "host/PixelData.h"

#include <cstdint>

#include "AE_EffectCBSuites.h"
#include "AE_EffectPixelFormat.h"
#include "PrSDKAESupport.h"
#include "host/HostKind.h"
#include "host/Suites.h"

namespace Adapter {

namespace {

constexpr std::uint32_t s_UnknownFormat = 0x66646162; // "badf"

struct FormatRow {
    std::uint32_t code;
    int bits;
};
constexpr FormatRow s_Formats[] = {
    {0x32336561, 32}, {0x61724742, 32}, {0x62675241, 32}, {0x62675258, 32}, // float
    {0x36316561, 16}, {0x61726742, 16}, {0x62677241, 16}, {0x62677258, 16}, // 0..32768
    {0x61726762, 8},  {0x62677261, 8},  {0x62677278, 8},                    // 0..255
};

std::uint32_t QueryPremiere(const PF_InData& in, PF_LayerDef* world) {
    RequiredSuite<PF_PixelFormatSuite1> suite(in, {kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1});
    auto format = static_cast<PrPixelFormat>(s_UnknownFormat);
    const PF_Err err = suite->GetPixelFormat(world, &format);
    return err == PF_Err_NONE ? static_cast<std::uint32_t>(format) : s_UnknownFormat;
}

std::uint32_t QueryAfterEffects(const PF_InData& in, PF_LayerDef* world) {
    RequiredSuite<PF_WorldSuite2> suite(in, {kPFWorldSuite, kPFWorldSuiteVersion2});
    auto format = static_cast<PF_PixelFormat>(s_UnknownFormat);
    const PF_Err err = suite->PF_GetPixelFormat(world, &format);
    return err == PF_Err_NONE ? static_cast<std::uint32_t>(format) : s_UnknownFormat;
}

} // namespace

int GetPixelDataBpp(PF_LayerDef* world, PF_InData* in, PF_OutData*, int* formatOut) {
    const std::uint32_t format = IsPremiere(*in) ? QueryPremiere(*in, world) : QueryAfterEffects(*in, world);
    if (formatOut)
        *formatOut = static_cast<int>(format);
    for (const FormatRow& row : s_Formats)
        if (row.code == format)
            return row.bits;
    return 0;
}

int GetPixelData(PF_InData* in, void** pixels, PF_LayerDef* world) {
    *pixels = world->data;
    return GetPixelDataBpp(world, in, nullptr, nullptr);
}

} // namespace Adapter
