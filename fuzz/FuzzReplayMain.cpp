// Runs a fuzz target's entry point over saved inputs, without libFuzzer: the
// regression tests of the default build replay what the fuzzers once found.
// Arguments are files, or folders whose files are all replayed. An input that
// takes longer than the fuzz runs allow is a finding too, as it is there.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

constexpr unsigned kSecondsPerInput = 10;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* _piArgc, char*** _pppArgv);

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
    std::vector<fs::path> vecInputs;
    for (int i = 1; i < argc; ++i) {
        if (!fs::is_directory(argv[i])) {
            vecInputs.emplace_back(argv[i]);
            continue;
        }
        for (const fs::directory_entry& entry : fs::directory_iterator(argv[i]))
            if (entry.is_regular_file()) vecInputs.push_back(entry.path());
    }
    std::sort(vecInputs.begin(), vecInputs.end());
    for (const fs::path& path : vecInputs) {
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "cannot read %s\n", path.c_str());
            return 1;
        }
        const std::vector<char> vecData((std::istreambuf_iterator<char>(in)),
                                        std::istreambuf_iterator<char>());
        std::printf("replaying %s (%zu bytes)\n", path.c_str(), vecData.size());
        std::fflush(stdout);
        alarm(kSecondsPerInput);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(vecData.data()),
                               vecData.size());
        alarm(0);
    }
    // Nothing replayed means a wrong folder, not a pass.
    std::printf("%zu inputs replayed\n", vecInputs.size());
    return vecInputs.empty() ? 1 : 0;
}
