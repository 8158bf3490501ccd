#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "AEGP_SuiteHandler.h"
#include "AE_Effect.h"
#include "AE_EffectCB.h"

// The arguments of one command, with short forms of the callbacks.
struct Command {
    PF_Cmd code;
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;

    const void* Acquire(const char* name, int number) const; // null when the host lacks the suite
    void Release(const char* name, int number) const { in->pica_basicP->ReleaseSuite(name, number); }
    // A suite, released at once; its table stays valid because it is static.
    template <class Suite>
    const Suite& Borrow(const char* name, int number) const {
        const void* suite = Acquire(name, number);
        EXPECT_NE(suite, nullptr) << name;
        Release(name, number);
        return *static_cast<const Suite*>(suite);
    }

    const _PF_UtilCallbacks& Utils() const { return *in->utils; }
    PF_Handle NewHandle(unsigned bytes = 8) const { return Utils().host_new_handle(bytes); }
    void Dispose(PF_Handle handle) const { Utils().host_dispose_handle(handle); }
    void* Lock(PF_Handle handle) const { return Utils().host_lock_handle(handle); }
    void Unlock(PF_Handle handle) const { Utils().host_unlock_handle(handle); }
    PF_Err CheckOut(A_long index, PF_ParamDef* def) const {
        return in->inter.checkout_param(in->effect_ref, index, 0, 1, 25, def);
    }
    PF_Err CheckIn(PF_ParamDef* def) const { return in->inter.checkin_param(in->effect_ref, def); }
    PF_Err Add(PF_ParamType type, const char* label, PF_ParamDef def = {}) const; // and counts it
    const PF_LayerDef& Input() const { return params[0]->u.ld; }
    std::uint32_t FormatOf(PF_EffectWorld world) const;

    // Smart render.
    const PF_PreRenderExtra& Pre() const { return *static_cast<PF_PreRenderExtra*>(extra); }
    const PF_SmartRenderExtra& Smart() const { return *static_cast<PF_SmartRenderExtra*>(extra); }
    PF_CheckoutResult CheckOutLayer(A_long id) const; // as much of the input as is wanted
    PF_EffectWorld* LayerPixels(A_long id) const;
    PF_EffectWorld* Output() const;
};

// A small plug-in with one slider that inverts every byte of its input and breaks no rule. It expects its
// global and frame data with every command. Tests replace or extend what it does at a command. One at a time.
class StandIn {
public:
    StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    static PF_Err Entry(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                        void* extra);

    std::map<PF_Cmd, std::function<void(Command&)>> before;
    std::map<PF_Cmd, std::function<PF_Err(Command&)>> does; // the plug-in ignores other commands
    std::map<PF_Cmd, std::function<void(Command&)>> after;
    std::string log; // one letter per command
    PF_OutFlags flags = PF_OutFlag_CUSTOM_UI | PF_OutFlag_DEEP_COLOR_AWARE;
    PF_OutFlags2 flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
    std::vector<std::pair<std::uint32_t, unsigned>> formats; // declared to Premiere Pro, with their bits

private:
    PF_Err GlobalSetup(Command& c) const;
    PF_Err Render(Command& c) const;
    PF_Err Run(Command& c);
};

// Writes the inverted input over the whole output, and zero where the output is larger.
void Invert(const PF_LayerDef& input, const PF_LayerDef& output, unsigned bits);
