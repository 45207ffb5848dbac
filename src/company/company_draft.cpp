#include "company/company_draft.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "company/durable_folder.h"
#include "kernel/store/error.h"

namespace brimley::company {

namespace {

using store::Error;
using store::ErrorKind;

[[noreturn]] void refuse_existing(const std::string& company) {
    throw Error(ErrorKind::state, company + " already exists");
}

const std::string& free_place(const std::string& company) {
    struct stat status {};
    if (::lstat(company.c_str(), &status) == 0) refuse_existing(company);
    return company;
}

[[noreturn]] void fail(const std::string& company, int reason) {
    throw Error(ErrorKind::io, fmt::format("{} cannot be made: {}", company, std::strerror(reason)), reason);
}

void remove_logs(const std::string& file) {
    for (const char* const suffix : {"-wal", "-shm", "-journal"})
        ::unlink((file + suffix).c_str());
}

// Never over a file that is there. Not every file system can rename in this way, and not every one can link.
bool move_to_free_place(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return ::link(from.c_str(), to.c_str()) == 0;
}

}  // namespace

DraftFolder::DraftFolder(const std::string& company) {
    const std::filesystem::path place(company);
    folder_ = (place.parent_path() / ("." + place.filename().string() + ".part")).string();
    lock_file_ = folder_ + "/lock";
    file_ = folder_ + "/company";
    while (!try_hold(company)) {
    }
    ::unlink(file_.c_str());
    remove_logs(file_);
}

DraftFolder::~DraftFolder() {
    ::unlink(file_.c_str());
    remove_logs(file_);
    ::unlink(lock_file_.c_str());
    ::rmdir(folder_.c_str());
    ::close(lock_);
}

bool DraftFolder::try_hold(const std::string& company) {
    if (::mkdir(folder_.c_str(), S_IRWXU) != 0 && errno != EEXIST) fail(company, errno);
    const int lock = ::open(lock_file_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat status {};
    if (lock < 0) {
        const int reason = errno;
        if (reason == ENOENT && ::lstat(folder_.c_str(), &status) != 0) return false;
        ::rmdir(folder_.c_str());  // goes only when it is empty
        fail(company, reason);
    }
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        const int reason = errno;
        ::close(lock);
        if (reason != EWOULDBLOCK) fail(company, reason);
        throw Error(ErrorKind::state, company + " is being made by another program");
    }
    if (::fstat(lock, &status) != 0 || status.st_nlink == 0) {
        ::close(lock);
        return false;
    }
    lock_ = lock;
    return true;
}

// Looks a second time, for what another program made before this one held the folder.
CompanyDraft::CompanyDraft(const std::string& company) : company_(free_place(company)), folder_(company) {
    remove_logs(free_place(company));
}

void CompanyDraft::make(const std::function<void(const std::string& file)>& make_file) {
    try {
        make_file(file());
    } catch (const Error& error) {
        std::string text = error.what();
        if (const auto at = text.find(file()); at != std::string::npos)
            text.replace(at, file().size(), company_);
        throw Error(error.kind(), text, error.native_code(), error.statement());
    }
}

void CompanyDraft::publish() {
    // A log that the last connection could not bring into the file holds what would be lost by the move.
    if (::access((file() + "-wal").c_str(), F_OK) == 0) {
        throw Error(ErrorKind::io, company_ + " cannot be written: the disk is full or cannot be written");
    }
    if (!move_to_free_place(file(), company_)) {
        if (errno == EEXIST) refuse_existing(company_);
        fail(company_, errno);
    }
    sync_folder(std::filesystem::path(company_).parent_path());
}

}  // namespace brimley::company
