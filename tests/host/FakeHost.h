#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "AE_EffectUI.h"
#include "host/EntryPoint.h"

struct SPBasicSuite;

// A small editing program: carries handles from out_data to in_data, hands out the suites that the adapter
// asks for unless they are in `missing`, and counts what is not given back. One at a time.
class FakeHost {
public:
    enum class Kind { AfterEffects, Premiere };
    explicit FakeHost(Kind kind = Kind::AfterEffects);
    ~FakeHost();

    // One command, with the handles mirrored before and taken over afterwards, as editing programs do.
    PF_Err Send(PF_Cmd command, void* extra = nullptr, PF_LayerDef* output = nullptr);
    // Global set-up, parameter set-up, a new instance and a first UI update; then forgets the engine's calls.
    void SetUp();
    PF_Err UserChanged(A_long index);

    // What is still borrowed, "" when all came back.
    std::string Unreturned() const;
    int LiveHandles() const { return static_cast<int>(handles.size()); }

    PF_InData in = {};
    PF_OutData out = {};

    // Parameters: index 0 is the input layer. Values are changed here between commands.
    std::vector<PF_ParamDef> params;
    std::vector<std::string> choices; // of pop-ups, by parameter index
    std::vector<PF_ParamDef*> Array();

    std::set<std::string> missing;         // suite names
    std::map<std::string, PF_Err> failing; // callback name to the error it returns
    int failAddParam = -1;                 // index of the parameter that the host refuses
    int allocationsLeft = 1000;
    std::map<const void*, std::uint32_t> formats; // pixel address to format code; else `format`
    std::uint32_t format = 0x62677261;
    std::vector<std::string> log; // host callbacks worth checking, with arguments
    std::vector<std::uint32_t> pixelFormats;
    PF_CustomUIInfo customUi = {};
    std::map<A_long, PF_ParamDef> updatedUi;
    A_long compWidth = 1280, compHeight = 720;
    A_long aspectNum = 2, aspectDen = 1;
    PF_EffectWorld earlierFrame = {}; // what rendering an earlier frame gives
    void (*onCheckoutParam)(FakeHost& host, A_long index) = nullptr;

    // Smart render.
    PF_LRect inputRect = {0, 0, 0, 0};
    std::vector<std::pair<A_long, PF_RenderRequest>> layerCheckouts;
    PF_EffectWorld* inputWorld = nullptr;
    PF_EffectWorld* outputWorld = nullptr;
    PF_PreRenderInput preRenderInput = {};
    PF_PreRenderOutput preRenderOutput = {};
    PF_Err SmartPreRender();
    PF_Err SmartRender();

    std::set<void**> handles;
    std::map<std::string, int> borrowed; // by kind: suites, parameters, AEGP objects
    PF_Err Failure(const char* callback) const;
    static FakeHost& Of(PF_ProgPtr effect);

private:
    PF_UtilCallbacks m_Utils = {};
};

// A picture in host memory with guarded rows of any stride.
class FakeWorld {
public:
    // bits per channel; rowBytes below 0 makes a bottom-up world.
    FakeWorld(A_long width, A_long height, int bits, A_long rowBytes = 0);
    PF_EffectWorld world = {};
    template <class Channel>
    Channel At(A_long x, A_long y, int channel) const {
        Channel value;
        std::copy_n(Address(x, y, sizeof(Channel), channel), sizeof value, reinterpret_cast<char*>(&value));
        return value;
    }
    template <class Channel>
    void Set(A_long x, A_long y, int channel, Channel value) {
        std::copy_n(reinterpret_cast<const char*>(&value), sizeof value,
                    const_cast<char*>(Address(x, y, sizeof(Channel), channel)));
    }
    // True when the bytes outside the rows are as they were.
    bool PaddingIsIntact() const;

private:
    const char* Address(A_long x, A_long y, std::size_t channelBytes, int channel) const;
    int m_Bits;
    std::vector<char> m_Bytes;
};
