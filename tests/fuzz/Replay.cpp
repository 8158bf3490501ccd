// The main program of the fuzz targets in ordinary builds: runs the target with each file of the given
// folders.
//
//   TARGET FOLDER...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int count, char** arguments) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& path : files) {
        std::fprintf(stderr, "%s\n", path.c_str()); // the last line names the input that crashed
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", files.size());
    return files.empty() ? 1 : 0;
}
