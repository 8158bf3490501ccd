#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/HostApi.h"

// The three blocks that the adapter keeps in host handles. Their layouts are fixed, because hosts copy them
// byte by byte and keep them across versions of the module.
namespace Adapter {

// The data of an instance, at the beginning of a zero-filled handle of SequenceRecordSize bytes.
struct SequenceRecord {
    std::uint32_t lastWidth; // size of the last rendered frame in pixels, recorded while uiReady is set
    std::uint32_t lastHeight;
    std::uint32_t lastBpp;   // its bits per channel
    std::uint32_t compWidth; // composition size in pixels at the last frame set-up
    std::uint32_t compHeight;
    std::uint32_t reserved;
    std::uint8_t uiReady;
    std::uint8_t wasResetup;
    void* engineSequence;  // from IPlugin::initSequenceData; null in flattened data
    float compPixelAspect; // width / height of a pixel
};
constexpr std::size_t SequenceRecordSize = 8192;

static_assert(offsetof(SequenceRecord, lastWidth) == 0);
static_assert(offsetof(SequenceRecord, lastHeight) == 4);
static_assert(offsetof(SequenceRecord, lastBpp) == 8);
static_assert(offsetof(SequenceRecord, compWidth) == 12);
static_assert(offsetof(SequenceRecord, compHeight) == 16);
static_assert(offsetof(SequenceRecord, reserved) == 20);
static_assert(offsetof(SequenceRecord, uiReady) == 24);
static_assert(offsetof(SequenceRecord, wasResetup) == 25);
static_assert(offsetof(SequenceRecord, engineSequence) == 32);
static_assert(offsetof(SequenceRecord, compPixelAspect) == 40);

// The record of the command's instance, or null when it has none. The host keeps the handle locked during the
// command, so the handle needs no lock here.
inline SequenceRecord* FindRecord(const PF_InData& in) {
    const auto handle = reinterpret_cast<void**>(in.sequence_data);
    return handle ? static_cast<SequenceRecord*>(*handle) : nullptr;
}

// The data of the plug-in, from global set-up on.
struct GlobalData {
    std::uint8_t initialised;
    A_long aegpPluginId; // After Effects only
};
static_assert(sizeof(GlobalData) == 8 && offsetof(GlobalData, aegpPluginId) == 4);

// Premiere Pro only, from frame set-up to frame set-down: the output size in pixels that the engine asked
// for, scaled by the down-sampling factors.
struct FrameData {
    std::uint32_t width;
    std::uint32_t height;
};
static_assert(sizeof(FrameData) == 8);

} // namespace Adapter
