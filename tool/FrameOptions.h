#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/FrameRenderer.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

// The command-line options that describe one frame.
struct FrameOptions {
    std::string effect, input, size;
    std::vector<std::string> parameters, layers;
    double time = 0;
    std::optional<unsigned> depth;
    AlphaMode alpha = AlphaMode::Auto; // of input files
    std::string channels, part;        // of the input
    bool overscan = false;
};

// Adds EFFECT, --input, --param, --layer, --time, --depth, --alpha and --size. Returns EFFECT, so that a
// command can make it required.
CLI::Option* AddFrameOptions(CLI::App& command, FrameOptions& options);

// Throws WrongUse unless exactly one of --input and --size is given.
void RequireOneInput(const FrameOptions& options);

// Reads the input picture, or makes a transparent black layer of --size. Throws WrongUse as RequireOneInput
// and ReadPicture do.
Picture InputLayer(const FrameOptions& options);

// Parses parameters and reads layers; `input` is the result of InputLayer. Throws WrongUse.
FrameInputs MakeFrameInputs(const FrameOptions& options, Picture input,
                            const std::vector<Parameter>& parameters);

// How the input is read.
PictureReading ReadingOf(const FrameOptions& options);

// Makes a transparent black layer of size "WxH". Throws WrongUse when `size` is not of this form.
Picture EmptyLayer(const std::string& size, unsigned depth);

// The names of the modes, for options.
const std::map<std::string, AlphaMode>& AlphaModes();

// Reads the pictures of "NAME=IMAGE" options at this depth. Throws WrongUse.
std::vector<LayerInput> ReadLayers(const std::vector<std::string>& assignments,
                                   const std::vector<Parameter>& parameters, unsigned depth, AlphaMode alpha);

} // namespace fxhost
