#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "host/CopyOut.h"
#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

template <class Channel>
std::vector<std::uint8_t> AsBytes(const std::vector<Channel>& channels) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(channels.data());
    return {bytes, bytes + channels.size() * sizeof(Channel)};
}

// Frame set-up and render of params[0] into `output`.
PF_Err RenderFrame(FakeHost& host, FakeWorld& input, FakeWorld& output) {
    host.params[0].u.ld = input.world;
    const PF_Err err = host.Send(PF_Cmd_FRAME_SETUP);
    Engine().calls.clear();
    return err != PF_Err_NONE ? err : host.Send(PF_Cmd_RENDER, nullptr, &output.world);
}

std::uint32_t Code(int bits) {
    return bits == 8 ? 0x62677261 : bits == 16 ? 0x36316561 : 0x32336561;
}

TEST(ConvertRow16Test, MapsTheEnginesRangeOntoTheHosts) {
    const std::vector<std::uint16_t> engine = {0, 1, 2, 3, 32767, 32768, 32769, 32770, 65534, 65535};
    const std::vector<std::uint16_t> host = {0, 0, 1, 1, 16383, 16384, 16385, 16386, 32768, 32768};
    for (const std::size_t shift : {0u, 1u}) { // an odd address is as good
        std::vector<std::byte> from(64), to(64);
        std::memcpy(from.data() + shift, engine.data(), 20);
        Adapter::ConvertRow16(from.data() + shift, to.data() + shift, engine.size());
        std::vector<std::uint16_t> got(engine.size());
        std::memcpy(got.data(), to.data() + shift, 20);
        EXPECT_THAT(got, ElementsAreArray(host));
        EXPECT_EQ(to[20 + shift], std::byte(0));
    }
}

