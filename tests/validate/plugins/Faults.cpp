#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "AE_EffectCB.h"
#include "AE_GeneralPlug.h"
#include "SPBasic.h"
#include "SPErrorCodes.h"
#include "tests/validate/plugins/Invert.h"

// The invert with one fault. The file's name selects the fault: link the module to "hangs.so" to get the
// plug-in that hangs.
namespace {

struct Command {
    PF_Cmd code;
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;

    // What the plug-in without a fault does.
    PF_Err Run() const { return InvertMain(code, in, out, params, output, extra); }
    bool Is(PF_Cmd command) const { return code == command; }
    const PF_LayerDef& Input() const { return params[0]->u.ld; }
    // A byte of the output's first row; of plain render.
    unsigned char& Byte(int index) const { return reinterpret_cast<unsigned char*>(output->data)[index]; }
};

// Runs without the fault, and adds a number to a colour of plain render's first pixel.
PF_Err Tinted(const Command& c, int by) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_RENDER) && err == PF_Err_NONE && c.output->width > 0)
        c.Byte(1) = static_cast<unsigned char>(c.Byte(1) + by);
    return err;
}

PF_Err LeaksHandle(const Command& c) {
    if (c.Is(PF_Cmd_RENDER))
        c.in->utils->host_new_handle(64);
    return c.Run();
}

PF_Err LeaksMemory(const Command& c) {
    static std::vector<char*> kept;
    if (c.Is(PF_Cmd_SEQUENCE_SETUP))
        kept.push_back(static_cast<char*>(std::calloc(1, 100000)));
    return c.Run();
}

PF_Err LeaksFiles(const Command& c) {
    if (c.Is(PF_Cmd_SEQUENCE_SETUP) && dup(STDERR_FILENO) < 0)
        return PF_Err_OUT_OF_MEMORY;
    return c.Run();
}

PF_Err WritesPastRow(const Command& c) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_RENDER) && c.in->utils && c.output->rowbytes > c.output->width * 4)
        c.Byte(c.output->width * 4) ^= 0xFF;
    return err;
}

PF_Err WritesInput(const Command& c) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_RENDER))
        reinterpret_cast<unsigned char*>(c.Input().data)[0] ^= 1;
    return err;
}

PF_Err SkipsLastRow(const Command& c) {
    if (!c.Is(PF_Cmd_RENDER))
        return c.Run();
    PF_LayerDef fewer = *c.output;
    fewer.height -= 1;
    return InvertMain(c.code, c.in, c.out, c.params, &fewer, c.extra);
}

PF_Err KeepsWorld(const Command& c) {
    PF_EffectWorld world = {};
    if (c.Is(PF_Cmd_RENDER))
        c.in->utils->new_world(c.in->effect_ref, 4, 4, PF_NewWorldFlag_NONE, &world);
    return c.Run();
}

PF_Err ForgetsCheckin(const Command& c) {
    static PF_ParamDef def;
    if (c.Is(PF_Cmd_RENDER))
        c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 1, &def);
    return c.Run();
}

PF_Err Throws(const Command& c) {
    if (c.Is(PF_Cmd_RENDER))
        throw std::string("not caught");
    return c.Run();
}

PF_Err Hangs(const Command& c) {
    while (c.Is(PF_Cmd_RENDER))
        sleep(1);
    return c.Run();
}

PF_Err Crashes(const Command& c) {
    if (c.Is(PF_Cmd_RENDER))
        std::raise(SIGSEGV);
    return c.Run();
}

PF_Err CrashesWithOnePixel(const Command& c) {
    if (c.Is(PF_Cmd_RENDER) && c.output->width == 1 && c.output->height == 1)
        std::raise(SIGFPE);
    return c.Run();
}

PF_Err CrashesWithoutMemory(const Command& c) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_SEQUENCE_SETUP))
        **c.out->sequence_data = 1;
    return err;
}

PF_Err FailsAtHalfResolution(const Command& c) {
    if (c.Is(PF_Cmd_RENDER) && c.in->downsample_x.den != 1)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return c.Run();
}

