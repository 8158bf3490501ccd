#pragma once

#include <functional>

#include "scripting/Scripting.h"

namespace fxhost {

// Passes the text that scripts print to a function, from construction to destruction. Only one listener may
// exist at a time.
class ScriptMessageListener {
public:
    using Handler = std::function<void(const ScriptMessage&)>;

    // The handler is called while the script runs, so it must not call the engine.
    explicit ScriptMessageListener(Handler handler);
    ~ScriptMessageListener();
    ScriptMessageListener(const ScriptMessageListener&) = delete;
    ScriptMessageListener& operator=(const ScriptMessageListener&) = delete;

private:
    static Handler s_Handler;
};

} // namespace fxhost
