#pragma once

#include <cstdio>
#include <string>
#include <vector>

// What the tool reports while it works: sentences on standard error, or one JSON object a line (--json).
namespace fxhost {

// From now on, messages and events are written to `file` as JSON; null restores sentences on standard error.
// Call it while the process has one thread.
void UseJsonEvents(std::FILE* file);
bool UsesJsonEvents();

// A text as a JSON string with its quotes. Bytes that are not valid UTF-8 become the escapes \udc80 to
// \udcff, from which Python's os.fsencode makes the same bytes again.
std::string JsonString(const std::string& text);

// One JSON object with the member "event" and others. Any thread.
class Event {
public:
    explicit Event(const char* name) : m_Text("{\"event\": \"" + std::string(name) + "\"") {}
    Event& add(const char* name, const std::string& value) { return addText(name, JsonString(value)); }
    Event& add(const char* name, long value) { return addText(name, std::to_string(value)); }
    Event& add(const char* name, double value); // rounded to microunits
    // Writes the object as one line, or nothing when UsesJsonEvents() is false.
    void send() const;

private:
    Event& addText(const char* name, const std::string& text);
    std::string m_Text;
};

enum class MessageKind { Error, Warning, Note, Print };

// Prints "fxhost: TEXT", or only TEXT without `isFromTool`. As JSON, an event with the kind as its name and
// the members "text" and, unless it is negative, "frame". Any thread.
void PrintMessage(MessageKind kind, const std::string& text, long frame = -1, bool isFromTool = true);

// Suppresses all messages but errors (--quiet).
void MuteWarnings(bool muted);

// Prints the warning that `output` does not keep these; nothing when there are none.
void PrintLoss(const std::string& output, const std::vector<std::string>& lost);

} // namespace fxhost
