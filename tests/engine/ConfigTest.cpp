#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/AEShaderVexel2.h"
#include "engine/Config.h"
#include "utils/Utils.h"

namespace {

// The text that the effect's config.xml has.
std::string s_Xml;

class ConfigTest : public testing::Test {
protected:
    ConfigTest() {
        Utils::ReadWholeTextFileCallback = [](const std::wstring& name) {
            return name == L"config.xml" ? s_Xml : std::string();
        };
    }
    ~ConfigTest() override { Utils::ReadWholeTextFileCallback = nullptr; }
};

TEST_F(ConfigTest, OnlyTopLevelElementsAreKeys) {
    s_Xml = "<?xml version=\"1.0\"?><!-- c --><FXNAME a=\"1\"> A &amp; B\n</FXNAME>"
            "<group><ABOUT>hidden</ABOUT></group><FLAGS>12abc</FLAGS><FXNAMES>x</FXNAMES>";
    const Config config(nullptr);
    EXPECT_EQ(config.GetString(L"FXNAME"), " A & B\n");
    EXPECT_EQ(config.GetString(L"FLAGS"), "12abc");
    for (const wchar_t* const absent : {L"flags", L"FXNAM", L"ABOUT"}) // nested elements are not keys
        EXPECT_EQ(config.GetString(absent), "");
}

TEST_F(ConfigTest, ElementsNestedTooDeepThrowAndManySiblingsDoNot) {
    const auto repeat = [](const std::string& text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    constexpr int many = 200000;
    const std::string rows[] = {repeat("<a>", many), repeat("<a b='/>'>", many),
                                repeat("<a><!-- </a> -->", many), repeat("<a><![CDATA[</a>]]>", many),
                                repeat("<a><?x </a>?>", many)};
    for (const std::string& xml : rows) {
        s_Xml = xml;
        EXPECT_ANY_THROW(Config(nullptr)) << xml.substr(0, 20);
    }
    s_Xml = "<!DOCTYPE a [ <!ELEMENT a> ]>" +
            repeat("<a/><b c=\">\"/><d>x<e/></d><!--<f>--><?g <f>?><![CDATA[<f>]]>", many) +
            "<FLAGS>7</FLAGS>";
    EXPECT_EQ(Config(nullptr).GetString(L"FLAGS"), "7");
}

TEST_F(ConfigTest, MalformedXmlThrowsAndLeavesTheEngineUnusable) {
    s_Xml = "<FLAGS>1</FLAGS>\n<a>&#10;\n</b x>\n";
    EXPECT_THAT([] { Config(nullptr); },
                testing::Throws<ConfigError>(testing::Property(&ConfigError::line, 3)));
    for (const char* const xml : {"popa", "<FLAGS>", "<a", "<FLAGS>1"}) {
        s_Xml = xml;
        EXPECT_ANY_THROW(Config(nullptr)) << xml;
    }
    AEShaderVexel2 engine;
    EXPECT_ANY_THROW(engine.globalSetup(nullptr, nullptr));
    EXPECT_EQ(engine.getVersion(), 0u);
    EXPECT_FALSE(engine.lockFrame());
}

} // namespace
