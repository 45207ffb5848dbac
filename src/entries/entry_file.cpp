#include "entries/entry_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

namespace brimley::entries {

namespace {

constexpr const char* kExtension = ".entry";
constexpr int kTriesMax = 10000;  // names

[[noreturn]] void fail(const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), path.string());
}

// The name outlasts a power failure, where the file system can promise that.
void sync_folder(const std::filesystem::path& folder) {
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    static_cast<void>(::fsync(handle));
    ::close(handle);
}

std::optional<std::string> text_of(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

EntryFile::EntryFile(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    for (int number = 1; handle_ < 0 && number < kTriesMax; ++number) {
        path_ = folder / fmt::format("{}{}", number, kExtension);
        handle_ =
            ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (handle_ < 0 && errno != EEXIST) fail(path_);
    }
    if (handle_ < 0) fail(path_);
    static_cast<void>(::flock(handle_, LOCK_EX | LOCK_NB));
    sync_folder(folder);
}

EntryFile::~EntryFile() { ::close(handle_); }

void EntryFile::append(std::string_view lines) {
    while (!lines.empty()) {
        const ssize_t written = ::write(handle_, lines.data(), lines.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(path_);
        lines.remove_prefix(static_cast<std::size_t>(written));
    }
}

void EntryFile::sync() {
    if (::fdatasync(handle_) != 0 && errno != EINVAL && errno != ENOSYS) fail(path_);
}

EntryClaim::EntryClaim(const std::filesystem::path& path)
    : handle_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (handle_ < 0 || ::flock(handle_, LOCK_EX | LOCK_NB) == 0) return;
    give_back();
}

EntryClaim::EntryClaim(const KeptEntry& kept) : EntryClaim(kept.path) {
    if (is_held() && text_of(kept.path) != kept.text) give_back();
}

EntryClaim::~EntryClaim() { give_back(); }

void EntryClaim::give_back() {
    if (handle_ >= 0) ::close(handle_);
    handle_ = -1;
}

void EntryFile::remove() { remove_entry(path_); }

std::vector<KeptEntry> kept_entries(const std::filesystem::path& folder, const std::string& company,
                                    const std::string& user, const std::string& form) {
    std::vector<KeptEntry> kept;
    std::error_code none;
    for (const auto& file : std::filesystem::directory_iterator(folder, none)) {
        if (file.path().extension() != kExtension || !EntryClaim(file.path()).is_held()) continue;
        auto text = text_of(file.path());
        auto entry = text ? read_entry(*text) : std::nullopt;
        if (!entry || entry->head.company != company || entry->head.user != user) continue;
        if (!form.empty() && entry->head.form != form) continue;
        kept.push_back({file.path(), std::move(*entry), std::move(*text)});
    }
    std::erase_if(kept, [&](const KeptEntry& each) {
        const bool being_taken =
            !each.entry.taken_from.empty() && std::filesystem::exists(folder / each.entry.taken_from);
        if (!being_taken && holds_anything(each.entry)) return false;
        remove_entry(each.path);
        return true;
    });
    std::ranges::stable_sort(kept, std::ranges::greater(),
                             [](const KeptEntry& each) { return each.entry.head.begun; });
    return kept;
}

void remove_entry(const std::filesystem::path& path) {
    std::error_code none;
    std::filesystem::remove(path, none);
}

}  // namespace brimley::entries
