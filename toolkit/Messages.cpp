#include "toolkit/Messages.h"

#include <cstdint>

namespace fxhost {

namespace {

std::FILE* s_JsonFile = nullptr;
bool s_IsMuted = false;

// Indexed by MessageKind.
constexpr const char* s_EventNames[] = {"error", "warning", "note", "print"};

std::string Escape(unsigned code) {
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04x", code);
    return text;
}

// Length of the UTF-8 sequence at the beginning of the text; 0 when it is not valid.
std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::size_t length = byte(0) < 0x80                       ? 1
                               : byte(0) >= 0xc2 && byte(0) <= 0xdf ? 2
                               : byte(0) >= 0xe0 && byte(0) <= 0xef ? 3
                               : byte(0) >= 0xf0 && byte(0) <= 0xf4 ? 4
                                                                    : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (byte(i) >> 6 != 2)
            return 0;
    // The second byte also excludes overlong forms, surrogates and numbers above U+10FFFF.
    if ((byte(0) == 0xe0 && byte(1) < 0xa0) || (byte(0) == 0xed && byte(1) > 0x9f) ||
        (byte(0) == 0xf0 && byte(1) < 0x90) || (byte(0) == 0xf4 && byte(1) > 0x8f))
        return 0;
    return length;
}

} // namespace

void UseJsonEvents(std::FILE* file) {
    s_JsonFile = file;
}

bool UsesJsonEvents() {
    return s_JsonFile != nullptr;
}

std::string JsonString(const std::string& text) {
    std::string json = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = SequenceLength(std::string_view(text).substr(i));
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if (length == 0)
            json += Escape(0xdc00u + byte);
        else if (byte < 0x20)
            json += Escape(byte);
        else if (byte == '"' || byte == '\\')
            json += std::string("\\") + text[i];
        else
            json.append(text, i, length);
        i += length ? length : 1;
    }
    return json + "\"";
}

Event& Event::add(const char* name, double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6f", value);
    return addText(name, text);
}

Event& Event::addText(const char* name, const std::string& text) {
    m_Text += std::string(", \"") + name + "\": " + text;
    return *this;
}

void Event::send() const {
    if (!s_JsonFile)
        return;
    std::fputs((m_Text + "}\n").c_str(), s_JsonFile);
    std::fflush(s_JsonFile);
}

void MuteWarnings(bool muted) {
    s_IsMuted = muted;
}

void PrintLoss(const std::string& output, const std::vector<std::string>& lost) {
    std::string text;
    for (const std::string& name : lost)
        text += (text.empty() ? "" : ", ") + name;
    if (!text.empty())
        PrintMessage(MessageKind::Warning, "--output " + output + ": not kept: " + text);
}

void PrintMessage(MessageKind kind, const std::string& text, long frame, bool isFromTool) {
    if (s_IsMuted && kind != MessageKind::Error)
        return;
    if (!s_JsonFile) {
        std::fprintf(stderr, "%s%s\n", isFromTool ? "fxhost: " : "", text.c_str());
        return;
    }
    Event event(s_EventNames[static_cast<int>(kind)]);
    if (frame >= 0)
        event.add("frame", frame);
    event.add("text", text).send();
}

} // namespace fxhost
