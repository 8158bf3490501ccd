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
    if (FormatBits(host.options.undeclaredFormat) == bits)
        return host.options.undeclaredFormat;
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
    return {picture.width, picture.height, format, host.options.rowPadding};
}

} // namespace

std::uint32_t FrameFormat(const HostCore& host, const FrameRequest& request) {
    const unsigned bits = request.depth   ? request.depth
                          : request.input ? request.input->depth
                                          : FormatBits(request.format);
    if (FormatOfBits(bits) == 0)
        throw std::invalid_argument("a frame has 8, 16 or 32 bits per channel, not " + std::to_string(bits));
    if (request.input && request.input->depth != bits)
        throw std::invalid_argument("the input's depth differs from the frame's");
    if (!host.IsPremiere())
        return FormatOfBits(bits);
    const std::uint32_t format = request.format ? request.format : PremiereFormat(host, bits);
    if (!MayDeliver(host, format, bits))
        throw std::invalid_argument("the plug-in declared no pixel format of " + std::to_string(bits) +
                                    " bits, or not the one that is asked for");
    return format;
}

Extents LayerSize(const FrameRequest& request) {
    Extents size = {request.layerWidth, request.layerHeight};
    if (size.width == 0 && request.input)
        size.width = FullResolution(request.input->width, request.downsampleX);
    if (size.height == 0 && request.input)
        size.height = FullResolution(request.input->height, request.downsampleY);
    return size;
}

Extents CompSize(const Call& call) {
    const Options& options = call.host.options;
    return {options.compWidth ? options.compWidth : call.in.width,
            options.compHeight ? options.compHeight : call.in.height};
}

PF_LRect InputRect(const FrameRequest& request) {
    if (!request.input || request.input->width == 0 || request.input->height == 0)
        return {};
    return {request.inputX, request.inputY, request.inputX + static_cast<A_long>(request.input->width),
            request.inputY + static_cast<A_long>(request.input->height)};
}

void FillFrame(Call& call, const FrameState& frame) {
    const FrameRequest& request = frame.request;
    const Extents layer = LayerSize(request);
    call.frame = &frame;
    call.instance->FillIn(call.in);
    call.in.current_time = request.time;
    call.in.time_step = request.timeStep;
    call.in.local_time_step = request.timeStep;
    call.in.total_time = request.totalTime;
    call.in.time_scale = request.timeScale;
    call.in.width = layer.width;
    call.in.height = layer.height;
    call.in.downsample_x = request.downsampleX;
    call.in.downsample_y = request.downsampleY;
    call.in.pixel_aspect_ratio = request.pixelAspect;
    if (call.host.IsPremiere()) {
        call.in.pre_effect_source_origin_x = request.preEffectOriginX;
        call.in.pre_effect_source_origin_y = request.preEffectOriginY;
    }
}

World* CreateInput(Call& call) {
    const fxhost::Picture* picture = call.frame ? call.frame->request.input : nullptr;
    if (!picture || picture->width == 0 || picture->height == 0)
        return nullptr;
    World& world = call.host.worlds.Create(ShapeOf(call.host, *picture, call.frame->format),
                                           std::string("the input of ") + call.Name());
    world.Load(*picture, 0, 0);
    world.Def().pix_aspect_ratio = call.frame->request.pixelAspect;
    return &world;
}

World* CreateLayer(Call& call, const fxhost::Picture& picture, A_long index) {
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
