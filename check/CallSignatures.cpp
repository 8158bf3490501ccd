#include "check/CallSignatures.h"

#include <cstddef>

namespace fxhost {

std::span<const CallSignature> CallSignatures() {
    using enum ArgumentKind;
    static const std::vector<CallSignature> s_Signatures = {
        {"SV_initParam", {{"name", Text}, {"type", TypeCode}, {"label", Text}}, 2},
        {"SV_getParamValue", {{"parameter", Parameter}}, 1},
        {"SV_setParamValue", {{"parameter", Parameter}, {"value", ParameterValue}}, 2},
        {"SV_setParamMinMax", {{"parameter", Parameter}, {"minimum", Number}, {"maximum", Number}}, 3},
        {"SV_setParamChoices", {{"parameter", Parameter}, {"entries", Text}}, 2},
        {"SV_setParamPrecision", {{"parameter", Parameter}, {"decimals", Number}}, 2},
        {"SV_setParamEnabled", {{"parameter", Parameter}, {"enabled", Boolean}}, 2},
        {"SV_setParamFlags", {{"parameter", Parameter}, {"flags", Number}}, 2},
        {"SV_getParamFlags", {{"parameter", Parameter}}, 1},
        {"SV_initRenderTarget", {{"width", Number}, {"height", Number}, {"depth", Depth}}, 3},
        {"SV_blitRenderTarget",
         {{"from", Target}, {"to", Target}, {"flip", Boolean}, {"linear", Boolean}},
         2},
        {"SV_getSurfaceDim", {{"image", Image}}, 1},
        {"SV_getSequenceRT", {}, 0},
        {"SV_getSequenceTexture", {}, 0},
        {"SV_initShader", {{"name", Text}, {"source", Text}}, 1},
        {"SV_setShaderParam", {{"shader", Shader}, {"parameter", Parameter}}, 2},
        {"SV_getShaderParamType", {{"shader", Shader}, {"uniform", Text}}, 2},
        {"SV_renderShader",
         {{"shader", Shader}, {"target", Target}, {"flip", Boolean}, {"rectangle", Rectangle}},
         2},
        {"SV_setShaderParamVal", {{"shader", Shader}, {"uniform", Text}, {"value", UniformValue}}, 3},
        {"SV_getShaderError", {{"shader", Shader}}, 1},
        {"SV_initTexture", {{"file", Text}, {"option", Any}}, 1},
        {"SV_setTextureParam",
         {{"texture", ImageSource}, {"name", TextureParameter}, {"value", TextureValue}},
         3},
        {"SV_initSurface", {{"width", Number}, {"height", Number}, {"depth", Depth}}, 3},
        {"SV_textureToSurface", {{"texture", ImageSource}}, 1},
        {"SV_surfaceToTexture", {{"surface", Surface}}, 1},
        {"SV_surfaceQuantize",
         {{"surface", Surface},
          {"flag", Any},
          {"palette", Number},
          {"dithering", Number},
          {"threshold", Number},
          {"serpentine", Boolean}},
         6},
        {"SV_surfaceCopyTo", {{"surface", Surface}, {"target", Image}, {"flip", Boolean}}, 2},
        {"SV_getTime", {}, 0},
        {"SV_release", {{"handle", Handle}}, 1},
        {"SV_setOutputExtent", {{"width", Number}, {"height", Number}}, 2},
        {"SV_getContextExtent", {}, 0},
        {"SV_getInputOrigin", {}, 0},
    };
    return s_Signatures;
}

} // namespace fxhost
