#include "company/output_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace brimley::company {

namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;
constexpr int kMode = 0666;  // less the caller's umask
constexpr int kPrivateMode = 0600;

std::filesystem::path draft_beside(const std::filesystem::path& place) {
    return place.parent_path() / fmt::format(".{}.{}.part", place.filename().string(), ::getpid());
}

}  // namespace

OutputFile::OutputFile(std::filesystem::path place, bool private_to_owner)
    : place_(std::move(place)), draft_(draft_beside(place_)) {
    handle_ = ::open(draft_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                     private_to_owner ? kPrivateMode : kMode);
    if (handle_ < 0) fail();
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : place_(std::move(other.place_)),
      draft_(std::exchange(other.draft_, {})),
      buffer_(std::move(other.buffer_)),
      handle_(std::exchange(other.handle_, -1)) {}

OutputFile::~OutputFile() {
    if (handle_ >= 0) ::close(handle_);
    if (!draft_.empty()) ::unlink(draft_.c_str());
}

void OutputFile::fail() const { throw std::system_error(errno, std::generic_category(), place_.string()); }

void OutputFile::write(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= kBufferBytes) flush();
}

void OutputFile::flush() {
    std::string_view rest = buffer_;
    while (!rest.empty()) {
        const ssize_t written = ::write(handle_, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail();
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    buffer_.clear();
}

void OutputFile::finish() {
    flush();
    if (::fdatasync(handle_) != 0) fail();
    if (::close(std::exchange(handle_, -1)) != 0) fail();
}

void OutputFile::publish() {
    if (::rename(draft_.c_str(), place_.c_str()) != 0) fail();
    draft_.clear();
}

}  // namespace brimley::company
