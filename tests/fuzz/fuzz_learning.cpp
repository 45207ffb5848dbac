// fuzz-TARGET with libFuzzer, which keeps the inputs that reach something new and makes the next from them:
//
//   fuzz-TARGET [OPTION...] FOLDER_FOR_NEW_INPUTS CORPUS
//
// The words that the target knows are libFuzzer's dictionary. What the target throws ends the run, and
// libFuzzer keeps the input in crash-....
#include <fmt/format.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "fuzz.h"
#include "support/temporary_folder.h"

namespace {

using namespace brimley::testing;

// One word a line, each byte as its number.
void write_words(const std::string& path) {
    std::ofstream words(path);
    for (const std::string& word : fuzz_words()) {
        words << '"';
        for (const char byte : word)
            words << fmt::format("\\x{:02X}", static_cast<unsigned char>(byte));
        words << "\"\n";
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

// libFuzzer reads its options when this has returned.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const TemporaryFolder folder;
    static std::string dictionary = "-dict=" + folder.file("words");
    static std::vector<char*> options(*argv, *argv + *argc);
    write_words(folder.file("words"));
    options.insert(options.begin() + 1, dictionary.data());
    *argc = static_cast<int>(options.size());
    options.push_back(nullptr);
    *argv = options.data();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        fuzz_one({reinterpret_cast<const char*>(bytes), size});
    } catch (const std::exception& failure) {
        std::cerr << "finding: " << failure.what() << '\n';
        std::abort();
    }
    return 0;
}
