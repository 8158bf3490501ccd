#pragma once

#include <string>
#include <vector>

#include "sdk/HostApi.h"
#include "stricthost/ParamValue.h"

namespace stricthost {

// One published parameter. Its index in the table is the host's; index 0 is the input layer.
struct PublishedParam {
    PF_ParamType type = PF_Param_LAYER;
    A_long id = 0; // as published
    std::string label;
    PF_ParamFlags flags = 0;
    PF_ParamUIFlags uiFlags = 0;
    double validMin = 0, validMax = 0; // sliders
    double sliderMin = 0, sliderMax = 0;
    int precision = 0;                // decimals
    std::vector<std::string> choices; // pop-ups; the first is value 1
    std::string text;                 // beside a check box or on a button
    PF_ParamDef def = {};             // as published, without its strings
};

// Value of a parameter in a new instance on a layer of the given size in pixels.
ParamValue DefaultValue(const PublishedParam& param, double width, double height);
// True when a value is of the parameter's kind.
bool Fits(const PublishedParam& param, const ParamValue& value);

// Writes a value into a definition as plug-ins see it. Points are multiplied by the down-sampling factors.
// The pixels of layers are not written.
void WriteValue(const ParamValue& value, double scaleX, double scaleY, PF_ParamDef& def);
// The value that a plug-in left in a definition; `old` for kinds that plug-ins cannot change.
ParamValue ReadValue(const PF_ParamDef& def, double scaleX, double scaleY, const ParamValue& old);

// The parameters that a plug-in published. Filled once, then only read.
class ParamTable {
public:
    ParamTable();

    // False for a kind that hosts do not know. Texts are copied.
    bool Add(const PF_ParamDef& def);
    std::size_t Size() const { return m_Params.size(); }
    const PublishedParam& operator[](std::size_t index) const { return m_Params[index]; }
    const std::vector<PublishedParam>& All() const { return m_Params; }

private:
    std::vector<PublishedParam> m_Params;
};

} // namespace stricthost
