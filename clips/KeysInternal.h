#pragma once

#include "clips/Keys.h"

namespace fxhost {

// Each replaces what was said of the parameter before.
void SetFixed(Animation& animation, const ParameterSetting& setting);
void SetKeyed(Animation& animation, KeyedParameter parameter);
void ForgetParameter(Animation& animation, unsigned index);

} // namespace fxhost
