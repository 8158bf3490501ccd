#include <gtest/gtest.h>

#include "tests/support/TestPackage.h"
#include "utils/BlobReader.h"
#include "utils/BlobScrambling.h"
#include "utils/Utils.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Each test starts with loose files.
class EffectFilesTest : public testing::Test {
protected:
    EffectFilesTest() { ReadLoose(); }
    ~EffectFilesTest() override { ReadLoose(); }

    static void ReadLoose() {
        Utils::ReadWholeTextFileCallback = nullptr;
        Utils::ReadWholeFileCallback = nullptr;
    }

    // Opens a bundle with this package. Returns whether files are read from the package afterwards.
    bool Open(const Bytes& package, const std::string& bundle = "Fx.plugin") {
        ReadLoose();
        m_Folder.Write(bundle + "/Contents/Resources/blob.dat", std::string(package.begin(), package.end()));
        std::string path = m_Folder.Path() / bundle;
        BlobReader::Instance().init(nullptr, path.data());
        return Utils::ReadWholeTextFileCallback != nullptr && Utils::ReadWholeFileCallback != nullptr;
    }

    std::wstring Loose(const std::string& name) { return Utils::ToWide(m_Folder.Path() / name); }

    TemporaryFolder m_Folder;
};

// The scrambling written out longhand from its definition, on 64-bit arithmetic.
Bytes ScrambleByHand(const Bytes& plain) {
    Bytes padded = plain;
    padded.resize((plain.size() / 4 + 1) * 4);
    std::uint64_t key = 0x5E1F0C37;
    for (std::size_t at = 0; at < padded.size(); at += 4) {
        std::uint64_t word = 0;
        for (int i = 3; i >= 0; --i)
            word = word * 256 + padded[at + static_cast<std::size_t>(i)];
        const std::uint64_t cipher = word ^ key;
        for (std::size_t i = 0; i < 4; ++i)
            padded[at + i] = static_cast<unsigned char>(cipher >> (8 * i));
        key = (key + word) % 0x100000000u * word % 0x100000000u;
    }
    padded.resize(plain.size());
    return padded;
}

TEST_F(EffectFilesTest, ScramblingIsReversibleAtEveryLength) {
    for (const std::size_t length : {0u, 1u, 3u, 4u, 5u, 4096u}) {
        Bytes plain(length);
        for (std::size_t i = 0; i < length; ++i)
            plain[i] = static_cast<unsigned char>(i * 37 + i / 11 + 1);
        const Bytes package = BlobScrambling::Scramble(plain);
        EXPECT_EQ(package, ScrambleByHand(plain)) << length;
        Bytes buffer = package;
        buffer.resize(length + BlobScrambling::Padding);
        BlobScrambling::Unscramble(buffer, length);
        buffer.resize(length);
        EXPECT_EQ(buffer, plain) << length;
    }
}

TEST_F(EffectFilesTest, LooseFilesAreReadThroughTheProcessedPath) {
    m_Folder.Write("fx.js", "draw");
    m_Folder.Write("cut.txt", std::string("ab\0cd", 5));
    EXPECT_EQ(Utils::ReadWholeTextFile(Loose("fx.js")), "draw");
    EXPECT_EQ(Utils::ReadWholeTextFile(Loose("cut.txt")), "ab");
    EXPECT_EQ(Utils::ReadWholeFile(Loose("cut.txt")).size(), 5u);
    EXPECT_EQ(Utils::ReadWholeTextFile(Loose("absent.js")), "popa");
    EXPECT_TRUE(Utils::ReadWholeFile(Loose("absent.js")).empty());

    static std::wstring base;
    base = Loose("");
    Utils::ProcessPath = [](const std::wstring& path) { return base + path; };
    EXPECT_EQ(Utils::ReadWholeTextFile(L"fx.js"), "draw");
    Utils::ProcessPath = Utils::PassThrough;
}

