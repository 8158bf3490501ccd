#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/FrameRenderer.h"

namespace fxhost {

// What one frame is rendered from, as the user gives it.
struct FrameOptions {
    std::string effect, input, size;
    std::vector<std::string> parameters, layers;
    double time = 0;
    std::optional<unsigned> depth;
};

// Adds EFFECT, --input, --param, --layer, --time, --depth and --size. Gives EFFECT, for commands that require
// it.
CLI::Option* AddFrameOptions(CLI::App& command, FrameOptions& options);

// Throws WrongUse unless exactly one of --input and --size is given.
void RequireOneInput(const FrameOptions& options);

// The input picture, or a transparent black layer of --size. Throws WrongUse as above, or for a bad picture.
Picture InputLayer(const FrameOptions& options);

// The frame with its parameters and layers; `input` comes from InputLayer. Throws WrongUse.
FrameInputs MakeFrameInputs(const FrameOptions& options, Picture input,
                            const std::vector<Parameter>& parameters);

// "WxH" as a transparent black layer. Throws WrongUse when it is none.
Picture EmptyLayer(const std::string& size, unsigned depth);

// The pictures of "NAME=IMAGE" options, at this depth. Throws WrongUse.
std::vector<LayerInput> ReadLayers(const std::vector<std::string>& assignments,
                                   const std::vector<Parameter>& parameters, unsigned depth);

} // namespace fxhost
