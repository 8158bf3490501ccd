// The text of config.xml.
#include "engine/Config.h"
#include "tests/fuzz/FuzzInput.h"
#include "utils/Utils.h"

namespace {

std::string s_Text;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    s_Text.assign(reinterpret_cast<const char*>(bytes), size);
    Utils::ReadWholeTextFileCallback = [](const std::wstring&) { return s_Text; };
    try {
        const Config config(nullptr);
        for (const wchar_t* const key : {L"FXNAME", L"MAJOR_VERSION", L"FLAGS", L"", L"\x1F600"})
            config.GetString(key);
    } catch (const ConfigError&) { // the documented answer to malformed XML
    }
    Utils::ReadWholeTextFileCallback = nullptr;
    return 0;
}
