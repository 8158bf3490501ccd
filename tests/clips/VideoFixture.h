#pragma once

#include <string>

#include "tests/clips/ClipFixture.h"

// Makes and examines videos in the folder of the test, with the programs ffmpeg and ffprobe.
class VideoFixture : public ClipFixture {
protected:
    // A test pattern with a tone of the same length. `more`: arguments of the encoder.
    void makeVideo(const std::string& name, int frames, const std::string& rate, const std::string& more);
    // Entries of the video stream, one a line.
    std::string probe(const std::string& what, const std::string& name) const;
    // Presentation times of the packets of a stream ("v:0", "a:0") in seconds, ascending.
    std::vector<double> packetTimes(const std::string& stream, const std::string& name) const;
    // Hash of the encoded sound.
    std::string soundHash(const std::string& name) const;
};
