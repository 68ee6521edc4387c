// Replays the files of corpus directories through a fuzz harness, so the
// harnesses run as ordinary tests without a fuzzing compiler. A failing input
// aborts the process, and the test fails.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

int main(int argc, char* argv[])
{
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (fs::is_directory(argv[i], error)) {
            for (const auto& item : fs::directory_iterator(argv[i]))
                if (item.is_regular_file())
                    inputs.push_back(item.path());
        } else if (fs::is_regular_file(argv[i], error)) {
            inputs.emplace_back(argv[i]);
        } else {
            std::fprintf(stderr, "replay: %s: no such file or directory\n", argv[i]);
            return 1;
        }
    }
    if (inputs.empty()) {
        std::fprintf(stderr, "usage: replay CORPUS-DIR-OR-FILE...\n");
        return 1;
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs) {
        std::ifstream file(input, std::ios::binary);
        const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(file)),
                                         std::istreambuf_iterator<char>());
        std::printf("%s\n", input.filename().c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return 0;
}
