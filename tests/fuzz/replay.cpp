// Runs a fuzz target on files and folders of inputs, without a fuzzer.
//
//   PROGRAM PATH...

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

void Run(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    std::fprintf(stderr, "%s (%zu bytes)\n", path.c_str(), bytes.size());
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        if (!fs::is_directory(argv[i])) {
            Run(argv[i]);
            ++runs;
            continue;
        }
        for (const fs::directory_entry& entry : fs::directory_iterator(argv[i])) {
            Run(entry.path());
            ++runs;
        }
    }
    std::fprintf(stderr, "%d inputs\n", runs);
    std::_Exit(runs > 0 ? EXIT_SUCCESS : EXIT_FAILURE);  // a target's threads still run
}
