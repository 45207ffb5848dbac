#include "kernel/store/sqlite/sqlite_place.h"

#include <fmt/format.h>
#include <mntent.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "kernel/store/error.h"

namespace brimley::store {

namespace {

// Not all of them stand in the system's header.
constexpr std::array<std::pair<long, std::string_view>, 9> kNetworkKinds{{
    {0x6969, "NFS"},
    {0x517B, "SMB"},
    {0xFF534D42, "CIFS"},
    {0xFE534D42, "SMB"},
    {0x5346414F, "AFS"},
    {0x73757245, "Coda"},
    {0x01021997, "9P"},
    {0x00C36400, "Ceph"},
    {0x0BD00BD0, "Lustre"},
}};
constexpr long kFuse = 0x65735546;
constexpr std::array<std::string_view, 9> kNetworkPrograms{"fuse.sshfs", "fuse.glusterfs",  "fuse.rclone",
                                                           "fuse.s3fs",  "fuse.davfs",      "fuse.curlftpfs",
                                                           "fuse.ceph",  "fuse.gvfsd-fuse", "fuse.mfs"};

[[noreturn]] void refuse_place(const std::string& path, std::string_view why) {
    throw Error(ErrorKind::not_a_company, fmt::format("{} {}", path, why));
}

struct stat status_of(const std::string& path) {
    struct stat status {};
    if (path.find('\0') != std::string::npos || path.empty())
        refuse_place('"' + path + '"', "is no file name");
    if (::stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) refuse_place(path, "does not exist");
        refuse_place(path, fmt::format("cannot be opened: {}", std::strerror(errno)));
    }
    return status;
}

// What the file system of this device was mounted as; empty when the table of mounts cannot say.
std::string mounted_as(dev_t device) {
    const std::unique_ptr<std::FILE, decltype(&::endmntent)> mounts(::setmntent("/proc/self/mounts", "r"),
                                                                    &::endmntent);
    if (!mounts) return {};
    while (const mntent* const mount = ::getmntent(mounts.get())) {
        struct stat status {};
        if (std::string_view(mount->mnt_type).starts_with("fuse.") && ::stat(mount->mnt_dir, &status) == 0 &&
            status.st_dev == device)
            return mount->mnt_type;
    }
    return {};
}

}  // namespace

std::string_view network_file_system(long kind, std::string_view mounted_as) {
    const auto* const known = std::find_if(kNetworkKinds.begin(), kNetworkKinds.end(),
                                           [&](const auto& entry) { return entry.first == kind; });
    if (known != kNetworkKinds.end()) return known->second;
    const auto* const program = std::find(kNetworkPrograms.begin(), kNetworkPrograms.end(), mounted_as);
    return kind == kFuse && program != kNetworkPrograms.end() ? *program : std::string_view();
}

void require_place_of_company(const std::string& path) {
    const struct stat status = status_of(path);
    if (S_ISDIR(status.st_mode)) refuse_place(path, "is a folder, not a company file");
    if (!S_ISREG(status.st_mode)) refuse_place(path, "is not a company file");
    if (::access(path.c_str(), R_OK) != 0)
        refuse_place(path, fmt::format("cannot be read: {}", std::strerror(errno)));
    if (status.st_nlink > 1)
        refuse_place(path,
                     fmt::format("has {} names (hard links), and its log would lie beside one of them alone; "
                                 "remove the others",
                                 status.st_nlink));
    struct statfs place {};
    if (::statfs(path.c_str(), &place) != 0) return;
    const std::string served_as = place.f_type == kFuse ? mounted_as(status.st_dev) : std::string();
    const std::string_view network = network_file_system(place.f_type, served_as);
    if (!network.empty())
        refuse_place(path,
                     fmt::format("is on a network ({}), where the locks of other machines are not seen; keep "
                                 "it on a disk of this machine, or the company on a server",
                                 network));
}

}  // namespace brimley::store
