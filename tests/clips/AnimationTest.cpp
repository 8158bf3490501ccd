#include "clips/Animation.h"

#include "clips/KeyframeFile.h"
#include "clips/KeyframeText.h"
#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;

std::vector<Parameter> SomeParameters() {
    std::vector<Parameter> parameters = {{"Amount", Parameter::FLOAT, ""},
                                         {"Centre", Parameter::POINT2D, ""},
                                         {"Tint", Parameter::COLOR, ""},
                                         {"On", Parameter::BOOL, ""},
                                         {"Shape", Parameter::POPUP, ""}};
    parameters[4].choices = "4:3|16:9|0:0, wide";
    return parameters;
}

constexpr FrameRate s_Rate{25, 1};

Animation From(const std::vector<std::string>& texts) {
    Animation animation;
    for (const auto& text : texts)
        AddSetting(animation, text, SomeParameters(), s_Rate);
    return animation;
}

TEST(AnimationTest, NumbersAreInterpolatedAndSwitchesAndPopUpsHoldTheirValue) {
    const std::string ramp = "Amount=0:0, 1s:100, 2s:50", shapes = "Shape=0:4:3; 10:16:9; 20:0:0, wide";
    const std::string tint = "Tint=0:1,0,0; 1s:0,0,1,0";
    const struct {
        std::string text;
        double time;
        std::vector<float> words; // one entry: the integer of a switch or pop-up
    } rows[] = {{ramp, -1, {0, 0, 0, 0}},
                {ramp, 0.25, {25, 0, 0, 0}},
                {ramp, 1, {100, 0, 0, 0}},
                {ramp, 1.5, {75, 0, 0, 0}},
                {ramp, 9, {50, 0, 0, 0}},
                {"Amount=50:10, 25:0", 1.5, {5, 0, 0, 0}}, // frames at 25 fps, in descending order
                {"Centre=0:10,20, 1s:30,40", 0.5, {20, 30, 0, 0}},
                {"Centre=0:10,20;1s:30,40", 0.5, {20, 30, 0, 0}},
                {"Centre=0:10,20; 1s:30,40;", 0.5, {20, 30, 0, 0}},
                {tint, 0.75, {0.25f, 0, 0.75f, 0.25f}},
                {"On=0:off, 1s:on", 0.99, {0}},
                {"On=0:off, 1s:on", 1, {1}},
                {shapes, 0.3, {1}},
                {shapes, 0.5, {2}},
                {shapes, 0.8, {3}},
                {"Shape=16:9", 0, {2}}}; // a pop-up entry, not the value 9 at frame 16
    for (const auto& row : rows) {
        const auto settings = From({row.text}).at(row.time);
        ASSERT_EQ(settings.size(), 1u);
        const auto& value = settings[0].value;
        const std::vector<float> words = {value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
        EXPECT_EQ(row.words.size() == 4 ? words : std::vector{float(value.Int(0))}, row.words)
            << row.text << " at " << row.time;
    }
}

TEST(AnimationTest, MalformedKeyframesAreRejectedWithTheOption) {
    const std::pair<const char*, const char*> rows[] = {{"Amount=0:0, 1s:", "one number expected"},
                                                        {"Amount=0:0; 5", "has no time"},
                                                        {"Amount=0:0, 0s:1", "two keyframes at"},
                                                        {"Amount=0:0; x:1", "is not a time"},
                                                        {"Amount=0:5000", "from -100 to 100"},
                                                        {"Amount=0:0, 5", "one number expected"},
                                                        {"Nothing=0:0", "no parameter"}};
    for (const auto& row : rows)
        EXPECT_THAT([&] { From({row.first}); }, Says<WrongUse>(row.second)) << row.first;
}

class KeyframeFileTest : public FolderTest {
protected:
    Animation load(const std::string& json, const std::vector<std::string>& options = {}) const {
        return ReadAnimation(writeFile("keys.json", json), options, SomeParameters(), s_Rate);
    }
};

TEST_F(KeyframeFileTest, FileGivesTheValuesOfTheOptionAndTheOptionWins) {
    const std::string json = R"({"Amount": {"0": 0, "1s": 100}, "Centre": {"0": [10, 20], "25": [30, 40.5]},
                                 "On": true, "Shape": "16:9"})";
    const auto settings = load(json, {"On=on", "On=0:on", "On=off"}).at(0.5);
    ASSERT_EQ(settings.size(), 4u);
    EXPECT_EQ(settings[0].value.Int(0), 2);
    EXPECT_EQ(settings[1].index, 3u);
    EXPECT_EQ(settings[1].value.Int(0), 0);
    EXPECT_FLOAT_EQ(settings[2].value.Float(0), 50);
    EXPECT_FLOAT_EQ(settings[3].value.Float(1), 30.25f);
    EXPECT_EQ(load(json).at(0)[0].value.Int(0), 1);
}

TEST_F(KeyframeFileTest, MalformedFilesAreRejectedByName) {
    for (const char* json :
         {"", "[1]", "{\"Amount\": ", "{\"Nothing\": 1}", "{\"Amount\": {}}", "{\"Amount\": {\"x\": 1}}",
          "{\"Amount\": null}", "{\"Centre\": [1, [2]]}", "{\"Amount\": {\"0\": \"much\"}}"})
        EXPECT_THAT([&] { load(json); }, Says<WrongUse>("--keys " + at("keys.json"))) << json;
    Animation animation;
    EXPECT_THROW(AddKeyframeFile(animation, "/nowhere/keys.json", SomeParameters(), s_Rate), WrongUse);
}

} // namespace
