#include <gmock/gmock.h>

#include <cstring>
#include <thread>

#include "AE_EffectSuites.h"
#include "PrSDKAESupport.h"

#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::Options;
using stricthost::Personality;
using testing::HasSubstr;

// A plug-in that breaks one rule, and what the host must say about it.
struct Offence {
    const char* name;
    void (*misbehave)(StandIn& plugin);
    const char* report;
    Personality personality = Personality::AfterEffectsPlain;
};

void* s_Context = nullptr;
PF_Handle s_Kept = nullptr;
PF_EffectWorld s_KeptWorld;
PF_ParamDef s_KeptDef;

// Makes, uses and gives back everything that an offence may hook into.
std::vector<std::string> Exercise(StandIn& plugin, Personality personality) {
    Options options;
    options.personality = personality;
    options.rowPadding = 13;
    options.currentContext = [] { return s_Context; };
    plugin.formats = {0x62677261};
    s_Context = nullptr;
    s_Kept = nullptr;
    const auto host = SetUpHost(options);
    stricthost::Instance& instance = host->NewInstance();
    instance.UpdateUI();
    const fxhost::Picture input = Gradient(5, 3);
    stricthost::FrameRequest request;
    request.input = &input;
    instance.Render(request);
    instance.UserChanged(1);
    host->Finish();
    return host->Violations();
}

char* Pixels(const PF_LayerDef& world) {
    return reinterpret_cast<char*>(world.data);
}

