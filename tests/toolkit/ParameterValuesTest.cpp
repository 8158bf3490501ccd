#include "toolkit/ParameterValues.h"

#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;

std::vector<Parameter> Effect() {
    std::vector<Parameter> list = {
        {"amount", Parameter::FLOAT, "Amount %"},   {"centre", Parameter::POINT2D, "Centre"},
        {"place", Parameter::POINT, "Place"},       {"tint", Parameter::COLOR, "Tint"},
        {"wrap", Parameter::BOOL, "Wrap around"},   {"mode", Parameter::POPUP, "Mode"},
        {"amount %", Parameter::ANGLE, "amount"},   {"map", Parameter::LAYER, "Map"},
        {"group", Parameter::GROUP_START, "Group"}, {"secret", Parameter::FLOAT, "Secret"},
    };
    list[5].choices = "Add|Multiply|3|1";
    list[9].flags = Parameter::NotPublished;
    return list;
}

TEST(ParameterValuesTest, ParsedTextFillsTheComponentsOfItsType) {
    const struct {
        std::vector<const char*> texts;
        unsigned index;
        std::vector<float> words;                       // or the integer of a switch or pop-up
    } rows[] = {{{"amount=12.5"}, 0, {12.5f, 0, 0, 0}}, // a name takes precedence over a label
                {{"Amount %=-1e1"}, 0, {-10, 0, 0, 0}},
                {{"amount=+100"}, 0, {100, 0, 0, 0}},
                {{"centre=3,-4.5"}, 1, {3, -4.5f, 0, 0}},
                {{"place=1, 2, 3"}, 2, {1, 2, 3, 0}},
                {{"tint=1,0.5,0"}, 3, {1, 0.5f, 0, 1}},
                {{"tint=1,0.5,0,0.25"}, 3, {1, 0.5f, 0, 0.25f}},
                {{"tint=#ff3300"}, 3, {1, 0.2f, 0, 1}},
                {{"tint=#FF330066"}, 3, {1, 0.2f, 0, 0.4f}},
                {{"amount %=720"}, 6, {720, 0, 0, 0}},
                {{"wrap=on", "Wrap around=true"}, 4, {1}},
                {{"wrap=off", "wrap=0"}, 4, {0}},
                {{"mode=2", "mode=Multiply"}, 5, {2}},
                {{"mode=4", "mode=1"}, 5, {4}}}; // the text of an entry takes precedence over its number
    for (const auto& row : rows)
        for (const char* text : row.texts) {
            const auto [index, value] = ParseSetting(text, Effect());
            EXPECT_EQ(index, row.index) << text;
            std::vector<float> words = {value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
            EXPECT_EQ(row.words.size() == 4 ? words : std::vector{float(value.Int(0))}, row.words) << text;
        }
}

TEST(ParameterValuesTest, RefusedTextNamesTheExpectedForm) {
    const struct {
        std::vector<const char*> texts;
        const char* part;
    } rows[] = {
        {{"amount"}, "NAME=VALUE"},
        {{"amount=", "amount=5x", "amount=1,2", "amount=nan", "amount=inf"}, "one number"},
        {{"amount=100.1", "amount=-101"}, "from -100 to 100"},
        {{"centre=1", "centre=1,2,3", "centre=1,"}, "x,y"},
        {{"place=1,2"}, "x,y,z"},
        {{"tint=1,2", "tint=#ff33", "tint=#ff330g"}, "red,green,blue"},
        {{"amount=0:1 1s:4"}, "separated by commas"},
        {{"wrap=maybe"}, "on or off"},
        {{"mode=0", "mode=5", "mode=1.5"}, "from 1 to 4 or one of \"Add\", \"Multiply\""},
        {{"map=x.png"}, "--layer map=IMAGE"},
        {{"amout=1", "=1", "group=1", "secret=1"},
         "it has amount, centre, place, tint, wrap, mode, amount %, map"},
    };
    for (const auto& row : rows)
        for (const char* text : row.texts)
            EXPECT_THAT([&] { ParseSetting(text, Effect()); }, Says<WrongUse>(row.part)) << text;
}

TEST(ParameterValuesTest, PercentOfTheLayerBecomesPixelsInPointsAndTheirKeyframes) {
    const std::pair<const char*, const char*> rows[] = {
        {"centre=50%,25%", "centre=100,20"},
        {"Centre=0:50%,25%, 1s:-10%,7", "Centre=0:100,20, 1s:-20,7"},
        {"centre=50,25%", "centre=50,20"},
        {"place=10%,10%,3", "place=20,8,3"},
        {"amount=50%", "amount=50%"}};
    for (const auto& [text, pixels] : rows)
        EXPECT_EQ(PercentToPixels(text, Effect(), 200, 80), pixels);
}

TEST(ParameterValuesTest, DefaultsAreThoseThatHostsShow) {
    const struct {
        unsigned index;
        std::vector<float> words;
        const char* text;
    } rows[] = {
        {0, {2.5f}, "2.5"},
        {1, {50 / 65536.0f, -25 / 65536.0f}, "50%,-25%"}, // -25.5 and 50.5,
                                                          // truncated
        {1, {1, 0.5f}, "0%,-32768%"},                     // 65536 and 32768 overflow
        {2, {1, 2, 3}, "1,2,2"},
        {3, {255, 51, 0.9f, 256}, "1,0.2,0,0"},
        {4, {}, "off"},
    };
    auto list = Effect();
    for (const auto& row : rows) {
        for (unsigned i = 0; i < row.words.size(); ++i)
            list[row.index].value.SetFloat(i, row.words[i]);
        EXPECT_EQ(DefaultText(list[row.index]), row.text);
    }
}

} // namespace