PF_Err FailsWithWidePixels(const Command& c) {
    if (c.Is(PF_Cmd_RENDER) && c.in->pixel_aspect_ratio.num != 1)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return c.Run();
}

PF_Err FailsAtZero(const Command& c) {
    if (c.Is(PF_Cmd_RENDER) && c.params[1]->u.fs_d.value == 0)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return c.Run();
}

PF_Err ReadsPastRow(const Command& c) {
    const PF_LayerDef* input = c.Is(PF_Cmd_RENDER) ? &c.Input() : nullptr;
    const int row = input ? input->width * 4 : 0;
    const bool padded = input && input->rowbytes > row;
    return Tinted(c, padded ? reinterpret_cast<unsigned char*>(input->data)[row] : 0);
}

PF_Err ClaimsDepths(const Command& c) {
    if (!c.Is(PF_Cmd_RENDER) || c.output->rowbytes < c.output->width * 8)
        return c.Run();
    std::memset(c.output->data, 0, static_cast<std::size_t>(c.output->width)); // treats 16 bits as 8
    return PF_Err_NONE;
}

PF_Err CountsFrames(const Command& c) {
    static int frames = 0;
    return Tinted(c, c.Is(PF_Cmd_RENDER) ? frames++ : 0);
}

PF_Err DependsOnThread(const Command& c) {
    static const std::thread::id s_First = std::this_thread::get_id();
    return Tinted(c, std::this_thread::get_id() == s_First ? 0 : 1);
}

PF_Err RemembersLastTime(const Command& c) {
    static A_long last = -1;
    const bool again = !c.Is(PF_Cmd_RENDER) || last == c.in->current_time || last < 0;
    if (c.Is(PF_Cmd_RENDER))
        last = c.in->current_time;
    return Tinted(c, again ? 0 : 1);
}

// The number of the latest set of values, which all instances share.
PF_Err SharesValues(const Command& c) {
    static float amount = -1;
    if (c.Is(PF_Cmd_UPDATE_PARAMS_UI))
        amount = static_cast<float>(c.params[1]->u.fs_d.value);
    return Tinted(c, static_cast<int>(amount) % 7);
}

PF_Err IgnoresTime(const Command& c) {
    PF_InData in = *c.in;
    if (c.Is(PF_Cmd_RENDER))
        in.current_time = 0;
    return InvertMain(c.code, &in, c.out, c.params, c.output, c.extra);
}

// The mark in the data says how the instance began.
PF_Err ForgetsOnReopen(const Command& c) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_SEQUENCE_RESETUP) && c.out->sequence_data)
        (*c.out->sequence_data)[2] = 1;
    else if (c.Is(PF_Cmd_RENDER) && c.in->sequence_data && (*c.in->sequence_data)[2] && c.output->width > 0)
        c.Byte(1) ^= 1;
    return err;
}

PF_Err LosesDataOfCopies(const Command& c) {
    static PF_Handle last = nullptr;
    if (c.Is(PF_Cmd_SEQUENCE_SETUP)) {
        const PF_Err err = c.Run();
        last = c.out->sequence_data;
        return err;
    }
    return Tinted(c, c.in->sequence_data && c.in->sequence_data != last ? 1 : 0);
}

PF_Err NeedsData(const Command& c) {
    if (c.Is(PF_Cmd_SEQUENCE_RESETUP) && !c.in->sequence_data)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return c.Run();
}

PF_Err NeedsPath(const Command& c) {
    A_UTF16Char path[AEFX_MAX_PATH] = {};
    if (c.Is(PF_Cmd_GLOBAL_SETUP) &&
        c.in->utils->get_platform_data(c.in->effect_ref, PF_PlatData_EXE_FILE_PATH_W, path) != PF_Err_NONE)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return c.Run();
}