TEST_F(EffectFilesTest, AnOpenPackageSuppliesEveryFileByItsBaseName) {
    m_Folder.Write("loose.js", "loose");
    ASSERT_TRUE(Open(BlobScrambling::Scramble(
        ZipOf({{"fx.js", "script"}, {"a.frag", std::string("ab\0cd", 5)}, {"empty.txt", ""}}))));
    EXPECT_EQ(Utils::ReadWholeTextFile(L"fx.js"), "script");
    EXPECT_EQ(Utils::ReadWholeTextFile(L"shaders/a.frag"), "ab");
    EXPECT_EQ(Utils::ReadWholeFile(L"/A.FRAG"), (Bytes{'a', 'b', 0, 'c', 'd'}));
    EXPECT_EQ(Utils::ReadWholeTextFile(L"empty.txt"), "");
    EXPECT_EQ(Utils::ReadWholeTextFile(L"absent.txt"), "");
    EXPECT_EQ(Utils::ReadWholeTextFile(Loose("loose.js")), "") << "no loose file is read any more";
}

TEST_F(EffectFilesTest, APackageIsFoundBelowAPathThatIsNotAscii) {
    const Bytes package = BlobScrambling::Scramble(ZipOf({{"fx.js", "script"}}));
    ASSERT_TRUE(Open(package, "Gr\u00f6\u00dfe \U0001F3A8.plugin"));
    EXPECT_EQ(Utils::ReadWholeTextFile(L"fx.js"), "script");
}

TEST_F(EffectFilesTest, WithoutAReadablePackageLooseFilesAreRead) {
    const Bytes zip = ZipOf({{"fx.js", "script"}});
    EXPECT_FALSE(Open({}));
    EXPECT_FALSE(Open({7}));
    EXPECT_FALSE(Open(zip)) << "a zip that is not scrambled";
    std::string nowhere = m_Folder.Path() / "Absent.plugin";
    BlobReader::Instance().init(nullptr, nowhere.data());
    EXPECT_EQ(Utils::ReadWholeFileCallback, nullptr);
    BlobReader::Instance().init(nullptr, nullptr);
    EXPECT_EQ(Utils::ReadWholeFileCallback, nullptr);
}

// A damaged package opens or not; its entries are complete or empty.
TEST_F(EffectFilesTest, CutAndDamagedPackagesNeverYieldWrongBytes) {
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "uniform float u" + std::to_string(i * i) + ";\n";
    const Bytes whole = ZipOf({{"fx.js", text}, {"config.xml", "<FLAGS>1</FLAGS>"}});
    const auto checkPackage = [&](const Bytes& package) {
        if (!Open(package))
            return;
        const std::string got = Utils::ReadWholeTextFile(L"fx.js");
        EXPECT_TRUE(got.empty() || got == text);
    };
    const auto check = [&](const Bytes& zip) { checkPackage(BlobScrambling::Scramble(zip)); };
    for (std::size_t length = 0; length <= whole.size(); ++length)
        check(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes damaged = whole;
        damaged[at] ^= 0xFF;
        check(damaged);
    }
    const Bytes package = BlobScrambling::Scramble(whole);
    for (std::size_t at = 0; at < package.size(); ++at) { // spoils all that follows, up to a word of zeros
        Bytes flipped = package;
        flipped[at] ^= 1;
        checkPackage(flipped);
    }
}

TEST_F(EffectFilesTest, WideNamesConvertToUtf8AndBack) {
    EXPECT_EQ(Utils::ToNarrow(L"a\u00e9\u20ac\U0001F3A8"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8");
    EXPECT_EQ(Utils::ToNarrow(L"\xD83C\xDFA8z"), "\xF0\x9F\x8E\xA8z") << "wide characters of 16 bits";
    EXPECT_EQ(Utils::ToWide("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8"), L"a\u00e9\u20ac\U0001F3A8");
    EXPECT_EQ(Utils::ToWide("a\xFFz\xC3"), L"a\xFFFDz\xFFFD");
}

} // namespace
