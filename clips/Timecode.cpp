#include "clips/Timecode.h"

#include <cmath>
#include <cstdio>

namespace fxhost {

// Drop-frame timecode leaves out the first numbers of each minute that is not a multiple of ten: two at 29.97
// frames per second, four at 59.94.
std::string TimecodeLater(const std::string& timecode, long frames, const FrameRate& rate) {
    long hours = 0, minutes = 0, seconds = 0, frame = 0;
    char separator = 0;
    if (std::sscanf(timecode.c_str(), "%ld:%ld:%ld%c%ld", &hours, &minutes, &seconds, &separator, &frame) !=
        5)
        return timecode;
    const long nominal = std::lround(rate.perSecond());
    const long dropped = separator == ';' ? nominal / 15 : 0;
    const long perMinute = nominal * 60 - dropped, perTen = perMinute * 10 + dropped;
    const long allMinutes = hours * 60 + minutes;
    long count =
        (allMinutes * 60 + seconds) * nominal + frame - dropped * (allMinutes - allMinutes / 10) + frames;
    count %= perTen * 6 * 24;
    const long rest = count % perTen;
    count += dropped * 9 * (count / perTen);
    if (rest > dropped)
        count += dropped * ((rest - dropped) / perMinute);
    char text[64];
    std::snprintf(text, sizeof text, "%02ld:%02ld:%02ld%c%02ld", count / (nominal * 3600),
                  count / (nominal * 60) % 60, count / nominal % 60, separator, count % nominal);
    return text;
}

} // namespace fxhost
