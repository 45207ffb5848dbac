// A text file that appears whole or not at all.
//
// Written beside its place under another name, and put there by publish() when every byte is on the disk. A
// file that stood there before stays as it was until then.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brimley::company {

class OutputFile {
  public:
    // Throws std::system_error, as every call here does when the disk is full or refuses.
    // private_to_owner: nobody else may read it.
    explicit OutputFile(std::filesystem::path place, bool private_to_owner = false);
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&&) = delete;
    // Removes what was not published.
    ~OutputFile();

    void write(std::string_view text);
    // Everything written is on the disk; nothing may be written any more.
    void finish();
    // After finish().
    void publish();

  private:
    void flush();
    [[noreturn]] void fail() const;

    std::filesystem::path place_;
    std::filesystem::path draft_;  // empty once published
    std::string buffer_;
    int handle_ = -1;
};

}  // namespace brimley::company
