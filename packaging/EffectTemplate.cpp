#include "packaging/EffectTemplate.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace fxhost {

namespace {

constexpr char s_FilterScript[] = R"js(// @NAME@: turns a picture to grey or to its negative, by an amount.

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

constexpr char s_FilterShader[] =
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

constexpr char s_ProceduralScript[] =
    R"js(// @NAME@: a picture that is computed from place and time, without a layer.

var scale, speed, shader;

function setup() {
    scale = SV_initParam("scale", SV_Type.FLOAT, "Scale");
    SV_setParamMinMax(scale, 4, 400);
    SV_setParamValue(scale, 40);
    SV_setParamFlags(scale, SV_ParamFlags.ScaleByWidth); // a length in pixels shrinks with the preview
    speed = SV_initParam("speed", SV_Type.FLOAT, "Speed");
    SV_setParamMinMax(speed, 0, 10);
    SV_setParamValue(speed, 1);
    SV_setParamPrecision(speed, 2); // after SV_setParamFlags, which resets it
    shader = SV_initShader("main");
}

function draw() {
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "time", SV_getTime());
    SV_setShaderParam(shader, scale);
    SV_setShaderParam(shader, speed);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
)js";

constexpr char s_ProceduralShader[] = R"glsl(uniform vec2 size;   // pixels
uniform float time;  // seconds
uniform float scale; // pixels
uniform float speed;

void main() {
    vec2 place = (gl_TexCoord[0].xy * size - 0.5 * size) / scale;
    float wave = sin(place.x + speed * time) + sin(length(place) - speed * time);
    gl_FragColor = vec4(0.5 + 0.25 * wave * vec3(1.0, 0.6, -0.8), 1.0);
}
)glsl";

constexpr char s_MultipassScript[] = R"js(// @NAME@: a blur in two passes, with a render target between them.

var radius, across, down, between = 0;

function setup() {
    radius = SV_initParam("radius", SV_Type.FLOAT, "Radius");
    SV_setParamMinMax(radius, 0, 100);
    SV_setParamValue(radius, 8);
    SV_setParamFlags(radius, SV_ParamFlags.ScaleByWidth);
    across = SV_initShader("main");
    down = SV_initShader("main");
}

// The target that has the size and depth of the frame; a new one when the frame has changed.
function sized(target, size) {
    var have = target ? SV_getSurfaceDim(target) : null;
    if (have && have[0] === size[0] && have[1] === size[1] && have[2] === size[2]) {
        return target;
    }
    SV_release(target);
    return SV_initRenderTarget(size[0], size[1], size[2]);
}

function pass(shader, from, to, texel, flip) {
    SV_setShaderParamVal(shader, "image", from);
    SV_setShaderParamVal(shader, "texel", texel);
    SV_setShaderParam(shader, radius);
    SV_renderShader(shader, to, flip);
}

function draw() {
    var input = SV_getSequenceTexture(), size = SV_getSurfaceDim(SV_getSequenceRT());
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    between = sized(between, size);
    pass(across, input, between, [1 / size[0], 0], false);
    pass(down, between, SV_getSequenceRT(), [0, 1 / size[1]], true); // only the last pass flips
}
)js";

constexpr char s_MultipassShader[] = R"glsl(uniform sampler2D image;
uniform vec2 texel;   // one pixel in the direction of the blur
uniform float radius; // pixels

void main() {
    vec4 sum = vec4(0.0);
    for (int i = -8; i <= 8; i++) {
        vec4 here = texture2D(image, gl_TexCoord[0].xy + float(i) / 8.0 * radius * texel);
        sum += vec4(here.rgb * here.a, here.a); // transparent pixels must not add their colour
    }
    gl_FragColor = vec4(sum.rgb / max(sum.a, 0.0001), sum.a / 17.0);
}
)glsl";

constexpr char s_PaletteScript[] =
    R"js(// @NAME@: reduces the colours of the layer to a palette, with dithering.

// Entries of the pop-ups with the numbers that SV_surfaceQuantize takes.
var PALETTES = [["8 Colours of the Picture", 2], ["16 Colours of the Picture", 3], ["C64", 13], ["EGA", 20]];
var DITHERS = [["None", 1], ["Floyd-Steinberg", 3], ["Atkinson", 6]];

var palette, dither;

function popup(name, label, rows) {
    var param = SV_initParam(name, SV_Type.POPUP, label);
    SV_setParamChoices(param, rows.map(function (row) { return row[0]; }).join("|"));
    SV_setParamValue(param, 1);
    return param;
}

function setup() {
    palette = popup("palette", "Palette", PALETTES);
    dither = popup("dither", "Dither", DITHERS);
}

function draw() {
    var surface = SV_textureToSurface(SV_getSequenceTexture());
    SV_surfaceQuantize(surface, 0, PALETTES[SV_getParamValue(palette) - 1][1],
                       DITHERS[SV_getParamValue(dither) - 1][1], 0, true);
    SV_surfaceCopyTo(surface, SV_getSequenceRT(), true);
    SV_release(surface); // each frame makes a new one
}
)js";

