#include "stricthost/FrameGeometry.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/PixelFormats.h"

namespace stricthost {

namespace {

// Format of Premiere Pro's worlds of this depth; 0 when the plug-in declared none.
std::uint32_t PremiereFormat(const HostCore& host, unsigned bits) {
    if (host.options.quirks.bgra && bits == 8)
        return PixelFormats::Bgra8;
    for (const std::uint32_t format : host.formats)
        if (FormatBits(format) == bits)
            return format;
    return host.formats.empty() && bits == 8 ? FormatArgb8 : 0; // the format for plug-ins that declare none
}

bool MayDeliver(const HostCore& host, std::uint32_t format, unsigned bits) {
    const bool known = std::find(host.formats.begin(), host.formats.end(), format) != host.formats.end() ||
                       format == PremiereFormat(host, bits);
    return known && FormatBits(format) == bits;
}

A_long FullResolution(unsigned pixels, const PF_RationalScale& scale) {
    return static_cast<A_long>(
        std::lround(double{scale.den ? double(scale.den) : 1.0} * pixels / (scale.num ? scale.num : 1)));
}

WorldShape ShapeOf(const HostCore& host, const fxhost::Picture& picture, std::uint32_t format) {
    return host.Shape(static_cast<A_long>(picture.width), static_cast<A_long>(picture.height), format);
}

} // namespace

std::uint32_t FrameFormat(const HostCore& host, const FrameSpec& spec) {
    const unsigned bits = spec.depth ? spec.depth : spec.input ? spec.input->depth : FormatBits(spec.format);
    if (FormatOfBits(bits) == 0)
        throw std::invalid_argument("a frame has 8, 16 or 32 bits per channel, not " + std::to_string(bits));
    if (spec.input && spec.input->depth != bits)
        throw std::invalid_argument("the input's depth differs from the frame's");
    if (!host.IsPremiere())
        return FormatOfBits(bits);
    const std::uint32_t format = spec.format ? spec.format : PremiereFormat(host, bits);
    if (!MayDeliver(host, format, bits))
        throw std::invalid_argument("the plug-in declared no pixel format of " + std::to_string(bits) +
                                    " bits, or not the one that is asked for");
    return format;
}

Extents LayerSize(const FrameSpec& spec) {
    Extents size = {spec.layerWidth, spec.layerHeight};
    if (size.width == 0 && spec.input)
        size.width = FullResolution(spec.input->width, spec.downsampleX);
    if (size.height == 0 && spec.input)
        size.height = FullResolution(spec.input->height, spec.downsampleY);
    return size;
}

Extents CompSize(const HostCall& call) {
    const Options& options = call.host.options;
    return {options.compWidth ? options.compWidth : call.in.width,
            options.compHeight ? options.compHeight : call.in.height};
}

PF_LRect InputRect(const FrameSpec& spec) {
    if (!spec.input || spec.input->width == 0 || spec.input->height == 0)
        return {};
    return {spec.inputX, spec.inputY, spec.inputX + static_cast<A_long>(spec.input->width),
            spec.inputY + static_cast<A_long>(spec.input->height)};
}

bool IsEmpty(const PF_LRect& rect) {
    return rect.right <= rect.left || rect.bottom <= rect.top;
}

PF_LRect Intersection(const PF_LRect& a, const PF_LRect& b) {
    const PF_LRect both = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                           std::min(a.bottom, b.bottom)};
    return IsEmpty(both) ? PF_LRect() : both;
}

double Factor(const PF_RationalScale& scale) {
    return scale.den && scale.num ? static_cast<double>(scale.num) / scale.den : 1.0;
}

void FillFrame(HostCall& call, const FrameState& frame) {
    const FrameSpec& spec = frame.spec;
    const Extents layer = LayerSize(spec);
    call.frame = &frame;
    call.instance->FillIn(call.in);
    call.in.sequence_data = call.instance->RenderData();
    call.in.current_time = spec.time;
    call.in.time_step = spec.timeStep;
    call.in.local_time_step = spec.timeStep;
    call.in.total_time = spec.totalTime;
    call.in.time_scale = spec.timeScale;
    call.in.width = layer.width;
    call.in.height = layer.height;
    call.in.downsample_x = spec.downsampleX;
    call.in.downsample_y = spec.downsampleY;
    call.in.pixel_aspect_ratio = spec.pixelAspect;
    if (call.host.IsPremiere()) {
        call.in.pre_effect_source_origin_x = spec.preEffectOriginX;
        call.in.pre_effect_source_origin_y = spec.preEffectOriginY;
    }
}

World* CreateInput(HostCall& call) {
    const fxhost::Picture* picture = call.frame ? call.frame->spec.input : nullptr;
    if (!picture || picture->width == 0 || picture->height == 0)
        return nullptr;
    World& world = call.host.worlds.Create(ShapeOf(call.host, *picture, call.frame->format),
                                           std::string("the input of ") + call.Name());
    world.Load(*picture, 0, 0);
    world.Def().pix_aspect_ratio = call.frame->spec.pixelAspect;
    return &world;
}

World* CreateLayer(HostCall& call, const fxhost::Picture& picture, A_long index) {
    if (picture.width == 0 || picture.height == 0)
        return nullptr;
    const std::uint32_t declared = call.host.IsPremiere() ? PremiereFormat(call.host, picture.depth) : 0;
    World& world = call.host.worlds.Create(
        ShapeOf(call.host, picture, declared ? declared : FormatOfBits(picture.depth)),
        "the layer of parameter " + std::to_string(index) + " in " + call.Name());
    world.Load(picture, 0, 0);
    return &world;
}

} // namespace stricthost