const Offence s_Offences[] = {
    {"DisposesTwice",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const PF_Handle handle = Handles(c).host_new_handle(8);
             Handles(c).host_dispose_handle(handle);
             Handles(c).host_dispose_handle(handle);
         };
     },
     "RENDER disposed of a freed handle"},
    {"LocksFreed",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const PF_Handle handle = Handles(c).host_new_handle(8);
             Handles(c).host_dispose_handle(handle);
             EXPECT_EQ(Handles(c).host_lock_handle(handle), nullptr);
         };
     },
     "RENDER locked a freed handle"},
    {"UsesUnknownHandle",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             char* own = nullptr;
             Handles(c).host_get_handle_size(&own);
         };
     },
     "an unknown handle"},
    {"WritesFreed",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const PF_Handle handle = Handles(c).host_new_handle(8);
             char* data = *handle;
             Handles(c).host_dispose_handle(handle);
             EXPECT_EQ(static_cast<unsigned char>(data[0]), 0xDD);
             data[3] = 1;
         };
     },
     "8 bytes made in RENDER was written after it was disposed of"},
    {"WritesBeyondHandle",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const PF_Handle handle = Handles(c).host_new_handle(8);
             (*handle)[8] = 1;
             Handles(c).host_dispose_handle(handle);
         };
     },
     "written outside its memory"},
    {"LeaksHandle",
     [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { Handles(c).host_new_handle(24); }; },
     "24 bytes made in RENDER was never disposed of"},
    {"KeepsLock",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) { Handles(c).host_lock_handle(c.in->sequence_data); };
     },
     "RENDER did not unlock a handle"},
    {"LeavesSequenceLive",
     [](StandIn& p) {
         p.instead[PF_Cmd_SEQUENCE_SETDOWN] = [](Command& c) -> PF_Err {
             c.out->sequence_data = nullptr;
             return PF_Err_NONE;
         };
     },
     "SEQUENCE_SETDOWN did not dispose of sequence_data"},
    {"PublishesFreed",
     [](StandIn& p) {
         p.instead[PF_Cmd_SEQUENCE_SETDOWN] = [](Command& c) -> PF_Err {
             Handles(c).host_dispose_handle(c.in->sequence_data);
             return PF_Err_NONE;
         };
     },
     "SEQUENCE_SETDOWN left a handle in sequence_data that is not live"},
    {"KeepsFrameData",
     [](StandIn& p) {
         p.after[PF_Cmd_FRAME_SETUP] = [](Command& c) { c.out->frame_data = Handles(c).host_new_handle(8); };
     },
     "FRAME_SETDOWN did not dispose of frame_data"},
    {"ReplacesSequence",
     [](StandIn& p) {
         p.after[PF_Cmd_UPDATE_PARAMS_UI] = [](Command& c) { c.out->sequence_data = nullptr; };
     },
     "UPDATE_PARAMS_UI replaced sequence_data"},
    {"KeepsParameter",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 25, &s_KeptDef);
         };
     },
     "RENDER did not check parameter 1 in"},
    {"ChecksInTwice",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             PF_ParamDef def = {};
             c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 25, &def);
             c.in->inter.checkin_param(c.in->effect_ref, &def);
             c.in->inter.checkin_param(c.in->effect_ref, &def);
         };
     },
     "RENDER checked in a parameter that is not checked out"},
    {"ChecksOutUnknown",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             PF_ParamDef def = {};
             EXPECT_NE(c.in->inter.checkout_param(c.in->effect_ref, 2, 0, 1, 25, &def), PF_Err_NONE);
         };
     },
     "checked out parameter 2, which does not exist"},
    {"ChecksOutIntoParams",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 25, c.params[1]);
         };
     },
     "into a definition that is in use"},
    {"ChecksOutBeforeValues",
     [](StandIn& p) {
         p.after[PF_Cmd_PARAMS_SETUP] = [](Command& c) {
             PF_ParamDef def = {};
             c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 25, &def);
         };
     },
     "PARAMS_SETUP called checkout_param, but there are no values yet"},
    {"AddsLate",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) { AddParam(c, MakeParam(PF_Param_ANGLE, "late")); };
     },
     "RENDER added a parameter out of turn"},
    {"MiscountsParams",
     [](StandIn& p) { p.after[PF_Cmd_PARAMS_SETUP] = [](Command& c) { ++c.out->num_params; }; },
     "told of 3 parameters, but added 1"},
    {"KeepsSuite",
     [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { Acquire(c, "PF Handle Suite", 2); }; },
     "PF Handle Suite 2 was never released (1 times)"},
    {"ReleasesUnheld",
     [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { Release(c, "PF Handle Suite", 2); }; },
     "released PF Handle Suite 2 without holding it"},
    {"WritesPadding",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             Pixels(*c.output)[c.output->rowbytes + 4 * c.output->width] = 0;
         };
     },
     "the output of RENDER was written outside its rows"},
    {"WritesBeforeFirstRow",
     [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { Pixels(*c.output)[-1] = 0; }; },
     "the output of RENDER was written outside its rows"},
    {"WritesAfterLastRow",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             Pixels(*c.output)[c.output->height * c.output->rowbytes] = 0;
         };
     },
     "the output of RENDER was written outside its rows"},
    {"WritesInput",
     [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { Pixels(c.params[0]->u.ld)[0] ^= 1; }; },
     "RENDER wrote into its input"},
    {"WritesInputInSmart",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_RENDER] = [](Command&) {};
         p.before[PF_Cmd_SMART_RENDER] = [](Command& c) {
             auto* cb = static_cast<PF_SmartRenderExtra*>(c.extra)->cb;
             PF_EffectWorld* input = nullptr;
             cb->checkout_layer_pixels(c.in->effect_ref, 1, &input);
             Pixels(*input)[0] ^= 1;
         };
     },
     "SMART_RENDER wrote into its input", Personality::AfterEffects},
    {"SkipsOutputPixel",
     [](StandIn& p) {
         p.instead[PF_Cmd_RENDER] = [](Command& c) -> PF_Err {
             PF_LayerDef part = *c.output;
             part.height = 2; // of 3
             Invert(c.params[0]->u.ld, part, 8);
             return PF_Err_NONE;
         };
     },
     "an output pixel was never written, the first at (0, 2)"},
    {"LeaksWorld",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             c.in->utils->new_world(c.in->effect_ref, 4, 4, PF_NewWorldFlag_NONE, &s_KeptWorld);
         };
     },
     "a world made in RENDER was never disposed of"},
    {"DisposesForeignWorld",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) { c.in->utils->dispose_world(c.in->effect_ref, c.output); };
     },
     "disposed of a world that it did not make"},
    {"LosesContext", [](StandIn& p) { p.after[PF_Cmd_RENDER] = [](Command& c) { s_Context = c.in; }; },
     "RENDER left another GL context current"},
    {"Throws", [](StandIn& p) { p.instead[PF_Cmd_RENDER] = [](Command&) -> PF_Err { throw 7; }; },
     "RENDER let an exception reach the host"},
    {"UpdatesLookInRender",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const auto* suite =
                 static_cast<const PF_ParamUtilsSuite3*>(Acquire(c, "PF Param Utils Suite", 3));
             suite->PF_UpdateParamUI(c.in->effect_ref, 1, c.params[1]);
             Release(c, "PF Param Utils Suite", 3);
         };
     },
     "RENDER changed a parameter's look out of turn"},
    {"UpdatesLookOfInput",
     [](StandIn& p) {
         p.after[PF_Cmd_UPDATE_PARAMS_UI] = [](Command& c) {
             const auto* suite =
                 static_cast<const PF_ParamUtilsSuite3*>(Acquire(c, "PF Param Utils Suite", 3));
             suite->PF_UpdateParamUI(c.in->effect_ref, 0, c.params[0]);
             Release(c, "PF Param Utils Suite", 3);
         };
     },
     "changed the look of parameter 0, which it may not"},
    {"PassesOtherEffect",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) { c.in->inter.abort(reinterpret_cast<PF_ProgPtr>(c.out)); };
     },
     "with an effect_ref that is not its own"},
    {"CallsFromOwnThread",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             std::thread([&c] { EXPECT_EQ(Handles(c).host_new_handle(8), nullptr); }).join();
         };
     },
     "outside of a command or on a thread of its own"},
    {"TakesUndeclaredLayer",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_RENDER] = [](Command& c) {
             PF_EffectWorld* world = nullptr;
             static_cast<PF_SmartRenderExtra*>(c.extra)->cb->checkout_layer_pixels(c.in->effect_ref, 9,
                                                                                   &world);
         };
     },
     "took the pixels of checkout 9, which it never made", Personality::AfterEffects},
    {"TakesLayerTwice",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_RENDER] = [](Command& c) {
             PF_EffectWorld* world = nullptr;
             static_cast<PF_SmartRenderExtra*>(c.extra)->cb->checkout_layer_pixels(c.in->effect_ref, 1,
                                                                                   &world);
         };
     },
     "took the pixels of checkout 1, which it took before", Personality::AfterEffects},
    {"ReusesCheckoutId",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
             auto* extra = static_cast<PF_PreRenderExtra*>(c.extra);
             PF_CheckoutResult result = {};
             extra->cb->checkout_layer(c.in->effect_ref, 0, 1, &extra->input->output_request, 0, 1, 25,
                                       &result);
         };
     },
     "used the checkout id 1 twice", Personality::AfterEffects},
    {"TakesOutputFirst",
     [](StandIn& p) {
         p.before[PF_Cmd_SMART_RENDER] = [](Command& c) {
             PF_EffectWorld* world = nullptr;
             static_cast<PF_SmartRenderExtra*>(c.extra)->cb->checkout_output(c.in->effect_ref, &world);
         };
     },
     "checked out the output before any input", Personality::AfterEffects},
    {"PromisesExtraPixels",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
             auto* output = static_cast<PF_PreRenderExtra*>(c.extra)->output;
             output->result_rect.right += 1;
             output->max_result_rect.right += 1;
         };
     },
     "without PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS", Personality::AfterEffects},
    {"PromisesBeyondMaximum",
     [](StandIn& p) {
         p.after[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
             static_cast<PF_PreRenderExtra*>(c.extra)->output->max_result_rect.right -= 1;
         };
     },
     "beyond its max_result_rect", Personality::AfterEffects},
    {"DeclaresFormatsLate",
     [](StandIn& p) {
         p.after[PF_Cmd_RENDER] = [](Command& c) {
             const auto* suite =
                 static_cast<const PF_PixelFormatSuite*>(Acquire(c, "PF Pixel Format Suite", 1));
             suite->ClearSupportedPixelFormats(c.in->effect_ref);
             Release(c, "PF Pixel Format Suite", 1);
         };
     },
     "RENDER declared pixel formats out of turn", Personality::Premiere},
};

