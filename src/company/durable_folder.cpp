#include "company/durable_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brimley::company {

void sync_folder(const std::filesystem::path& folder) {
    const std::filesystem::path place = folder.empty() ? "." : folder;
    const int handle = ::open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;  // one may write into a folder that one may not read
    const int failure = ::fsync(handle) == 0 ? 0 : errno;
    ::close(handle);
    if (failure == EIO || failure == ENOSPC || failure == EDQUOT)
        throw std::system_error(failure, std::generic_category(), place.string());
}

}  // namespace brimley::company
