#include "tool/ClipFlags.h"

namespace fxhost {

void AddClipOptions(CLI::App& command, ClipOptions& options) {
    const auto text = [&](const char* name, std::string& value, const char* type, const char* help) {
        command.add_option(name, value, help)->type_name(type)->group("Clips");
    };
    text("--frames", options.frames, "LIST",
         "Frames to render: 1-240, 1-240x2, 1,3,5-; all frames of the input by default. Videos begin with "
         "frame 1");
    text("--fps", options.fps, "RATE",
         "Frames per second: 25, 29.97, 30000/1001; the rate of the input video, or 24, by default");
    command
        .add_option("--zero-frame", options.zeroFrame,
                    "Number of the frame at time 0; the first frame of the input, or 1, by default")
        ->type_name("NUMBER")
        ->group("Clips");
    static const std::map<std::string, MissingFrames> s_Missing = {{"error", MissingFrames::Error},
                                                                   {"hold", MissingFrames::Hold},
                                                                   {"black", MissingFrames::Black},
                                                                   {"skip", MissingFrames::Skip}};
    command
        .add_option(
            "--missing", options.missing,
            "What happens to missing numbered pictures: an error, the frame before, black, or left out")
        ->transform(CLI::CheckedTransformer(s_Missing))
        ->type_name("error|hold|black|skip")
        ->group("Clips");
    static const std::map<std::string, Interlacing> interlacing = {{"refuse", Interlacing::Refuse},
                                                                   {"deinterlace", Interlacing::Deinterlace},
                                                                   {"keep", Interlacing::Keep}};
    command
        .add_option("--interlaced", options.interlacing,
                    "What happens to interlaced video: an error, whole frames, or frames with both fields")
        ->transform(CLI::CheckedTransformer(interlacing))
        ->type_name("refuse|deinterlace|keep")
        ->group("Clips");
    text("--keys", options.keys, "FILE.json",
         R"(Keyframes: {"Amount": {"0": 0, "1s": 100}}, times in frames or seconds)");
    command.add_flag("--resume", options.resume, "Continue a run that was interrupted")->group("Clips");
    text("--shard", options.shard, "K/N",
         "Render every Nth frame beginning with the Kth, to distribute a clip over N machines");
    text("--raw", options.raw, "WxH", "Size of the raw RGBA frames that --input - reads");
    text("--audio", options.audio, "FILE",
         "Sound for the output video, which begins at time 0, in place of that of the input");
    command
        .add_flag(
            "--allow-truncated", options.allowTruncated,
            "Render the frames of a damaged video that can be read, and end without an error after them")
        ->group("Clips");
    text("--codec", options.codec, "NAME",
         "FFmpeg encoder for the output; chosen by its extension by default");
    text("--pixel-format", options.pixelFormat, "NAME", "FFmpeg pixel format for the output");
    text("--codec-options", options.codecOptions, "TEXT", "Further arguments for the encoder: \"-crf 12\"");
    command
        .add_flag("--dry-run", options.dryRun,
                  "Render one frame and check everything that a run needs, but write nothing")
        ->group("Clips");
    CLI::Option* const replace = command
                                     .add_flag_callback(
                                         "-y", [] {}, "Replace existing output files, which is the default")
                                     ->group("Clips");
    command.add_flag("-n", options.keepExisting, "Do not replace existing output files; end with an error")
        ->excludes(replace)
        ->group("Clips");
    command.add_flag("--quiet", options.quiet,
                     "Print errors only: no warnings, no printed text, no progress");
}

} // namespace fxhost
