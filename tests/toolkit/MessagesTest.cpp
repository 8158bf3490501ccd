#include "toolkit/Messages.h"

#include <gtest/gtest.h>

namespace {

using namespace fxhost;

// Each byte outside valid UTF-8 (RFC 3629) is a lone surrogate, and everything else stays as it is.
TEST(MessagesTest, TextsAreJsonStringsWithEscapesForOtherBytes) {
    const std::pair<const char*, const char*> rows[] = {
        {"a/b.png", R"("a/b.png")"},
        {"\"\\\n\x7f", "\"\\\"\\\\\\u000a\x7f\""},
        {"\xc3\xa9\xf0\x9f\x8e\xa8", "\"\xc3\xa9\xf0\x9f\x8e\xa8\""},
        {"caf\xe9.png", R"("caf\udce9.png")"},
        {"\xc3", R"("\udcc3")"},
        {"\xc0\xaf", R"("\udcc0\udcaf")"},                     // overlong
        {"\xed\xa0\x80", R"("\udced\udca0\udc80")"},           // surrogate
        {"\xf4\x90\x80\x80", R"("\udcf4\udc90\udc80\udc80")"}, // above U+10FFFF
        {"\xe2\x82z", R"("\udce2\udc82z")"}};
    for (const auto& [bytes, json] : rows)
        EXPECT_EQ(JsonString(bytes), json);
}

TEST(MessagesTest, EventsAndMessagesAreOneLineEach) {
    std::FILE* const file = std::tmpfile();
    UseJsonEvents(file);
    Event("frame").add("frame", 7L).add("seconds", 0.25).add("file", std::string("a\nb")).send();
    PrintMessage(MessageKind::Warning, "low", 3);
    PrintMessage(MessageKind::Error, "bad");
    UseJsonEvents(nullptr);
    Event("frame").send(); // not written
    std::rewind(file);
    char text[400] = "";
    [[maybe_unused]] const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    EXPECT_STREQ(text, R"({"event": "frame", "frame": 7, "seconds": 0.250000, "file": "a\u000ab"}
{"event": "warning", "frame": 3, "text": "low"}
{"event": "error", "text": "bad"}
)");
}

} // namespace