constexpr char s_TransitionScript[] = R"js(// @NAME@: changes from the layer to another layer.

var progress, other, softness, shader;

function setup() {
    progress = SV_initParam("progress", SV_Type.FLOAT, "Progress");
    SV_setParamMinMax(progress, 0, 100);
    SV_setParamValue(progress, 50);
    softness = SV_initParam("softness", SV_Type.FLOAT, "Softness");
    SV_setParamMinMax(softness, 1, 100);
    SV_setParamValue(softness, 20);
    other = SV_initParam("other", SV_Type.LAYER, "Other Layer");
    shader = SV_initShader("main");
}

function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParam(shader, other); // a layer is a sampler2D
    SV_setShaderParam(shader, progress);
    SV_setShaderParam(shader, softness);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
)js";

constexpr char s_TransitionShader[] = R"glsl(uniform sampler2D image;
uniform sampler2D other;
uniform float progress; // percent
uniform float softness; // percent

void main() {
    float soft = softness / 100.0;
    float edge = progress / 100.0 * (1.0 + soft) - soft;
    float amount = 1.0 - smoothstep(edge, edge + soft, gl_TexCoord[0].x);
    vec4 from = texture2D(image, gl_TexCoord[0].xy);
    vec4 to = texture2D(other, gl_TexCoord[0].xy);
    vec4 mixed = mix(vec4(from.rgb * from.a, from.a), vec4(to.rgb * to.a, to.a), amount);
    gl_FragColor = vec4(mixed.rgb / max(mixed.a, 0.0001), mixed.a);
}
)glsl";

constexpr char s_GeneratorScript[] =
    R"js(// @NAME@: draws a shape over the layer, at a point and in a colour that the user chooses.

var centre, radius, colour, shader;

function setup() {
    centre = SV_initParam("centre", SV_Type.POINT2D, "Centre");
    SV_setParamValue(centre, [50 / 65536, 50 / 65536]); // percent of the layer, divided by 65536
    radius = SV_initParam("radius", SV_Type.FLOAT, "Radius");
    SV_setParamMinMax(radius, 0, 2000);
    SV_setParamValue(radius, 60);
    SV_setParamFlags(radius, SV_ParamFlags.ScaleByWidth);
    colour = SV_initParam("colour", SV_Type.COLOR, "Colour");
    SV_setParamValue(colour, [255, 153, 51, 255]); // bytes; shaders receive 0 to 1
    shader = SV_initShader("main");
}

function draw() {
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParam(shader, centre);
    SV_setShaderParam(shader, radius);
    SV_setShaderParam(shader, colour);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
)js";

constexpr char s_GeneratorShader[] = R"glsl(uniform sampler2D image;
uniform vec2 size;    // pixels
uniform vec2 centre;  // pixels from the top left corner
uniform float radius; // pixels
uniform vec4 colour;

void main() {
    vec4 layer = texture2D(image, gl_TexCoord[0].xy);
    float inside = clamp(radius - distance(gl_TexCoord[0].xy * size, centre) + 0.5, 0.0, 1.0) * colour.a;
    float alpha = inside + layer.a * (1.0 - inside);
    vec3 mixed = colour.rgb * inside + layer.rgb * layer.a * (1.0 - inside);
    gl_FragColor = vec4(mixed / max(alpha, 0.0001), alpha);
}
)glsl";

struct TemplateText {
    EffectTemplate about;
    const char* script;
    const char* shader; // main.frag; null for none
};
constexpr TemplateText s_Templates[] = {
    {{"filter", "one shader that changes the layer"}, s_FilterScript, s_FilterShader},
    {{"procedural", "a moving picture without a layer"}, s_ProceduralScript, s_ProceduralShader},
    {{"multipass", "two passes with a render target between them"}, s_MultipassScript, s_MultipassShader},
    {{"palette", "a reduction to few colours on the CPU"}, s_PaletteScript, nullptr},
    {{"transition", "a change to another layer"}, s_TransitionScript, s_TransitionShader},
    {{"generator", "a shape at a point over the layer"}, s_GeneratorScript, s_GeneratorShader},
};

constexpr char s_Config[] = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!-- Each setting is a separate element; there is no root element. -->
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

const std::vector<EffectTemplate>& EffectTemplates() {
    static const std::vector<EffectTemplate> s_List = [] {
        std::vector<EffectTemplate> list;
        for (const TemplateText& text : s_Templates)
            list.push_back(text.about);
        return list;
    }();
    return s_List;
}

FileMap MakeEffect(const std::string& effect, const std::string& kind) {
    const auto* const text = std::find_if(std::begin(s_Templates), std::end(s_Templates),
                                          [&](const TemplateText& row) { return row.about.name == kind; });
    if (text == std::end(s_Templates))
        throw std::out_of_range(kind);
    FileMap files = {{"fx.js", ToBytes(Replaced(text->script, "@NAME@", effect))},
                     {"config.xml", ToBytes(Replaced(s_Config, "@NAME@", ForXml(effect)))}};
    if (text->shader)
        files["main.frag"] = ToBytes(text->shader);
    return files;
}

} // namespace fxhost
