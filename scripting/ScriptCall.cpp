#include "scripting/ScriptCall.h"

void ScriptCall::Floats(int index, float* values, unsigned count) const {
    for (unsigned i = 0; i < count; ++i) {
        duk_get_prop_index(m_Duktape, index, i);
        values[i] = static_cast<float>(duk_to_number(m_Duktape, -1));
        duk_pop(m_Duktape);
    }
}
