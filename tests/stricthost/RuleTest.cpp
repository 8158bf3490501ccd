#include <cctype>
#include <thread>

#include "AE_EffectSuites.h"
#include "PrSDKAESupport.h"
#include "tests/stricthost/HostTest.h"

namespace {

// What a plug-in does at a command, and the violation that the host must report.
struct Violation {
    const char* report;
    void (*misbehave)(Command& c);
    PF_Cmd command = PF_Cmd_RENDER;
    bool instead = false;                                     // of what the stand-in does, not after it
    Personality personality = Personality::AfterEffectsPlain; // for smart commands After Effects
};

void* s_Context = nullptr;
char* s_Own = nullptr;
PF_ParamDef s_Def;
PF_EffectWorld s_World;

char* Pixels(const PF_LayerDef& world) {
    return reinterpret_cast<char*>(world.data);
}

PF_Handle Freed(Command& c) {
    const PF_Handle handle = c.NewHandle();
    c.Dispose(handle);
    return handle;
}

void ChangeControl(Command& c, A_long index) {
    c.Borrow<PF_ParamUtilsSuite3>("PF Param Utils Suite", 3)
        .PF_UpdateParamUI(c.in->effect_ref, index, c.params[index]);
}

const Violation s_Violations[] = {
    {"RENDER disposed of a freed handle", [](Command& c) { c.Dispose(Freed(c)); }},
    {"locked a freed handle", [](Command& c) { EXPECT_EQ(c.Lock(Freed(c)), nullptr); }},
    {"asked for the size of an unknown handle", [](Command& c) { c.Utils().host_get_handle_size(&s_Own); }},
    {"8 bytes made in RENDER was written after it was disposed of",
     [](Command& c) {
         char* const data = *Freed(c);
         EXPECT_EQ(static_cast<unsigned char>(data[0]), 0xDD);
         data[3] = 1;
     }},
    {"8 bytes made in RENDER was written outside its memory",
     [](Command& c) {
         const PF_Handle handle = c.NewHandle();
         (*handle)[8] = 1;
         c.Dispose(handle);
     }},
    {"16 bytes made in RENDER was written at its old place after a resize",
     [](Command& c) {
         PF_Handle handle = c.NewHandle();
         char* const old = *handle;
         std::strcpy(old, "kept");
         EXPECT_EQ(c.Utils().host_resize_handle(16, &handle), PF_Err_NONE);
         EXPECT_STREQ(*handle, "kept");
         EXPECT_EQ(c.Utils().host_get_handle_size(handle), 16u);
         old[0] = 1;
         c.Dispose(handle);
     }},
    {"24 bytes made in RENDER was never disposed of", [](Command& c) { c.NewHandle(24); }},
    {"RENDER did not unlock a handle", [](Command& c) { c.Lock(c.in->sequence_data); }},
    {"RENDER unlocked a handle too often", [](Command& c) { c.Unlock(c.in->sequence_data); }},
    {"SEQUENCE_SETDOWN did not dispose of sequence_data", [](Command& c) { c.out->sequence_data = nullptr; },
     PF_Cmd_SEQUENCE_SETDOWN, true},
    {"SEQUENCE_SETDOWN left a handle in sequence_data that is not live",
     [](Command& c) { c.Dispose(c.in->sequence_data); }, PF_Cmd_SEQUENCE_SETDOWN, true},
    {"FRAME_SETDOWN did not dispose of frame_data", [](Command&) {}, PF_Cmd_FRAME_SETDOWN, true},
    {"replaced sequence_data", [](Command& c) { c.out->sequence_data = nullptr; }, PF_Cmd_UPDATE_PARAMS_UI},
    {"GLOBAL_SETUP promised threaded rendering of data that needs flattening",
     [](Command& c) {
         c.out->out_flags |= PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING;
         c.out->out_flags2 |= PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
     },
     PF_Cmd_GLOBAL_SETUP},
    {"RENDER did not check parameter 1 in", [](Command& c) { c.CheckOut(1, &s_Def); }},
    {"RENDER checked in a parameter that is not checked out", [](Command& c) { c.CheckIn(&s_Def); }},
    {"checked out parameter 2, which does not exist",
     [](Command& c) { EXPECT_NE(c.CheckOut(2, &s_Def), PF_Err_NONE); }},
    {"into a definition that is in use", [](Command& c) { c.CheckOut(1, c.params[1]); }},
    {"but there are no values yet", [](Command& c) { c.CheckOut(1, &s_Def); }, PF_Cmd_PARAMS_SETUP},
    {"RENDER added a parameter out of turn", [](Command& c) { c.Add(PF_Param_ANGLE, "late"); }},
    {"reported 3 parameters, but added 1", [](Command& c) { ++c.out->num_params; }, PF_Cmd_PARAMS_SETUP},
    {"PF Handle Suite 2 was never released (1 times)",
     [](Command& c) {
         c.Acquire("PF Handle Suite", 2);
         c.Borrow<PF_HandleSuite1>("PF Handle Suite", 2);
     }},
    {"released PF Handle Suite 2 without holding it", [](Command& c) { c.Release("PF Handle Suite", 2); }},
    {"outside its rows, after the pixels of row 1",
     [](Command& c) { Pixels(*c.output)[c.output->rowbytes + 4 * c.output->width] = 0; }},
    {"outside its rows, before the first row", [](Command& c) { Pixels(*c.output)[-1] = 0; }},
    {"the output of RENDER was written outside its rows, after the last row",
     [](Command& c) { Pixels(*c.output)[c.output->height * c.output->rowbytes] = 0; }},
    {"RENDER wrote into its input", [](Command& c) { Pixels(c.Input())[0] ^= 1; }},
    {"SMART_RENDER wrote into its input", [](Command& c) { Pixels(*c.LayerPixels(1))[0] ^= 1; },
     PF_Cmd_SMART_RENDER, true},
    {"an output pixel was never written, the first at (0, 2)",
     [](Command& c) {
         PF_LayerDef part = *c.output;
         part.height = 2; // of 3
         Invert(c.Input(), part, 8);
     },
     PF_Cmd_RENDER, true},
    {"a world made in RENDER was never disposed of",
     [](Command& c) { c.Utils().new_world(c.in->effect_ref, 4, 4, PF_NewWorldFlag_NONE, &s_World); }},
    {"a world that it did not make", [](Command& c) { c.Utils().dispose_world(c.in->effect_ref, c.output); }},
    {"RENDER left another GL context current", [](Command& c) { s_Context = c.in; }},
    {"RENDER let an exception reach the host", [](Command&) { throw 7; }, PF_Cmd_RENDER, true},
    {"a message without an end",
     [](Command& c) { std::memset(c.out->return_msg, '!', sizeof c.out->return_msg); }},
    {"RENDER changed a control out of turn", [](Command& c) { ChangeControl(c, 1); }},
    {"changed the control of parameter 0", [](Command& c) { ChangeControl(c, 0); }, PF_Cmd_UPDATE_PARAMS_UI},
    {"with an effect_ref that is not its own", [](Command& c) { c.in->inter.abort(nullptr); }},
    {"outside of a command or on another thread",
     [](Command& c) { std::thread([&c] { EXPECT_EQ(c.NewHandle(), nullptr); }).join(); }},
    {"checkout 9, which it never made", [](Command& c) { c.LayerPixels(9); }, PF_Cmd_SMART_RENDER},
    {"checkout 1, which it took before", [](Command& c) { c.LayerPixels(1); }, PF_Cmd_SMART_RENDER},
    {"used the checkout id 1 twice", [](Command& c) { c.CheckOutLayer(1); }, PF_Cmd_SMART_PRE_RENDER},
    {"checked out the output before any input", [](Command& c) { c.Output(); }, PF_Cmd_SMART_RENDER, true},
    {"checked out the output twice", [](Command& c) { c.Output(); }, PF_Cmd_SMART_RENDER},
    {"without PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS",
     [](Command& c) { c.Pre().output->max_result_rect.right = ++c.Pre().output->result_rect.right; },
     PF_Cmd_SMART_PRE_RENDER},
    {"beyond its max_result_rect", [](Command& c) { --c.Pre().output->max_result_rect.right; },
     PF_Cmd_SMART_PRE_RENDER},
    {"RENDER declared pixel formats out of turn",
     [](Command& c) {
         c.Borrow<PF_PixelFormatSuite>("PF Pixel Format Suite", 1)
             .ClearSupportedPixelFormats(c.in->effect_ref);
     },
     PF_Cmd_RENDER, false, Personality::Premiere},
};

class RuleTest : public HostTest, public testing::WithParamInterface<Violation> {};

// Sends every command at which a violation may happen.
TEST_P(RuleTest, EachViolationIsReportedOnce) {
    const Violation& violation = GetParam();
    const bool smart =
        violation.command == PF_Cmd_SMART_PRE_RENDER || violation.command == PF_Cmd_SMART_RENDER;
    m_Options.personality = smart ? Personality::AfterEffects : violation.personality;
    m_Options.rowPadding = 13;
    m_Options.currentContext = [] { return s_Context; };
    s_Context = nullptr;
    m_Input = Gradient(5, 3);
    m_Plugin.after[violation.command] = violation.misbehave;
    if (violation.instead)
        m_Plugin.does.erase(violation.command);
    Instance& instance = Start();
    instance.UpdateUI();
    const bool failed = instance.Render(m_Request).error != PF_Err_NONE;
    instance.UserChanged(1);
    m_Host->Finish();
    EXPECT_EQ(failed, std::strstr(violation.report, "exception") != nullptr);
    EXPECT_THAT(m_Host->Violations(), testing::Contains(testing::HasSubstr(violation.report)).Times(1));
}

// Found by GoogleTest, which prints the parameter of a failed test.
void PrintTo(const Violation& violation, std::ostream* out) {
    *out << violation.report;
}

// "disposed of a freed handle" becomes DisposedOfAFreedHandle.
std::string NameOf(const testing::TestParamInfo<Violation>& info) {
    std::string name;
    bool starts = true;
    for (const char* c = info.param.report; *c; starts = !std::isalnum(static_cast<unsigned char>(*c++)))
        if (std::isalnum(static_cast<unsigned char>(*c)))
            name += starts ? static_cast<char>(std::toupper(*c)) : *c;
    return name;
}

INSTANTIATE_TEST_SUITE_P(Violations, RuleTest, testing::ValuesIn(s_Violations), NameOf);

} // namespace
