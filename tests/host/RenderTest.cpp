#include <numeric>

#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "PrSDKAESupport.h"
#include "host/CopyOut.h"
#include "host/InputFrames.h"
#include "host/WorldPixels.h"
#include "tests/host/TestHost.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

template <class Channel>
Bytes BytesOf(const std::vector<Channel>& channels) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(channels.data());
    return {bytes, bytes + channels.size() * sizeof(Channel)};
}

// 8-bit pixels whose first channels count from 1, and those first channels.
Bytes Numbered(A_long pixels) {
    Bytes bytes;
    for (A_long i = 1; i <= pixels; ++i)
        bytes.insert(bytes.end(), {static_cast<std::uint8_t>(i), 0x11, 0x22, 0x33});
    return bytes;
}
std::vector<int> FirstChannels(const Bytes& bytes) {
    std::vector<int> values;
    for (std::size_t i = 0; i < bytes.size(); i += 4)
        values.push_back(bytes[i]);
    return values;
}

TEST(RenderTest, DescribesTheFrameToTheEngineInOrder) {
    TestHost host(Plain);
    Instance& instance = host.Start();
    Engine().result.assign(16, 0);
    host.before = [](Command& command) {
        if (command.code != PF_Cmd_RENDER)
            return;
        Engine().calls.clear();
        command.output->origin_x = -3;
        command.output->origin_y = 4;
    };
    FrameSpec request;
    request.time = 30;
    request.timeScale = 24;
    request.pixelAspect = {3, 2};
    ASSERT_EQ(Render(instance, Picture(2, 2, 8), request).error, PF_Err_NONE);
    EXPECT_THAT(Engine().calls,
                ElementsAre("setSequenceData 1", "setCompositionSize 2 2 1", "setInputOrigin -3 4", "begin",
                            "getNumParams", "lockFrame", "isInputRequested", "grabIntoTexture -1",
                            "getNumFeedbackFrames", "render", "grabResultBegin", "grabResultEnd", "end",
                            "releaseFrame"));
    const RecordingPlugin::Rendered& frame = Engine().renders.at(0);
    EXPECT_EQ(frame.time, 1.25);
    EXPECT_THAT((std::vector{frame.width, frame.height, frame.format}), ElementsAre(2, 2, 8));
    EXPECT_EQ(frame.pixelAspect, 1.5f);
    EXPECT_EQ(TestHost::Record(instance).lastWidth, 0u) << "the size is recorded only after a resetup";
    instance.SaveAndReopen();
    host.before = [](Command& command) { command.in.time_scale = 0; };
    Render(instance, Picture(2, 1, 16), request);
    EXPECT_EQ(Engine().renders.back().time, 30) << "without a scale";
    const Adapter::SequenceRecord& record = TestHost::Record(instance);
    EXPECT_THAT((std::vector{record.lastWidth, record.lastHeight, record.lastBpp}), ElementsAre(2, 1, 16));
}

TEST(RenderTest, FlipsTheResultAndNotTheInputAtEveryDepthAndStride) {
    struct Row {
        unsigned bits;
        Bytes engine, host; // two rows of one pixel; the engine's lower row is first
    };
    const Row rows[] = {
        {8, BytesOf<std::uint8_t>({1, 2, 3, 4, 5, 6, 7, 255}),
         BytesOf<std::uint8_t>({5, 6, 7, 255, 1, 2, 3, 4})},
        {16, BytesOf<std::uint16_t>({0, 1, 2, 3, 4, 5, 6, 7}),
         BytesOf<std::uint16_t>({2, 2, 3, 3, 0, 0, 1, 1})},
        {16, BytesOf<std::uint16_t>({32766, 32767, 32768, 32769, 32770, 32771, 65534, 65535}),
         BytesOf<std::uint16_t>({16386, 16386, 32768, 32768, 16383, 16383, 16384, 16385})},
        {32, BytesOf<float>({1, 2, 3, 4, 5, 6, -7, 0.5}), BytesOf<float>({5, 6, -7, 0.5, 1, 2, 3, 4})},
    };
    for (const auto personality : {AE, Plain, Pr})
        for (const Row& row : rows)
            for (const unsigned padding : {0u, 1u, 13u}) {
                TestHost host(personality, [&](auto& options) { options.rowPadding = padding; });
                Instance& instance = host.Start();
                Engine().result = row.engine;
                Picture input(1, 2, row.bits);
                std::iota(input.bytes.begin(), input.bytes.end(), std::uint8_t(1));
                EXPECT_EQ(Render(instance, input).picture.bytes, row.host) << row.bits << ' ' << padding;
                EXPECT_EQ(Engine().uploads.at(0).bytes, input.bytes) << row.bits << ' ' << padding;
            }
}

