#include "clips/FailedPicture.h"

#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

fs::path FailedPath(const fs::path& path) {
    return path.parent_path() / (path.stem().string() + ".failed.png");
}

} // namespace

void KeepFailedPicture(const fs::path& path, const Picture& picture) {
    std::error_code ignored;
    fs::remove(path, ignored);
    try {
        WritePicture(FailedPath(path).string(), picture);
    } catch (const EffectFailure&) { // The error of the effect is reported already.
    }
}

void RemoveFailedPicture(const fs::path& path) {
    std::error_code ignored;
    fs::remove(FailedPath(path), ignored);
}

} // namespace fxhost
