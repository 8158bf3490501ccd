#include <gtest/gtest.h>

#include "engine/AEShaderVexel2.h"
#include "engine/Config.h"
#include "engine/utils/Utils.h"

namespace {

// Serves this text as the effect's config.xml.
std::string s_Xml;

class ConfigTest : public testing::Test {
protected:
    ConfigTest() {
        Utils::ReadWholeTextFileCallback = [](const std::wstring& name) {
            return name == L"config.xml" ? s_Xml : std::string();
        };
    }
    ~ConfigTest() override { Utils::ReadWholeTextFileCallback = nullptr; }

    static std::string Get(const std::string& xml, const std::wstring& key) {
        s_Xml = xml;
        return Config(nullptr).GetString(key);
    }
};

TEST_F(ConfigTest, TopLevelElementsAreTheKeys) {
    const std::string xml = "<?xml version=\"1.0\"?><!-- c --><FXNAME a=\"1\"> A &amp; B\n</FXNAME>"
                            "<group><ABOUT>hidden</ABOUT></group><FLAGS>12abc</FLAGS><FXNAMES>x</FXNAMES>";
    EXPECT_EQ(Get(xml, L"FXNAME"), " A & B\n");
    EXPECT_EQ(Get(xml, L"FLAGS"), "12abc");
    EXPECT_EQ(Get(xml, L"flags"), "");
    EXPECT_EQ(Get(xml, L"FXNAM"), "");
    EXPECT_EQ(Get(xml, L"ABOUT"), "") << "nested elements are no keys";
    EXPECT_EQ(Get("", L"FXNAME"), "");
}

TEST_F(ConfigTest, MalformedXmlEndsTheSetUpWithAnException) {
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