class RuleTest : public testing::TestWithParam<Offence> {};

TEST_P(RuleTest, IsReportedOnce) {
    StandIn plugin;
    GetParam().misbehave(plugin);
    EXPECT_THAT(Exercise(plugin, GetParam().personality),
                testing::Contains(HasSubstr(GetParam().report)).Times(1));
}

INSTANTIATE_TEST_SUITE_P(Offences, RuleTest, testing::ValuesIn(s_Offences),
                         [](const auto& offence) { return std::string(offence.param.name); });

TEST(RuleTest, AGoodPluginIsNotBlamed) {
    for (const Personality personality :
         {Personality::AfterEffects, Personality::AfterEffectsPlain, Personality::Premiere}) {
        StandIn plugin;
        EXPECT_THAT(Exercise(plugin, personality), testing::IsEmpty());
    }
}

TEST(RuleTest, ACorrectPixelThatEqualsTheFillPatternIsNotBlamed) {
    StandIn plugin;
    std::uint8_t patternLike[4] = {};
    bool first = true;
    plugin.instead[PF_Cmd_RENDER] = [&](Command& c) -> PF_Err {
        if (first)
            std::memcpy(patternLike, c.output->data, 4); // what the pixel "should" be, by chance
        first = false;
        Invert(c.params[0]->u.ld, *c.output, 8);
        std::memcpy(c.output->data, patternLike, 4);
        return PF_Err_NONE;
    };
    EXPECT_THAT(Exercise(plugin, Personality::AfterEffectsPlain), testing::IsEmpty());
}

} // namespace
