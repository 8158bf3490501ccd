#include "drivers/ScriptMessageListener.h"

#include <utility>

namespace fxhost {

ScriptMessageListener::Handler ScriptMessageListener::s_Handler;

ScriptMessageListener::ScriptMessageListener(Handler handler) {
    s_Handler = std::move(handler);
    Scripting::PrintCallback = [](const ScriptMessage& message) { s_Handler(message); };
}

ScriptMessageListener::~ScriptMessageListener() {
    Scripting::PrintCallback = nullptr;
    s_Handler = nullptr;
}

} // namespace fxhost
