#pragma once

#include <stdexcept>
#include <string>

#include "sdk/HostApi.h"

namespace stricthost {

// Thrown when the plug-in answers a command with an error. Errors of rendering commands are in FrameResult
// instead.
class CommandError : public std::runtime_error {
public:
    // message: the text that the plug-in left for the user; may be empty.
    CommandError(PF_Cmd command, PF_Err code, const std::string& message);
    PF_Err Code() const { return m_Code; }

private:
    PF_Err m_Code;
};

} // namespace stricthost
