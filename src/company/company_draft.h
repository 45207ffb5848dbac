// A new company file that appears whole or not at all.
//
// It grows in a hidden folder beside its place, ".NAME.part", and publish() moves it there. The program that
// makes it holds a lock in that folder. A program that is killed leaves the folder and not the lock, and the
// next one that makes this company takes the folder over and clears it.
#pragma once

#include <functional>
#include <string>

namespace brimley::company {

// The hidden folder of one company, held by this program.
class DraftFolder {
  public:
    // Throws as CompanyDraft does.
    explicit DraftFolder(const std::string& company);
    DraftFolder(const DraftFolder&) = delete;
    DraftFolder& operator=(const DraftFolder&) = delete;
    // Removes the folder with what is in it.
    ~DraftFolder();

    [[nodiscard]] const std::string& file() const { return file_; }

  private:
    // False when the folder disappeared meanwhile: whoever held it was done.
    [[nodiscard]] bool try_hold(const std::string& company);

    std::string folder_;
    std::string lock_file_;
    std::string file_;
    int lock_ = -1;
};

class CompanyDraft {
  public:
    // `company` is the path of a file. Throws store::Error: state when something is there or another program
    // is making it, io when its folder does not take it. A log that a company of this name has left behind
    // is removed, because it would be read into the new one.
    explicit CompanyDraft(const std::string& company);

    // Runs what makes the company at the path that it is given. The user knows the company by its own path,
    // so that is what an error says.
    void make(const std::function<void(const std::string& file)>& make_file);
    // Where the company is made.
    [[nodiscard]] const std::string& file() const { return folder_.file(); }
    // Puts the company into its place; nobody may have it open any more. Throws store::Error: state when
    // something has come there meanwhile, which is left as it is; io when the disk refuses.
    void publish();

  private:
    std::string company_;
    DraftFolder folder_;
};

}  // namespace brimley::company