// Runs without the fault, and promises more to the host.
PF_Err Promising(const Command& c, PF_OutFlags flags, PF_OutFlags2 flags2) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_GLOBAL_SETUP)) {
        c.out->out_flags |= flags;
        c.out->out_flags2 |= flags2;
    }
    return err;
}

PF_Err LiesAboutFlags(const Command& c) {
    return Promising(c, PF_OutFlag_I_EXPAND_BUFFER, 0);
}

PF_Err ClaimsToFlatten(const Command& c) {
    return Promising(c, 0, PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA);
}

PF_Err NeedsDataInThreads(const Command& c) {
    if (c.Is(PF_Cmd_RENDER) && !c.in->sequence_data)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return Promising(c, 0, PF_OutFlag2_SUPPORTS_THREADED_RENDERING);
}

PF_Err WritesSharedData(const Command& c) {
    const void* suite = nullptr;
    PF_ConstHandle data = nullptr;
    SPBasicSuite& basic = *c.in->pica_basicP;
    if (c.Is(PF_Cmd_RENDER) && basic.AcquireSuite(kPFEffectSequenceDataSuite, 1, &suite) == kSPNoError) {
        static_cast<const PF_EffectSequenceDataSuite1*>(suite)->PF_GetConstSequenceData(c.in->effect_ref,
                                                                                        &data);
        basic.ReleaseSuite(kPFEffectSequenceDataSuite, 1);
        *static_cast<char*>(const_cast<void*>(*data)) ^= 1;
    }
    return Promising(c, 0, PF_OutFlag2_SUPPORTS_THREADED_RENDERING);
}

// Registers a name with the system that a second life of the module cannot register again.
PF_Err FailsWhenLoadedAgain(const Command& c) {
    static const bool s_Registered = std::getenv("FX_REGISTERED") == nullptr;
    setenv("FX_REGISTERED", "1", 1);
    return s_Registered ? c.Run() : PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
}

PF_Err CrashesAtUnload(const Command& c) {
    struct AtUnload {
        ~AtUnload() { std::raise(SIGSEGV); }
    };
    static const AtUnload s_AtUnload;
    return c.Run();
}

PF_Err LeaksWhenInterrupted(const Command& c) {
    if (!c.Is(PF_Cmd_RENDER))
        return c.Run();
    const PF_Handle scratch = c.in->utils->host_new_handle(32);
    const PF_Err err = c.Run();
    if (err == PF_Err_NONE && scratch)
        c.in->utils->host_dispose_handle(scratch);
    return err;
}

PF_Err UsesSharedScratch(const Command& c) {
    static std::atomic<int> busy{0};
    const int others = busy++;
    if (c.Is(PF_Cmd_RENDER))
        usleep(300); // long enough to meet another thread
    const PF_Err err = Tinted(c, others);
    --busy;
    return err;
}

// Needs a deleted duplicate before it shows.
PF_Err BreaksAfterDeletions(const Command& c) {
    static std::atomic<int> setups{0}, setdowns{0};
    setups += c.Is(PF_Cmd_SEQUENCE_RESETUP);
    setdowns += c.Is(PF_Cmd_SEQUENCE_SETDOWN);
    return Tinted(c, setups > 6 && setdowns > 3 ? 1 : 0);
}

PF_Err LiesAboutCount(const Command& c) {
    const PF_Err err = c.Run();
    if (c.Is(PF_Cmd_PARAMS_SETUP))
        c.out->num_params = 9;
    return err;
}

PF_Err AddSlider(const Command& c, const char* name, A_long id, float dephault) {
    const PF_Err err = c.Run();
    if (!c.Is(PF_Cmd_PARAMS_SETUP))
        return err;
    PF_ParamDef def = {};
    def.param_type = PF_Param_FLOAT_SLIDER;
    def.uu.id = id;
    std::strcpy(def.name, name);
    def.u.fs_d.valid_max = def.u.fs_d.slider_max = 1;
    def.u.fs_d.dephault = dephault;
    c.out->num_params = 3;
    return c.in->inter.add_param(c.in->effect_ref, -1, &def);
}

