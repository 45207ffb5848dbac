// A disk whose writes are recorded, and what could be left of its files after a power cut at any of them.
//
// What a program has written is on the disk for certain only once it has asked for that (fsync). Until then
// each sector of 512 bytes may be there or not, in any order; so may a file that was made or removed, and the
// length that writing gave to it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace brimley::testing {

class RecordedDisk {
  public:
    // From now on the files that SQLite opens in this folder are recorded: what it writes, cuts off, syncs
    // and removes. One disk at a time in a process, and before the first file is opened. What is shared in
    // memory (-shm) does not outlast the machine and is left out.
    explicit RecordedDisk(std::string folder);
    ~RecordedDisk();
    RecordedDisk(const RecordedDisk&) = delete;
    RecordedDisk& operator=(const RecordedDisk&) = delete;

    // A file as it is now, on the disk for certain.
    void begin_with(const std::string& name, std::string contents);
    // A disk that only says that it has kept what it was asked to keep.
    void forget_syncs() { forgets_ = true; }
    // How many calls were recorded so far.
    [[nodiscard]] std::size_t calls() const { return calls_.size(); }
    // Makes in the folder what could be left when the power was cut after the first `calls` of them.
    void leave(std::size_t calls, std::mt19937_64& chance, const std::string& folder) const;

    enum class Kind { write, truncate, sync, remove };
    void record(Kind kind, const std::string& path, std::int64_t at = 0, std::string bytes = {});

  private:
    struct Call {
        Kind kind;
        std::string name;
        std::int64_t at;
        std::string bytes;
    };
    struct File {
        bool durable_name = false;
        bool removed = false;
        std::string durable;
        std::vector<const Call*> pending;
    };

    static void keep(File& file);
    static void apply(std::string& contents, const Call& call);
    static void apply_some(std::string& contents, const Call& call, std::mt19937_64& chance);

    std::string folder_;
    std::map<std::string, std::string> at_first_;
    std::vector<Call> calls_;
    bool forgets_ = false;
};

}  // namespace brimley::testing
