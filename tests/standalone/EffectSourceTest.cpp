#include "standalone/effects/EffectSource.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/utils/BlobScrambling.h"
#include "engine/utils/Utils.h"
#include "standalone/Errors.h"
#include "standalone/effects/ScriptScan.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;
namespace fs = std::filesystem;

Bytes ToBytes(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

class EffectSourceTest : public testing::Test {
protected:
    EffectSourceTest() {
        fs::remove_all(m_Folder);
        fs::create_directories(m_Folder);
    }
    ~EffectSourceTest() override {
        Utils::ProcessPath = Utils::PassThrough;
        Utils::ReadWholeFileCallback = nullptr;
        fs::remove_all(m_Folder);
    }
    std::string Write(const std::string& name, const Bytes& bytes) {
        const fs::path path = m_Folder / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return path.string();
    }
    std::string Folder() const { return m_Folder.string(); }

private:
    const fs::path m_Folder = fs::path(testing::TempDir()) / "fxhost_effect";
};

template <class Exception>
auto Refused(const std::string& part) {
    return Throws<Exception>(Property(&std::exception::what, HasSubstr(part)));
}

const FileMap s_Effect = {{"fx.js", ToBytes("function draw(){}")},
                          {"config.xml", ToBytes("<FXNAME>x</FXNAME>")}};

TEST_F(EffectSourceTest, WhatIsNoEffectIsRefused) {
    EXPECT_THAT([&] { EffectSource::Open(Folder() + "/none"); }, Refused<WrongUse>("no such effect"));
    EXPECT_THAT([&] { EffectSource::Open(Folder()); }, Refused<WrongUse>("no fx.js"));
    const auto text = Write("text.dat", ToBytes("hello"));
    EXPECT_THAT([&] { EffectSource::Open(text); }, Refused<WrongUse>("neither a zip"));
    const auto empty = Write("empty.dat", {});
    EXPECT_THAT([&] { EffectSource::Open(empty); }, Refused<WrongUse>("neither a zip"));
    const auto other = Write("other.zip", WriteZip({{"a", ToBytes("b")}}));
    EXPECT_THAT([&] { EffectSource::Open(other); }, Refused<WrongUse>("no fx.js"));
    Write("fx.js", ToBytes("x"));
    EXPECT_THAT([&] { EffectSource::Open(Folder()); }, Refused<EffectFailure>("config.xml"));
}

TEST_F(EffectSourceTest, PackagesCutShortOrDamagedAreRefused) {
    const Bytes whole = BlobScrambling::Scramble(WriteZip(s_Effect));
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        const auto path =
            Write("cut.dat", Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_THROW(EffectSource::Open(path), WrongUse) << length;
    }
    Bytes plain = WriteZip({{"fx.js", Bytes(3000, 'x')}, {"config.xml", {}}});
    const std::string name = "fx.js"; // its packed bytes follow the first mention
    *(std::search(plain.begin(), plain.end(), name.begin(), name.end()) + 9) ^= 0x55;
    EXPECT_THROW(EffectSource::Open(Write("damaged.zip", plain)), WrongUse);
}

TEST_F(EffectSourceTest, PackagesOpenScrambledOrNot) {
    const Bytes plain = WriteZip(s_Effect);
    for (const Bytes& bytes : {plain, BlobScrambling::Scramble(plain)}) {
        const auto source = EffectSource::Open(Write("blob.dat", bytes));
        EXPECT_TRUE(source.IsPackage());
        EXPECT_EQ(source.ReadText("shaders/FX.JS"), "function draw(){}");
        source.Select();
        EXPECT_EQ(Utils::ReadWholeFile(L"any/Contents/Resources//blob.dat"), BlobScrambling::Scramble(plain));
        EXPECT_TRUE(Utils::ReadWholeFile(L"fx.js").empty());
    }
}

TEST_F(EffectSourceTest, LooseFilesAreFoundInTheFolderOnly) {
    for (const auto& [name, bytes] : s_Effect)
        Write(name, bytes);
    Write("shaders/a.frag", ToBytes("a"));
    Write("Contents/Resources/none", {});
    const auto source = EffectSource::Open(Folder() + "/");
    EXPECT_EQ(source.Shown("/fx.js"), Folder() + "/fx.js");
    source.Select();
    EXPECT_EQ(Utils::ReadWholeTextFile(L"fx.js"), "function draw(){}");
    EXPECT_EQ(Utils::ReadWholeTextFile(L"/shaders/a.frag"), "a");
    EXPECT_TRUE(Utils::ReadWholeFile(L"whatever/Contents/Resources//blob.dat").empty());
    EXPECT_EQ(EffectSource::MissingFiles(), std::vector<std::string>());
    Utils::ReadWholeFile(L"/b.png");
    Utils::ReadWholeFile(L"b.png");
    EXPECT_THAT(EffectSource::MissingFiles(), ElementsAre("b.png"));
}

TEST_F(EffectSourceTest, EqualFilesGiveEqualArchives) {
    const FileMap files = {{"b", ToBytes("2")}, {"a", Bytes(10000, 7)}, {"empty", {}}};
    const Bytes archive = WriteZip(files);
    EXPECT_EQ(ReadZip(archive), files);
    EXPECT_EQ(WriteZip(ReadZip(archive)), archive);
}

TEST(ScriptScanTest, LiteralNamesAreFoundAndCommentsAreNot) {
    const auto found =
        FindFileReferences("var a = SV_initShader(\"one\");\n"
                           "/* SV_initShader('no') */ // S.V.initTexture(\"no.png\")\n"
                           "b = S.V.initTexture( 'two.png' , true);\n"
                           "SV_initShader('text', 'void main(){}'); SV_initTexture(dir + 'x');\n"
                           "s = '// no comment'; SV_initShader('three');");
    std::vector<std::string> texts;
    for (const auto& reference : found)
        texts.push_back(reference.file + ":" + std::to_string(reference.line));
    EXPECT_THAT(texts, ElementsAre("one.frag:1", "two.png:3", "three.frag:5"));
}

} // namespace
