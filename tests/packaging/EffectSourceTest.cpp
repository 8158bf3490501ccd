#include "packaging/EffectSource.h"

#include <algorithm>

#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"
#include "utils/BlobScrambling.h"
#include "utils/Utils.h"

namespace {

using namespace fxhost;

Bytes ToBytes(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

std::string ToText(const Bytes& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

class EffectSourceTest : public FolderTest {
protected:
    ~EffectSourceTest() override {
        Utils::ProcessPath = Utils::PassThrough;
        Utils::ReadWholeFileCallback = nullptr;
    }
    const FileMap m_Effect = {{"fx.js", ToBytes("function draw(){}")},
                              {"config.xml", ToBytes("<FXNAME>x</FXNAME>")}};
};

TEST_F(EffectSourceTest, PathsWithoutAnEffectAreRefused) {
    Bytes damaged = WriteZip({{"fx.js", Bytes(3000, 'x')}, {"config.xml", {}}});
    const std::string name = "fx.js"; // the compressed bytes follow the first occurrence
    *(std::search(damaged.begin(), damaged.end(), name.begin(), name.end()) + 9) ^= 0x55;
    const std::pair<std::string, const char*> rows[] = {
        {at("none"), "no such effect"},
        {m_Folder, "no fx.js"},
        {writeFile("text.dat", "hello"), "neither a zip"},
        {writeFile("empty.dat", ""), "neither a zip"},
        {writeFile("damaged.zip", ToText(damaged)), "neither a zip"},
        {writeFile("other.zip", ToText(WriteZip({{"a", ToBytes("b")}}))), "no fx.js"},
    };
    for (const auto& row : rows)
        EXPECT_THAT([&] { EffectSource::Open(row.first); }, Says<WrongUse>(row.second));
    const std::string whole = ToText(BlobScrambling::Scramble(WriteZip(m_Effect)));
    for (std::size_t length = 0; length < whole.size(); length += 7)
        EXPECT_THROW(EffectSource::Open(writeFile("cut.dat", whole.substr(0, length))), WrongUse) << length;
    writeFile("fx.js", "x");
    EXPECT_THAT([&] { EffectSource::Open(m_Folder); }, Says<EffectFailure>("config.xml"));
}

TEST_F(EffectSourceTest, PackagesAreReadScrambledOrPlain) {
    const Bytes plain = WriteZip(m_Effect), scrambled = BlobScrambling::Scramble(plain);
    // The time stamp is constant, so that equal folders give equal packages.
    EXPECT_EQ(Bytes(plain.begin() + 10, plain.begin() + 14), (Bytes{0, 0, 0x21, 0}));
    for (const Bytes& bytes : {plain, scrambled}) {
        const auto source = EffectSource::Open(writeFile("blob.dat", ToText(bytes)));
        EXPECT_TRUE(source.IsPackage());
        EXPECT_EQ(source.ReadText("shaders/FX.JS"), "function draw(){}");
        source.Select();
        EXPECT_EQ(Utils::ReadWholeFile(L"any/Contents/Resources//blob.dat"), scrambled);
    }
}

} // namespace
