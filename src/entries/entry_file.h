// Where entries are kept: a folder of the user's own, a file for each entry that stands open somewhere or was
// left.
//
// The program that writes a file holds it locked, so that another one does not take the entry for one that
// was left.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "entries/entry.h"

namespace brimley::entries {

class EntryFile {
  public:
    // Makes the folder if need be. Throws std::system_error, as append() and sync() do.
    explicit EntryFile(const std::filesystem::path& folder);
    ~EntryFile();  // leaves the file where it is
    EntryFile(const EntryFile&) = delete;
    EntryFile& operator=(const EntryFile&) = delete;

    // What was appended is kept when the program is killed.
    void append(std::string_view lines);
    // All of it is on the disk when it returns, and outlasts a power failure.
    void sync();
    void remove();
    [[nodiscard]] std::string name() const { return path_.filename().string(); }

  private:
    std::filesystem::path path_;
    int handle_ = -1;
};

// An entry that nobody has open, newest first.
struct KeptEntry {
    std::filesystem::path path;
    Entry entry;
    std::string text{};  // of the file
};

// Those of this company, user and form; with an empty form, of every one. A file that is no entry is passed
// over; one in which nothing was entered, or that was being taken up from another that is still there, is
// removed.
[[nodiscard]] std::vector<KeptEntry> kept_entries(const std::filesystem::path& folder,
                                                  const std::string& company, const std::string& user,
                                                  const std::string& form);
// Holds a kept entry while it is being taken up: no other window and no other program does so meanwhile.
class EntryClaim {
  public:
    explicit EntryClaim(const std::filesystem::path& path);
    // Only if the same entry is still there: names are used again.
    explicit EntryClaim(const KeptEntry& kept);
    ~EntryClaim();
    EntryClaim(const EntryClaim&) = delete;
    EntryClaim& operator=(const EntryClaim&) = delete;
    // Whether it is still there and nobody else has it.
    [[nodiscard]] bool is_held() const { return handle_ >= 0; }

  private:
    void give_back();

    int handle_ = -1;
};

// Nothing happens when it is not there any more.
void remove_entry(const std::filesystem::path& path);

}  // namespace brimley::entries
