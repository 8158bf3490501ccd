#include "tests/clips/VideoFixture.h"

#include <algorithm>
#include <sstream>

#include "clips/FrameRate.h"

void VideoFixture::makeVideo(const std::string& name, int frames, const std::string& rate,
                             const std::string& more) {
    const std::string seconds = std::to_string(fxhost::FrameRate::Parse(rate).timeOf(frames));
    shell("ffmpeg -v error -y -f lavfi -i testsrc2=size=64x48:duration=" + seconds + ":rate=" + rate +
          " -f lavfi -i sine=frequency=440:duration=" + seconds + " " + more + " " + at(name));
}

std::string VideoFixture::probe(const std::string& what, const std::string& name) const {
    const std::string text =
        shell("ffprobe -v error -select_streams v:0 -count_frames -show_entries stream=" + what +
              " -of default=nk=1:nw=1 " + at(name));
    return text.substr(0, text.find_last_not_of('\n') + 1);
}

std::vector<double> VideoFixture::packetTimes(const std::string& stream, const std::string& name) const {
    std::istringstream lines(shell("ffprobe -v error -select_streams " + stream +
                                   " -show_entries packet=pts_time -of csv=p=0 " + at(name)));
    std::vector<double> times;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) // Side data adds empty lines.
            times.push_back(std::stod(line));
    std::sort(times.begin(), times.end());
    return times;
}

std::string VideoFixture::soundHash(const std::string& name) const {
    return shell("ffmpeg -v error -i " + at(name) + " -map 0:a -c copy -f md5 -");
}