TEST(RenderTest, WorldsMayBeBottomUpButRowsShorterThanTheirPixelsAreRejected) {
    TestHost host;
    const Bytes pixels = Numbered(4);
    Bytes memory(16);
    PF_InData in = {};
    PF_LayerDef world = {};
    world.data = reinterpret_cast<PF_PixelPtr>(memory.data() + 8);
    world.width = world.height = 2;
    world.rowbytes = -8;
    Adapter::CopyFrame({pixels.data(), 2, 2, 8}, world);
    EXPECT_EQ(memory, pixels) << "flipped twice";
    Adapter::UploadInputSurface(Engine(), &in, &world, 8, Adapter::InputFrame);
    EXPECT_THAT(FirstChannels(Engine().uploads.at(0).bytes), ElementsAre(3, 4, 1, 2));
    Adapter::ClearPixels(world, 8);
    EXPECT_EQ(memory, Bytes(16));

    world.rowbytes = -7;
    EXPECT_THROW(Adapter::UploadInputSurface(Engine(), &in, &world, 8, Adapter::InputFrame), int);
    world.height = 1;
    Adapter::UploadInputSurface(Engine(), &in, &world, 8, Adapter::InputFrame);
    EXPECT_EQ(Engine().uploads.size(), 2u) << "a single row may have any stride";
}

std::uint32_t s_Code, s_NextCode; // the next one is 0 when the code stays

template <class World, class Format>
PF_Err AnswerWithCode(World*, Format* format) {
    *format = static_cast<Format>(s_Code ? s_Code : 0x62677261);
    const PF_Err err = s_Code ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
    if (s_NextCode)
        std::swap(s_Code, s_NextCode);
    return err;
}

