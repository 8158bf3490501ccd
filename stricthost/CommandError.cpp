#include "stricthost/CommandError.h"

#include "stricthost/CommandName.h"

namespace stricthost {

CommandError::CommandError(PF_Cmd command, PF_Err code, const std::string& message)
    : std::runtime_error(std::string(CommandName(command)) + " returned error " + std::to_string(code) +
                         (message.empty() ? "" : ": " + message)),
      m_Code(code) {}

} // namespace stricthost
