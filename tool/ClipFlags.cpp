#include "tool/ClipFlags.h"

namespace fxhost {

void AddClipOptions(CLI::App& command, ClipOptions& options) {
    const auto text = [&](const char* name, std::string& value, const char* type, const char* help) {
        command.add_option(name, value, help)->type_name(type)->group("Clips");
    };
    text("--frames", options.frames, "FIRST-LAST[xSTEP]",
         "Frames to render: 1-240, 1-240x2, 7; all that the input has otherwise. Videos begin with frame 1");
    text("--fps", options.fps, "RATE",
         "Frames a second: 25, 29.97, 30000/1001; a video's own or 24 otherwise");
    command
        .add_option("--zero-frame", options.zeroFrame,
                    "Number of the frame at time 0; the input's first one otherwise, 1 without input")
        ->type_name("NUMBER")
        ->group("Clips");
    text("--keys", options.keys, "FILE.json",
         R"(Values that move: {"Amount": {"0": 0, "1s": 100}}, times in frames or seconds)");
    command.add_flag("--resume", options.resume, "Go on with a run that was interrupted")->group("Clips");
    text("--shard", options.shard, "K/N",
         "Render every Nth frame, beginning with the Kth: one of N machines");
    text("--raw", options.raw, "WxH", "Size of the raw RGBA frames that --input - reads");
    text("--codec", options.codec, "NAME", "FFmpeg's encoder for the output; its ending decides otherwise");
    text("--pixel-format", options.pixelFormat, "NAME", "FFmpeg's pixel format for the output");
    text("--codec-options", options.codecOptions, "TEXT", "More arguments for the encoder: \"-crf 12\"");
    command.add_flag("--quiet", options.quiet, "No progress")->group("Clips");
}

} // namespace fxhost