PF_Err RepeatsName(const Command& c) {
    return AddSlider(c, "Amount", 2, 0);
}

PF_Err StartsOutOfRange(const Command& c) {
    return AddSlider(c, "Other", 2, 5);
}

PF_Err FailsGlobalSetup(const Command& c) {
    return c.Is(PF_Cmd_GLOBAL_SETUP) ? PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED} : c.Run();
}

// Smart render is left out, so that faults in plain render show in every host.
PF_Err WithoutSmartRender(PF_Err (*fault)(const Command&), const Command& c) {
    const PF_Err err = fault(c);
    if (c.Is(PF_Cmd_GLOBAL_SETUP))
        c.out->out_flags2 &= ~(PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE);
    return err;
}

struct Row {
    const char* name;
    PF_Err (*fault)(const Command& c);
};
constexpr Row s_Faults[] = {
    {"leaks-handle", LeaksHandle},
    {"leaks-memory", LeaksMemory},
    {"leaks-files", LeaksFiles},
    {"writes-past-row", WritesPastRow},
    {"writes-input", WritesInput},
    {"skips-last-row", SkipsLastRow},
    {"keeps-world", KeepsWorld},
    {"forgets-checkin", ForgetsCheckin},
    {"throws", Throws},
    {"hangs", Hangs},
    {"crashes", Crashes},
    {"crashes-with-one-pixel", CrashesWithOnePixel},
    {"crashes-without-memory", CrashesWithoutMemory},
    {"fails-at-half-resolution", FailsAtHalfResolution},
    {"fails-with-wide-pixels", FailsWithWidePixels},
    {"fails-at-zero", FailsAtZero},
    {"reads-past-row", ReadsPastRow},
    {"claims-depths", ClaimsDepths},
    {"counts-frames", CountsFrames},
    {"depends-on-thread", DependsOnThread},
    {"remembers-last-time", RemembersLastTime},
    {"shares-values", SharesValues},
    {"ignores-time", IgnoresTime},
    {"forgets-on-reopen", ForgetsOnReopen},
    {"loses-data-of-copies", LosesDataOfCopies},
    {"needs-data", NeedsData},
    {"needs-path", NeedsPath},
    {"lies-about-flags", LiesAboutFlags},
    {"claims-to-flatten", ClaimsToFlatten},
    {"needs-data-in-threads", NeedsDataInThreads},
    {"writes-shared-data", WritesSharedData},
    {"fails-when-loaded-again", FailsWhenLoadedAgain},
    {"crashes-at-unload", CrashesAtUnload},
    {"leaks-when-interrupted", LeaksWhenInterrupted},
    {"uses-shared-scratch", UsesSharedScratch},
    {"breaks-after-deletions", BreaksAfterDeletions},
    {"lies-about-count", LiesAboutCount},
    {"repeats-name", RepeatsName},
    {"starts-out-of-range", StartsOutOfRange},
    {"fails-global-setup", FailsGlobalSetup},
};

// The name of this plug-in's file without its ending, as the host reports it.
std::string OwnName(PF_InData* in) {
    char path[AEFX_MAX_PATH] = {};
    in->utils->get_platform_data(in->effect_ref, PF_PlatData_EXE_FILE_PATH_DEPRECATED, path);
    std::string name = path;
    name = name.substr(name.find_last_of('/') + 1);
    return name.substr(0, name.find('.'));
}

} // namespace

extern "C" __attribute__((visibility("default"))) PF_Err EffectMain(PF_Cmd command, PF_InData* in,
                                                                    PF_OutData* out, PF_ParamDef* params[],
                                                                    PF_LayerDef* output, void* extra) {
    static const std::string s_Name = OwnName(in);
    const Command c = {command, in, out, params, output, extra};
    for (const Row& row : s_Faults)
        if (s_Name == row.name)
            return WithoutSmartRender(row.fault, c);
    return PF_Err_INTERNAL_STRUCT_DAMAGED; // an unknown name
}
