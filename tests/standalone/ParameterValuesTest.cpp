#include "standalone/params/ParameterValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/Errors.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<Parameter> Effect() {
    std::vector<Parameter> list = {
        {"amount", Parameter::FLOAT, "Amount %"},   {"centre", Parameter::POINT2D, "Centre"},
        {"place", Parameter::POINT, "Place"},       {"tint", Parameter::COLOR, "Tint"},
        {"wrap", Parameter::BOOL, "Wrap around"},   {"mode", Parameter::POPUP, "Mode"},
        {"turn", Parameter::ANGLE, "amount"},       {"map", Parameter::LAYER, "Map"},
        {"group", Parameter::GROUP_START, "Group"}, {"secret", Parameter::FLOAT, "Secret"},
    };
    list[5].choices = "Add|Multiply|3|1";
    list[9].flags = Parameter::NotPublished;
    return list;
}

TEST(ParameterValuesTest, NumbersFillTheWordsOfTheirType) {
    const struct {
        const char* text;
        unsigned index;
        std::vector<float> words;
    } rows[] = {
        {"amount=12.5", 0, {12.5f, 0, 0, 0}},
        {"Amount %=-1e1", 0, {-10, 0, 0, 0}},
        {"amount=+100", 0, {100, 0, 0, 0}},
        {"centre=3,-4.5", 1, {3, -4.5f, 0, 0}},
        {"place=1, 2, 3", 2, {1, 2, 3, 0}},
        {"tint=1,0.5,0", 3, {1, 0.5f, 0, 1}},
        {"tint=1,0.5,0,0.25", 3, {1, 0.5f, 0, 0.25f}},
        {"turn=720", 6, {720, 0, 0, 0}},
    };
    const auto list = Effect();
    for (const auto& row : rows) {
        const auto setting = ParseSetting(row.text, list);
        EXPECT_EQ(setting.index, row.index) << row.text;
        for (unsigned i = 0; i < 4; ++i)
            EXPECT_EQ(setting.value.Float(i), row.words[i]) << row.text << " word " << i;
    }
}

TEST(ParameterValuesTest, SwitchesAndPopUpsAreIntegers) {
    const struct {
        const char* text;
        int value;
    } rows[] = {
        {"wrap=on", 1}, {"wrap=off", 0},      {"Wrap around=true", 1}, {"wrap=0", 0},
        {"mode=2", 2},  {"mode=Multiply", 2}, {"mode=Add", 1},         {"mode=4", 4},
        {"mode=3", 3},  {"mode=1", 4}, // an entry's text goes before a number
    };
    const auto list = Effect();
    for (const auto& row : rows)
        EXPECT_EQ(ParseSetting(row.text, list).value.Int(0), row.value) << row.text;
}

std::string Refusal(const std::string& text, const std::vector<Parameter>& list) {
    try {
        ParseSetting(text, list);
    } catch (const WrongUse& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ParameterValuesTest, RefusalsSayWhatWasExpected) {
    const struct {
        const char* text;
        const char* part;
    } rows[] = {
        {"amount", "NAME=VALUE"},
        {"amount=", "one number"},
        {"amount=5x", "one number"},
        {"amount=1,2", "one number"},
        {"amount=nan", "one number"},
        {"amount=inf", "one number"},
        {"amount=100.1", "from -100 to 100"},
        {"centre=1", "x,y"},
        {"centre=1,2,3", "x,y"},
        {"centre=1,", "x,y"},
        {"place=1,2", "x,y,z"},
        {"tint=1,2", "red,green,blue"},
        {"wrap=maybe", "on or off"},
        {"mode=0", "from 1 to 4"},
        {"mode=5", "\"Multiply\""},
        {"mode=1.5", "from 1 to 4"},
        {"map=x.png", "--layer map=IMAGE"},
    };
    const auto list = Effect();
    for (const auto& row : rows)
        EXPECT_THAT(Refusal(row.text, list), HasSubstr(row.part)) << row.text;
}

TEST(ParameterValuesTest, UnknownNamesListWhatExists) {
    const auto list = Effect();
    for (const char* text : {"amout=1", "=1", "group=1", "secret=1"})
        EXPECT_THAT(Refusal(text, list), AllOf(HasSubstr("has no parameter"), HasSubstr("amount, centre"),
                                               Not(HasSubstr("it has group")), Not(HasSubstr(", secret"))))
            << text;
    EXPECT_THAT(Refusal("a=1", {}), HasSubstr("none at all"));
}

TEST(ParameterValuesTest, DefaultsAreTheHosts) {
    auto list = Effect();
    const auto declare = [&](unsigned index, std::vector<float> words) {
        for (unsigned i = 0; i < words.size(); ++i)
            list[index].value.SetFloat(i, words[i]);
        return DefaultText(list[index]);
    };
    EXPECT_EQ(declare(0, {2.5f}), "2.5");
    EXPECT_EQ(declare(1, {50 / 65536.0f, -25 / 65536.0f}), "50%,-25%"); // -25.5 and 50.5, truncated
    EXPECT_EQ(declare(1, {1, 0.5f}), "0%,-32768%"); // 65536 and 32768 lose their upper bits
    EXPECT_EQ(declare(2, {1, 2, 3}), "1,2,2");
    EXPECT_EQ(declare(3, {255, 51, 0.9f, 256}), "1,0.2,0,0");
    list[5].value.SetInt(0, 3);
    EXPECT_EQ(DefaultText(list[5]), "3");
    EXPECT_EQ(DefaultText(list[4]), "off");
    EXPECT_EQ(DefaultText(list[8]), "");
}

TEST(ParameterValuesTest, NamesGoBeforeLabels) {
    const auto list = Effect(); // "amount" is also the label of "turn"
    EXPECT_EQ(FindParameter("--param", "amount", list), 0u);
    EXPECT_EQ(FindParameter("--layer", "Map", list), 7u);
}

} // namespace
