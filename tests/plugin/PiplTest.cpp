#include "packaging/Pipl.h"

#include <gtest/gtest.h>
#include <map>

#include "packaging/InfoPlist.h"

namespace {

using fxhost::Bytes;

std::uint32_t Big(const Bytes& bytes, std::size_t at, unsigned count) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < count; ++i)
        value = value << 8 | bytes.at(at + i);
    return value;
}

Bytes Part(const Bytes& bytes, std::size_t at, std::size_t count) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    return Bytes(first, first + static_cast<std::ptrdiff_t>(count));
}

std::string Text(const Bytes& bytes, std::size_t at, std::size_t count) {
    const Bytes part = Part(bytes, at, count);
    return {part.begin(), part.end()};
}

// Reads the file as a resource manager does: the header names the map, which names the type and then the
// data.
Bytes OnlyResource(const Bytes& file, const std::string& type, unsigned number) {
    const std::size_t data = Big(file, 0, 4), map = Big(file, 4, 4);
    EXPECT_EQ(map, data + Big(file, 8, 4));
    EXPECT_EQ(file.size(), map + Big(file, 12, 4));
    const std::size_t types = map + Big(file, map + 24, 2);
    EXPECT_EQ(Big(file, types, 2), 0u) << "one type";
    EXPECT_EQ(Text(file, types + 2, 4), type);
    EXPECT_EQ(Big(file, types + 6, 2), 0u) << "one resource";
    const std::size_t reference = types + Big(file, types + 8, 2);
    EXPECT_EQ(Big(file, reference, 2), number);
    const std::size_t at = data + Big(file, reference + 5, 3);
    return Part(file, at + 4, Big(file, at, 4));
}

std::map<std::string, Bytes> Properties(const Bytes& list) {
    std::map<std::string, Bytes> properties;
    EXPECT_EQ(Big(list, 0, 4), 0u);
    std::size_t at = 8;
    for (std::uint32_t i = 0; i < Big(list, 4, 4); ++i) {
        EXPECT_EQ(Text(list, at, 4), "8BIM");
        EXPECT_EQ(at % 4, 0u);
        const std::size_t length = Big(list, at + 12, 4);
        properties[Text(list, at + 4, 4)] = Part(list, at + 16, length);
        at += 16 + length;
    }
    EXPECT_EQ(at, list.size());
    return properties;
}

TEST(PiplTest, TheResourceFileContainsEveryPropertyOfTheEffect) {
    const fxhost::PiplInfo info = {"Blur",     "Stylize", "org.shaderfx.blur", "EntryPointFunc", 0x00080001,
                                   0x06008005, 0x1400};
    auto properties = Properties(OnlyResource(fxhost::PiplResourceFile(info), "PiPL", 16000));
    EXPECT_EQ(properties["kind"], (Bytes{'e', 'F', 'K', 'T'}));
    EXPECT_EQ(properties["name"], (Bytes{4, 'B', 'l', 'u', 'r', 0, 0, 0}));
    EXPECT_EQ(properties["catg"], (Bytes{7, 'S', 't', 'y', 'l', 'i', 'z', 'e'}));
    EXPECT_EQ(properties["ma64"], properties["mi64"]);
    EXPECT_EQ(Text(properties["ma64"], 1, properties["ma64"].at(0)), "EntryPointFunc");
    EXPECT_EQ(properties["ePVR"], (Bytes{0, 2, 0, 0}));
    EXPECT_EQ(properties["eSVR"], (Bytes{0, 13, 0, 28}));
    EXPECT_EQ(properties["eVER"], (Bytes{0, 8, 0, 1}));
    EXPECT_EQ(properties["eGLO"], (Bytes{6, 0, 0x80, 5}));
    EXPECT_EQ(properties["eGL2"], (Bytes{0, 0, 0x14, 0}));
    EXPECT_EQ(properties["aeFL"], (Bytes{0, 0, 0, 8}));
    EXPECT_EQ(Text(properties["eMNA"], 1, properties["eMNA"].at(0)), "org.shaderfx.blur");
}

TEST(PiplTest, NamesFitTheirFieldsAndMatchNamesDifferBetweenEffects) {
    fxhost::PiplInfo info;
    info.name.assign(30, 'n');
    info.name += "\xC3\xA9"; // a character of two bytes beyond the limit
    auto properties = Properties(fxhost::PiplProperties(info));
    EXPECT_EQ(properties["name"].at(0), 30);

    EXPECT_EQ(fxhost::MatchNameOf("a-b"), "org.shaderfx.a-b");
    const std::string spaced = fxhost::MatchNameOf("a b");
    EXPECT_EQ(spaced.substr(0, 17), "org.shaderfx.a-b-");
    EXPECT_NE(spaced, fxhost::MatchNameOf("a_b"));
    const std::string longName(60, 'x');
    EXPECT_EQ(fxhost::MatchNameOf(longName).size(), 47u);
    EXPECT_NE(fxhost::MatchNameOf(longName), fxhost::MatchNameOf(longName + "y"));
}

TEST(InfoPlistTest, NamesAreEscapedAndIdentifiersContainOnlySafeCharacters) {
    const std::string text =
        fxhost::InfoPlist({"A&B", "A <& B>", fxhost::IdentifierOf("A & B"), "1.2.3", ""});
    EXPECT_NE(text.find("<key>CFBundleName</key>\n\t<string>A &lt;&amp; B&gt;</string>"), std::string::npos);
    EXPECT_NE(text.find("<string>org.shaderfx.A---B</string>"), std::string::npos);
    EXPECT_NE(text.find("<key>CFBundlePackageType</key>\n\t<string>eFKT</string>"), std::string::npos);
}

} // namespace