TEST(RenderTest, DepthFollowsFromEveryFormatOfBothHosts) {
    const std::map<int, std::vector<std::uint32_t>> formats = {
        {8, {0x62677261, 0x62677278, 0x61726762}},
        {16, {0x36316561, 0x61726742, 0x62677241, 0x62677258}},
        {32, {0x32336561, 0x61724742, 0x62675241, 0x62675258}},
        {0, {0x41444340, 0}}, // unknown, and refused by the host
    };
    for (const auto personality : {AE, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start();
        host.Replace(kPFWorldSuite, &PF_WorldSuite2::PF_GetPixelFormat, AnswerWithCode);
        host.Replace(kPFPixelFormatSuite, &PF_PixelFormatSuite1::GetPixelFormat, AnswerWithCode);
        host.before = [&](Command& command) {
            PF_LayerDef world = {};
            for (const auto& [bits, codes] : formats)
                for (const std::uint32_t code : codes) {
                    s_Code = code;
                    EXPECT_EQ(Adapter::GetPixelDataBpp(&world, &command.in, nullptr, nullptr), bits);
                }
            s_Code = 0;
        };
        Engine().result.assign(16, 1);
        EXPECT_EQ(Render(instance).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
        host.before = nullptr;
        s_Code = 0x62677261;
        s_NextCode = 0x61726762; // also 8 bits
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
        s_NextCode = 0x62677241;
        EXPECT_EQ(Render(instance).error, PF_Err_INTERNAL_STRUCT_DAMAGED)
            << "input and output differ in depth";
        s_NextCode = 0;
    }
}

TEST(RenderTest, PassesTheInputThroughWhenTheEngineHasNothing) {
    Picture input(2, 2, 8);
    input.bytes = Numbered(4);
    for (const auto personality : {AE, Plain, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start();
        EXPECT_EQ(Render(instance, input).picture.bytes, input.bytes) << "no result";
        EXPECT_EQ(Engine().Count("end"), 1u);
        EXPECT_EQ(Engine().uploads.size(), 1u);
        Engine().wantsInput = false;
        EXPECT_EQ(Render(instance, input).picture.bytes, input.bytes);
        EXPECT_EQ(Engine().uploads.size(), 1u) << "the engine needs no input";
        Engine().lockWorks = false;
        EXPECT_EQ(Render(instance, input).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(Engine().Count("render"), 2u) << "no frame without the lock";
        Engine().beginWorks = false;
        EXPECT_EQ(Render(instance, input).picture.bytes, input.bytes) << "the engine did not begin";
        EXPECT_EQ(Engine().Count("render"), 2u);
        Engine().calls.clear();
        host.before = [](Command& command) { command.in.sequence_data = nullptr; };
        EXPECT_EQ(Render(instance, input).picture.bytes, input.bytes);
        EXPECT_TRUE(Engine().calls.empty()) << "no instance data";
    }
}

TEST(RenderTest, AnEmptyLayerCountsAsTransparent) {
    TestHost host;
    Instance& instance = host.Start();
    Engine().outWidth = 2;
    Engine().outHeight = 1;
    FrameSpec request;
    request.depth = 32;
    EXPECT_EQ(instance.Render(request).picture.bytes, Bytes(32)) << "no result";
    EXPECT_EQ(Engine().uploads.at(0).bytes, Bytes(16)) << "one pixel";
    Engine().result = BytesOf<float>({1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(instance.Render(request).picture.bytes, Engine().result);
}

TEST(RenderTest, WorldsComeFromTheSmartCheckoutsOrFromTheArgumentsOfTheCommand) {
    Picture input(2, 1, 8);
    input.bytes = Numbered(2);
    {
        TestHost smart;
        Instance& instance = smart.Start();
        PF_ParamDef layer = {};
        PF_ParamDef* params[] = {&layer, nullptr};
        smart.before = [&](Command& command) { command.params = params; };
        EXPECT_EQ(Render(instance, input).picture.bytes, input.bytes) << "not the layer in params";
    }
    TestHost plain(Plain);
    Instance& other = plain.Start();
    plain.before = [](Command& command) {
        if (command.code == PF_Cmd_RENDER)
            command.output = nullptr;
    };
    EXPECT_EQ(Render(other, input).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(Engine().Count("setInputOrigin 0 0"), 0u) << "no output";
}

// Fails the first of two checkouts, which only asks for the extent.
PF_Err FailsFirst(PF_ProgPtr, PF_ParamIndex, A_long id, const PF_RenderRequest*, A_long, A_long, A_u_long,
                  PF_CheckoutResult*) {
    return id == 0x123455 ? 22 : PF_Err_NONE;
}

TEST(RenderTest, CallbacksThatFailEndTheFrameWithTheirError) {
    struct Row {
        const char* name;
        Personality personality;
        PF_Cmd code;
        PF_Err expected;
        void (*breakHost)(Command& command);
    };
    using Pre = PF_PreRenderExtra;
    using Smart = PF_SmartRenderExtra;
    const Row rows[] = {
        {"checkout_param, which is no failure", AE, PF_Cmd_SMART_PRE_RENDER, 0,
         [](Command& c) { c.in.inter.checkout_param = Fails<22>; }},
        {"checkout_layer", AE, PF_Cmd_SMART_PRE_RENDER, 22,
         [](Command& c) { static_cast<Pre*>(c.extra)->cb->checkout_layer = FailsFirst; }},
        {"checkout_layer_pixels", AE, PF_Cmd_SMART_RENDER, 22,
         [](Command& c) { static_cast<Smart*>(c.extra)->cb->checkout_layer_pixels = Fails<22>; }},
        {"checkout_output", AE, PF_Cmd_SMART_RENDER, 22,
         [](Command& c) { static_cast<Smart*>(c.extra)->cb->checkout_output = Fails<22>; }},
        {"checkout_output without a world", AE, PF_Cmd_SMART_RENDER, 0,
         [](Command& c) { static_cast<Smart*>(c.extra)->cb->checkout_output = Fails<0>; }},
        {"copy", AE, PF_Cmd_SMART_RENDER, 22, [](Command& c) { c.in.utils->copy = Fails<22>; }},
        {"fill", Pr, PF_Cmd_RENDER, 22, [](Command& c) { c.in.utils->fill = Fails<22>; }},
    };
    for (const bool begins : {true, false})
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            TestHost host(row.personality, [](auto& options) { options.checkPixels = false; });
            Instance& instance = host.Start({Declared(Parameter::FLOAT)});
            Engine().beginWorks = begins;
            host.before = [&](Command& command) {
                if (command.code == row.code)
                    row.breakHost(command);
            };
            FrameSpec request;
            request.outputWidth = 3; // with margins
            EXPECT_EQ(Render(instance, Picture(2, 2, 8), request).error, row.expected);
            EXPECT_EQ(Engine().Count("preRender 2 2") + Engine().Count("preRender 0 0"), 1u);
        }
}

TEST(PremiereRenderTest, UploadsTheVisiblePartAndCentresTheFlippedResult) {
    struct Row {
        const char* name;
        A_long width, height; // of the engine's frame, whose pixels are numbered from the bottom left one
        A_long outWidth, outHeight;
        std::vector<int> picture;
        A_long originX, originY; // in the input: 1 2 3 / 4 5 6 / 7 8 9
        std::vector<int> uploaded;
    };
    const Row rows[] = {
        {"same size", 2, 2, 2, 2, {3, 4, 1, 2}, 0, 0, {1, 2, 4, 5}},
        {"larger output", 2, 2, 3, 4, {0, 0, 0, 3, 4, 0, 1, 2, 0, 0, 0, 0}, 1, 1, {5, 6, 8, 9}},
        {"wider and lower output", 1, 4, 3, 2, {0, 3, 0, 0, 2, 0}, 2, 1, {6, 9, 0, 0}},
        {"smaller output", 4, 3, 2, 1, {6, 7}, -1, -1, {0, 0, 0, 0, 0, 1, 2, 3, 0, 4, 5, 6}},
        {"nothing visible", 2, 2, 2, 2, {3, 4, 1, 2}, 5, 5, {0, 0, 0, 0}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host(Pr);
        Instance& instance = host.Start();
        Engine().result = Numbered(row.width * row.height);
        Picture input(3, 3, 8);
        input.bytes = Numbered(9);
        FrameSpec request;
        request.layerWidth = 2 * row.width;
        request.layerHeight = 2 * row.height;
        request.downsampleX = request.downsampleY = {1, 2};
        request.outputWidth = row.outWidth;
        request.outputHeight = row.outHeight;
        request.preEffectOriginX = row.originX;
        request.preEffectOriginY = row.originY;
        EXPECT_EQ(FirstChannels(Render(instance, input, request).picture.bytes), row.picture);
        EXPECT_EQ(FirstChannels(Engine().uploads.at(0).bytes), row.uploaded);
    }
}

// The host's fill works at 8 bits only.
TEST(PremiereRenderTest, MarginsAreClearedByHandWhenTheHostsFillFails) {
    for (const unsigned bits : {8u, 16u, 32u}) {
        TestHost host(Pr);
        Instance& instance = host.Start();
        host.before = [](Command& command) { command.in.utils->fill = Fails<22>; };
        const Bytes pixel(bits / 2, 1);
        Engine().result = pixel;
        FrameSpec request;
        request.outputWidth = 3;
        const auto frame = Render(instance, Picture(1, 1, bits), request);
        EXPECT_EQ(frame.error, PF_Err_NONE) << bits;
        Bytes expected(pixel.size());
        const Bytes middle =
            bits == 16 ? BytesOf<std::uint16_t>(std::vector<std::uint16_t>(4, 0x0101 / 2)) : pixel;
        expected.insert(expected.end(), middle.begin(), middle.end());
        expected.resize(3 * pixel.size());
        EXPECT_EQ(frame.picture.bytes, expected) << bits;
    }
}

} // namespace