TEST(RenderTest, TellsTheEngineAboutTheFrameInOrder) {
    FakeHost host;
    host.SetUp();
    FakeWorld input(2, 2, 8), output(2, 2, 8);
    output.world.origin_x = -3;
    output.world.origin_y = 4;
    output.world.pix_aspect_ratio = {3, 2};
    host.in.current_time = 30;
    host.in.time_scale = 24;
    Engine().result.assign(16, 0);
    ASSERT_EQ(RenderFrame(host, input, output), PF_Err_NONE);
    EXPECT_THAT(Engine().calls,
                ElementsAre("setSequenceData 1", "setCompositionSize 1280 720 2", "setInputOrigin -3 4",
                            "begin", "getNumParams", "lockFrame", "isInputRequested", "grabIntoTexture -1",
                            "getNumFeedbackFrames", "render", "grabResultBegin", "grabResultEnd", "end",
                            "releaseFrame"));
    const RecordingPlugin::Rendered& frame = Engine().renders.at(0);
    EXPECT_EQ(frame.time, 1.25);
    EXPECT_THAT((std::vector<unsigned>{frame.width, frame.height, frame.format}), ElementsAre(2, 2, 8));
    EXPECT_EQ(frame.pixelAspect, 1.5f);
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(RenderTest, FlipsAndKeepsPaddingAtEveryDepthAndStride) {
    for (const int bits : {8, 16, 32})
        for (const A_long padding : {0, 1, 13}) // odd strides leave rows at odd addresses
            for (const A_long direction : {1, -1}) {
                FakeHost host;
                host.SetUp();
                host.format = Code(bits);
                const A_long rowBytes = (3 * bits / 2 + padding) * direction;
                FakeWorld input(3, 2, bits, rowBytes), output(3, 2, bits, rowBytes);
                // The engine's bottom row comes first: 0, 1, 2..., then the top row from 12 on.
                std::vector<std::uint8_t> bytes;
                std::vector<std::uint16_t> words;
                std::vector<float> floats;
                for (int i = 0; i < 24; ++i) {
                    bytes.push_back(static_cast<std::uint8_t>(i));
                    words.push_back(static_cast<std::uint16_t>(2 * i));
                    floats.push_back(static_cast<float>(i) + 0.5f);
                }
                Engine().result = bits == 8 ? bytes : bits == 16 ? AsBytes(words) : AsBytes(floats);
                ASSERT_EQ(RenderFrame(host, input, output), PF_Err_NONE);
                for (A_long y = 0; y < 2; ++y)
                    for (A_long x = 0; x < 3; ++x)
                        for (int c = 0; c < 4; ++c) {
                            const int expected = (1 - y) * 12 + x * 4 + c;
                            if (bits == 8)
                                EXPECT_EQ(output.At<std::uint8_t>(x, y, c), expected);
                            else if (bits == 16)
                                EXPECT_EQ(output.At<std::uint16_t>(x, y, c), expected);
                            else
                                EXPECT_EQ(output.At<float>(x, y, c), static_cast<float>(expected) + 0.5f);
                        }
                EXPECT_TRUE(output.PaddingIsIntact()) << bits << ' ' << rowBytes;
                EXPECT_EQ(Engine().uploads.at(0).rowBytes, rowBytes);
            }
}

TEST(RenderTest, KnowsTheHostsFormats) {
    struct Row {
        std::uint32_t code;
        unsigned bits;
    };
    const Row rows[] = {{0x62677261, 8},  {0x36316561, 16}, {0x32336561, 32}, {0x61726762, 8},
                        {0x62677278, 8},  {0x61726742, 16}, {0x62677241, 16}, {0x62677258, 16},
                        {0x61724742, 32}, {0x62675241, 32}, {0x62675258, 32}, {0x41444340, 0}};
    for (const Row& row : rows)
        for (const auto kind : {FakeHost::Kind::AfterEffects, FakeHost::Kind::Premiere}) {
            FakeHost host(kind);
            host.SetUp();
            host.in.width = host.in.height = 1;
            host.format = row.code;
            FakeWorld input(1, 1, 32), output(1, 1, 32);
            Engine().result.assign(16, 1);
            EXPECT_EQ(RenderFrame(host, input, output),
                      row.bits ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED);
            EXPECT_EQ(Engine().renders.at(0).format, row.bits) << std::hex << row.code;
        }
    FakeHost host;
    host.SetUp();
    host.failing["pixel format"] = 1;
    FakeWorld input(1, 1, 8), output(1, 1, 8);
    RenderFrame(host, input, output);
    EXPECT_EQ(Engine().renders.at(0).format, 0u);
}

TEST(RenderTest, PassesTheInputThroughWhenTheEngineHasNothing) {
    FakeWorld input(2, 2, 8), output(2, 2, 8);
    FakeHost fresh;
    EXPECT_EQ(RenderFrame(fresh, input, output), PF_Err_NONE);
    EXPECT_THAT(fresh.log, ElementsAre("copy"));
    EXPECT_TRUE(Engine().calls.empty()) << "no instance data";

    FakeHost host;
    host.SetUp();
    Engine().beginWorks = false;
    host.failing["copy"] = 519;
    EXPECT_EQ(RenderFrame(host, input, output), 519);
    EXPECT_EQ(Engine().Count("lockFrame"), 0u);

    FakeHost without;
    without.SetUp();
    EXPECT_EQ(RenderFrame(without, input, output), PF_Err_NONE);
    EXPECT_THAT(without.log, ElementsAre("copy"));
    EXPECT_EQ(Engine().calls.back(), "releaseFrame");
    EXPECT_EQ(Engine().Count("end"), 1u);

    Engine().lockWorks = false;
    EXPECT_EQ(RenderFrame(without, input, output), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(Engine().Count("releaseFrame"), 0u);

    FakeHost uninterested;
    uninterested.SetUp();
    Engine().wantsInput = false;
    RenderFrame(uninterested, input, output);
    EXPECT_TRUE(Engine().uploads.empty());
}

TEST(RenderTest, TheRecordRemembersFramesOnceTheUiIsReady) {
    FakeHost host;
    host.SetUp();
    FakeWorld input(2, 3, 8), output(2, 3, 8);
    RenderFrame(host, input, output);
    Adapter::SequenceRecord& record = *Adapter::FindRecord(host.in);
    EXPECT_EQ(record.lastWidth, 0u);
    record.uiReady = 1;
    RenderFrame(host, input, output);
    EXPECT_THAT((std::vector<unsigned>{record.lastWidth, record.lastHeight, record.lastBpp}),
                ElementsAre(2, 3, 8));
}

TEST(SmartRenderTest, RendersTheCheckedOutWorlds) {
    FakeHost host;
    host.SetUp();
    FakeWorld input(1, 1, 8), output(2, 1, 8);
    input.Set<std::uint8_t>(0, 0, 2, 9);
    host.inputWorld = &input.world;
    host.outputWorld = &output.world;
    Engine().result = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(host.SmartRender(), PF_Err_NONE);
    EXPECT_THAT(host.log, ElementsAre("checkout_layer_pixels 1193046"));
    EXPECT_EQ(Engine().uploads.at(0).bytes[2], 9);
    EXPECT_EQ(output.At<std::uint8_t>(1, 0, 3), 8);

    for (const char* call : {"checkout_layer_pixels", "checkout_output"}) {
        FakeHost failing;
        failing.SetUp();
        failing.failing[call] = 517;
        EXPECT_EQ(failing.SmartRender(), 517) << call;
        EXPECT_TRUE(Engine().calls.empty());
    }
}

TEST(SmartRenderTest, AnEmptyLayerCountsAsTransparent) {
    FakeHost host;
    host.SetUp();
    host.format = Code(32);
    FakeWorld output(1, 1, 32);
    host.outputWorld = &output.world;
    Engine().result.assign(16, 0);
    EXPECT_EQ(host.SmartRender(), PF_Err_NONE);
    EXPECT_THAT(Engine().uploads.at(0).bytes, ElementsAreArray(std::vector<int>(16, 0)));
    Engine().result.clear();
    EXPECT_EQ(host.SmartRender(), PF_Err_NONE);
    EXPECT_EQ(output.At<float>(0, 0, 0), 0.0f);
    EXPECT_TRUE(output.PaddingIsIntact());
    host.outputWorld = nullptr;
    EXPECT_EQ(host.SmartRender(), PF_Err_NONE);
}

// One byte stands for each pixel: its first channel.
std::vector<int> FirstChannels(const FakeWorld& world) {
    std::vector<int> values;
    for (A_long y = 0; y < world.world.height; ++y)
        for (A_long x = 0; x < world.world.width; ++x)
            values.push_back(world.At<std::uint8_t>(x, y, 0));
    return values;
}

std::vector<std::uint8_t> Numbered(int pixels) {
    std::vector<std::uint8_t> bytes;
    for (int i = 1; i <= pixels; ++i)
        bytes.insert(bytes.end(), {static_cast<std::uint8_t>(i), 0x11, 0x22, 0x33});
    return bytes;
}

TEST(PremiereRenderTest, PlacesTheFrameInTheMiddleFlipped) {
    struct Row {
        const char* what;
        unsigned width, height; // the engine's frame, numbered from its bottom left pixel
        A_long outWidth, outHeight;
        std::vector<int> expected;
        bool filled;
    };
    const Row rows[] = {
        {"as large", 2, 2, 2, 2, {3, 4, 1, 2}, false},
        {"smaller by one and two", 2, 2, 3, 4, {0, 0, 0, 3, 4, 0, 1, 2, 0, 0, 0, 0}, true},
        {"narrower and higher", 1, 4, 3, 2, {0, 3, 0, 0, 2, 0}, true},
        {"larger", 4, 3, 2, 1, {6, 7}, false},
    };
    for (const Row& row : rows) {
        FakeHost host(FakeHost::Kind::Premiere);
        host.SetUp();
        host.in.width = static_cast<A_long>(row.width);
        host.in.height = static_cast<A_long>(row.height);
        FakeWorld input(8, 8, 8), output(row.outWidth, row.outHeight, 8, row.outWidth * 4 + 3);
        Engine().result = Numbered(static_cast<int>(row.width * row.height));
        ASSERT_EQ(RenderFrame(host, input, output), PF_Err_NONE);
        EXPECT_THAT(FirstChannels(output), ElementsAreArray(row.expected)) << row.what;
        EXPECT_EQ(std::count(host.log.begin(), host.log.end(), "fill"), row.filled) << row.what;
        EXPECT_TRUE(output.PaddingIsIntact()) << row.what;
    }
}

TEST(PremiereRenderTest, ChannelsTravelInTheHostsOrder) {
    FakeHost host(FakeHost::Kind::Premiere);
    host.SetUp();
    host.in.width = host.in.height = 1;
    FakeWorld input(1, 1, 8), output(1, 1, 8);
    for (int c = 0; c < 4; ++c)
        input.Set<std::uint8_t>(0, 0, c, static_cast<std::uint8_t>(10 + c)); // blue, green, red, alpha
    Engine().result = {20, 21, 22, 23};
    ASSERT_EQ(RenderFrame(host, input, output), PF_Err_NONE);
    EXPECT_THAT(Engine().uploads.at(0).bytes, ElementsAre(10, 11, 12, 13));
    for (int c = 0; c < 4; ++c)
        EXPECT_EQ(output.At<std::uint8_t>(0, 0, c), 20 + c);
}

TEST(PremiereRenderTest, OnlyTheVisiblePartIsUploaded) {
    struct Row {
        A_long originX, originY;
        std::vector<int> expected; // first channels of two by two pixels
    };
    // The world is three by three: 1 2 3 / 4 5 6 / 7 8 9.
    for (const Row& row : {Row{0, 0, {1, 2, 4, 5}}, Row{1, 1, {5, 6, 8, 9}}, Row{2, 1, {6, 0, 9, 0}},
                           Row{-1, -1, {0, 0, 0, 1}}, Row{5, 5, {0, 0, 0, 0}}}) {
        FakeHost host(FakeHost::Kind::Premiere);
        host.SetUp();
        host.in.width = host.in.height = 4;
        host.in.downsample_x = host.in.downsample_y = {1, 2};
        host.in.pre_effect_source_origin_x = row.originX;
        host.in.pre_effect_source_origin_y = row.originY;
        FakeWorld input(3, 3, 8, 17), output(2, 2, 8);
        for (int i = 0; i < 9; ++i)
            input.Set<std::uint8_t>(i % 3, i / 3, 0, static_cast<std::uint8_t>(i + 1));
        ASSERT_EQ(RenderFrame(host, input, output), PF_Err_NONE);
        const RecordingPlugin::Upload& upload = Engine().uploads.at(0);
        EXPECT_EQ(upload.rowBytes, 8);
        ASSERT_EQ(upload.bytes.size(), 16u);
        EXPECT_THAT((std::vector<int>{upload.bytes[0], upload.bytes[4], upload.bytes[8], upload.bytes[12]}),
                    ElementsAreArray(row.expected));
    }
}

TEST(PremiereRenderTest, AFailedFillReplacesTheCopy) {
    for (const bool begins : {false, true}) {
        FakeHost host(FakeHost::Kind::Premiere);
        host.SetUp();
        host.in.width = host.in.height = 2;
        FakeWorld input(2, 2, 8), output(3, 3, 8);
        host.failing["fill"] = 520;
        Engine().beginWorks = begins;
        EXPECT_EQ(RenderFrame(host, input, output), 520);
        EXPECT_THAT(host.log, ElementsAre("fill"));
    }
}

// An effect whose first parameter makes the host run other commands of the plug-in inside its checkout.
struct ReentrantHost : FakeHost {
    ReentrantHost() {
        Engine().params = {Parameter("p", Parameter::FLOAT, "p")};
        SetUp();
    }
    // Commands for another instance; in.sequence_data says which.
    static void Inner(PF_InData& inner, std::initializer_list<PF_Cmd> commands) {
        for (const PF_Cmd command : commands) {
            PF_OutData innerOut = {};
            EXPECT_EQ(EntryPointFunc(command, &inner, &innerOut, nullptr, nullptr, nullptr), PF_Err_NONE);
            inner.sequence_data = innerOut.sequence_data;
        }
    }
};

TEST(ReentryTest, AnInnerCommandLeavesTheOuterInstanceSelected) {
    ReentrantHost host;
    host.onCheckoutParam = [](FakeHost& outer, A_long) {
        PF_InData in = outer.in;
        in.sequence_data = nullptr;
        ReentrantHost::Inner(in, {PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_FLATTEN});
    };
    ASSERT_EQ(host.Send(PF_Cmd_UPDATE_PARAMS_UI), PF_Err_NONE);
    const auto& calls = Engine().calls;
    const auto inner = std::find(calls.begin(), calls.end(), "setSequenceData 2");
    const auto next = std::find(inner, calls.end(), "setParam 0");
    ASSERT_NE(next, calls.end());
    EXPECT_NE(std::find(inner, next, "setSequenceData 1"), next);
}

TEST(ReentryTest, AnInstanceThatAnInnerCommandReleasedIsNotSelectedAgain) {
    ReentrantHost host;
    host.onCheckoutParam = [](FakeHost& outer, A_long) {
        ReentrantHost::Inner(outer.in, {PF_Cmd_SEQUENCE_SETDOWN});
    };
    host.Send(PF_Cmd_UPDATE_PARAMS_UI);
    const auto& calls = Engine().calls;
    const auto released = std::find(calls.begin(), calls.end(), "releaseSequenceData 1");
    ASSERT_NE(released, calls.end());
    EXPECT_EQ(std::find(released, calls.end(), "setSequenceData 1"), calls.end());
}

} // namespace
