// fuzz-TARGET: the files of a corpus, then inputs made from them at random.
//
//   fuzz-TARGET CORPUS [--runs N] [--seed N]
//
// The same seed gives the same inputs. The input that is being tried stands in fuzz-TARGET.input, so that it
// is there after a crash; add it to the corpus when its fault is mended.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

#include "fuzz.h"
#include "support/program_options.h"

namespace {

using namespace brimley::testing;

constexpr std::size_t kLongest = 4096;

std::string content_of(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> corpus_in(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<std::string> inputs;
    for (const auto& path : paths)
        inputs.push_back(content_of(path));
    return inputs;
}

class Mutator {
  public:
    Mutator(const std::vector<std::string>& corpus, std::uint64_t seed) : corpus_(corpus), chance_(seed) {}

    std::string next() {
        std::string input = corpus_[below(corpus_.size())];
        for (std::size_t changes = 1 + below(6); changes > 0; --changes)
            change(input);
        if (input.size() > kLongest) input.resize(kLongest);
        return input;
    }

  private:
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(chance_() % count); }
    void change(std::string& input) {
        const std::size_t at = below(input.size() + 1);
        switch (below(6)) {
            case 0:  // another byte
                if (at < input.size()) input[at] = static_cast<char>(below(256));
                break;
            case 1:
                input.insert(at, 1, static_cast<char>(below(256)));
                break;
            case 2:
                input.erase(at, 1 + below(8));
                break;
            case 3:
                input.insert(at, fuzz_words()[below(fuzz_words().size())]);
                break;
            case 4:  // a part of another input
            {
                const std::string& other = corpus_[below(corpus_.size())];
                const std::size_t from = below(other.size() + 1);
                input.insert(at, other, from, below(64));
                break;
            }
            default:  // a part once more
                input.insert(at, input, below(input.size() + 1), below(16));
        }
    }

    const std::vector<std::string>& corpus_;
    std::mt19937_64 chance_;
};

int run(const std::string& target, const std::string& folder, int runs, std::uint64_t seed) {
    const auto corpus = corpus_in(folder);
    if (corpus.empty()) throw std::runtime_error("no inputs in " + folder);
    std::cout << "seed " << seed << std::endl;
    Mutator mutator(corpus, seed);
    const std::size_t inputs = corpus.size() + static_cast<std::size_t>(runs);
    for (std::size_t i = 0; i < inputs; ++i) {
        const std::string input = i < corpus.size() ? corpus[i] : mutator.next();
        const std::string kept = target + ".input";
        std::ofstream(kept, std::ios::binary) << input;
        try {
            fuzz_one(input);
        } catch (const std::exception& failure) {
            std::cout << "input " << i + 1 << ", kept in " << kept << ": " << failure.what() << '\n';
            return 1;
        }
        std::filesystem::remove(kept);
    }
    std::cout << corpus.size() << " inputs of the corpus, " << runs << " made from them\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string target = std::filesystem::path(argv[0]).filename();
    std::string folder;
    int runs = 0;
    std::uint64_t seed = 20261121;
    ProgramOptions program(target, "Tries inputs on one target");
    program.required("corpus", folder, "folder of inputs");
    program.option("--runs", runs, "inputs besides the corpus");
    program.option("--seed", seed, "which inputs");
    return program.run(argc, argv, [&] { return run(target, folder, runs, seed); });
}
