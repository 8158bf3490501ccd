#include "packaging/EffectTemplate.h"

namespace fxhost {

namespace {

constexpr char s_Script[] = R"js(// @NAME@: turns a picture to grey or to its negative, by an amount.

var amount, mode; // parameters
var shader;

function setup() {
    amount = SV_initParam("amount", SV_Type.FLOAT, "Amount");
    SV_setParamMinMax(amount, 0, 100);
    SV_setParamValue(amount, 100);

    mode = SV_initParam("mode", SV_Type.POPUP, "Mode");
    SV_setParamChoices(mode, "Grey|Negative");
    SV_setParamValue(mode, 1); // entries count from 1

    // After the parameters: a shader learns their types when it is loaded.
    shader = SV_initShader("main");
}

function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParam(shader, amount); // to the uniform of the same name
    SV_setShaderParam(shader, mode);
    // true flips vertically: the layer is stored top row first, GL textures bottom row first.
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
)js";

constexpr char s_Shader[] =
    R"glsl(uniform sampler2D image; // the layer: red, green, blue and straight alpha
uniform float amount;    // 0 to 100
uniform int mode;        // the pop-up's entry, from 1

void main() {
    vec4 here = texture2D(image, gl_TexCoord[0].xy);
    vec3 changed = vec3(dot(here.rgb, vec3(0.2126, 0.7152, 0.0722)));
    if (mode == 2) {
        changed = 1.0 - here.rgb;
    }
    gl_FragColor = vec4(mix(here.rgb, changed, amount / 100.0), here.a);
}
)glsl";

constexpr char s_Config[] = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!-- Each setting is an element of its own; there is no root element. -->
<FXNAME>@NAME@</FXNAME>
<ABOUT>What the effect does, in a sentence.</ABOUT>
<MAJOR_VERSION>1</MAJOR_VERSION>
<MINOR_VERSION>0</MINOR_VERSION>
<BUILD_VERSION>0</BUILD_VERSION>
<STAGE_VERSION>0</STAGE_VERSION>
<!-- 0x2000000 takes 16-bit layers -->
<FLAGS>33554432</FLAGS>
<!-- 0x400 renders smart, 0x1000 takes float layers -->
<FLAGS2>5120</FLAGS2>
<PRIVNUM>0</PRIVNUM>
<AGEP_ID>@NAME@</AGEP_ID>
)xml";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string ForXml(const std::string& text) {
    return Replaced(Replaced(text, "&", "&amp;"), "<", "&lt;");
}

Bytes ToBytes(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

} // namespace

FileMap TemplateEffect(const std::string& name) {
    return {{"fx.js", ToBytes(Replaced(s_Script, "@NAME@", name))},
            {"main.frag", ToBytes(s_Shader)},
            {"config.xml", ToBytes(Replaced(s_Config, "@NAME@", ForXml(name)))}};
}

} // namespace fxhost
