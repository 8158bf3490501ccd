#include "standalone/clips/Keys.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/Errors.h"

namespace {

using namespace fxhost;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

Parameter Make(const char* name, Parameter::Type type) {
    Parameter parameter;
    parameter.type = type;
    parameter.name = name;
    parameter.min.SetFloat(0, -1000);
    parameter.max.SetFloat(0, 1000);
    return parameter;
}

std::vector<Parameter> Some() {
    std::vector<Parameter> parameters = {Make("Amount", Parameter::FLOAT), Make("Centre", Parameter::POINT2D),
                                         Make("Tint", Parameter::COLOR), Make("On", Parameter::BOOL),
                                         Make("Shape", Parameter::POPUP)};
    parameters[4].choices = "4:3|16:9|0:0, wide";
    return parameters;
}

constexpr FrameRate s_Rate{25, 1};

Animation From(const std::vector<std::string>& texts) {
    Animation animation;
    for (const auto& text : texts)
        AddSetting(animation, text, Some(), s_Rate);
    return animation;
}

// The one setting at a time.
Parameter::Value At(const std::string& text, double time) {
    const auto settings = From({text}).at(time);
    EXPECT_EQ(settings.size(), 1u);
    return settings.at(0).value;
}

TEST(KeysTest, NumbersMoveLinearlyBetweenKeysAndStayOutside) {
    const std::string text = "Amount=0:0, 1s:100, 2s:50";
    const double rows[][2] = {{-1, 0}, {0, 0}, {0.25, 25}, {1, 100}, {1.5, 75}, {2, 50}, {9, 50}};
    for (const auto& [time, value] : rows)
        EXPECT_FLOAT_EQ(At(text, time).Float(0), static_cast<float>(value)) << time;
    // Frames at 25 a second, keys in any order.
    EXPECT_FLOAT_EQ(At("Amount=50:10, 25:0", 1.5).Float(0), 5);
}

TEST(KeysTest, ValuesWithCommasAreToldFromKeys) {
    for (const char* text :
         {"Centre=0:10,20, 1s:30,40", "Centre=0:10,20;1s:30,40", "Centre=0:10,20; 1s:30,40;"}) {
        const auto value = At(text, 0.5);
        EXPECT_FLOAT_EQ(value.Float(0), 20) << text;
        EXPECT_FLOAT_EQ(value.Float(1), 30) << text;
    }
    const auto tint = At("Tint=0:1,0,0; 1s:0,0,1,0", 0.75);
    EXPECT_FLOAT_EQ(tint.Float(0), 0.25f);
    EXPECT_FLOAT_EQ(tint.Float(2), 0.75f);
    EXPECT_FLOAT_EQ(tint.Float(3), 0.25f);
}

TEST(KeysTest, SwitchesAndPopUpsWaitForTheNextKey) {
    EXPECT_EQ(At("On=0:off, 1s:on", 0.99).Int(0), 0);
    EXPECT_EQ(At("On=0:off, 1s:on", 1).Int(0), 1);
    EXPECT_EQ(At("Shape=0:4:3; 10:16:9; 20:0:0, wide", 0.3).Int(0), 1);
    EXPECT_EQ(At("Shape=0:4:3; 10:16:9; 20:0:0, wide", 0.5).Int(0), 2);
    EXPECT_EQ(At("Shape=0:4:3; 10:16:9; 20:0:0, wide", 0.8).Int(0), 3);
    EXPECT_EQ(At("Shape=16:9", 0).Int(0), 2); // an entry, not the value 9 at frame 16
}

TEST(KeysTest, TheLastSettingOfAParameterHolds) {
    const auto settings = From({"Amount=1", "On=on", "Amount=0:7"}).at(3);
    ASSERT_EQ(settings.size(), 2u);
    EXPECT_EQ(settings[0].index, 3u);
    EXPECT_FLOAT_EQ(settings[1].value.Float(0), 7);
}

TEST(KeysTest, WhatIsNoKeyIsRefusedWithTheOption) {
    const struct {
        const char* text;
        const char* said;
    } rows[] = {{"Amount=0:0, 1s:", "one number expected"},
                {"Amount=0:0; 5", "has no time"},
                {"Amount=0:0, 0s:1", "two keys at"},
                {"Amount=0:0; x:1", "is no time"},
                {"Amount=0:5000", "from -1000 to 1000"},
                {"Amount=0:0, 5", "one number expected"},
                {"Nothing=0:0", "no parameter"}};
    for (const auto& row : rows)
        EXPECT_THAT([&] { From({row.text}); },
                    Throws<WrongUse>(Property(&std::exception::what, HasSubstr(row.said))))
            << row.text;
}

class KeysFileTest : public testing::Test {
protected:
    Animation load(const std::string& json) const {
        std::ofstream(m_Path) << json;
        Animation animation;
        AddKeysFile(animation, m_Path, Some(), s_Rate);
        return animation;
    }
    ~KeysFileTest() override { std::filesystem::remove(m_Path); }
    const std::string m_Path = testing::TempDir() + "fxhost_keys.json";
};

TEST_F(KeysFileTest, SaysTheSameAsTheOption) {
    const auto settings = load(R"({"Amount": {"0": 0, "1s": 100}, "Centre": {"0": [10, 20], "25": [30, 40.5]},
                 "On": true, "Shape": "16:9"})")
                              .at(0.5);
    ASSERT_EQ(settings.size(), 4u);
    EXPECT_EQ(settings[0].value.Int(0), 1);
    EXPECT_EQ(settings[1].value.Int(0), 2);
    EXPECT_FLOAT_EQ(settings[2].value.Float(0), 50);
    EXPECT_FLOAT_EQ(settings[3].value.Float(1), 30.25f);
}

TEST_F(KeysFileTest, WrongFilesAreNamed) {
    for (const char* json :
         {"", "[1]", "{\"Amount\": ", "{\"Nothing\": 1}", "{\"Amount\": {}}", "{\"Amount\": {\"x\": 1}}",
          "{\"Amount\": null}", "{\"Centre\": [1, [2]]}", "{\"Amount\": {\"0\": \"much\"}}"})
        EXPECT_THAT([&] { load(json); },
                    Throws<WrongUse>(Property(&std::exception::what, HasSubstr("--keys " + m_Path))))
            << json;
    Animation animation;
    EXPECT_THROW(AddKeysFile(animation, "/nowhere/keys.json", Some(), s_Rate), WrongUse);
}

} // namespace
