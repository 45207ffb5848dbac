#include "recorded_disk.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace brimley::testing {

namespace {

constexpr std::size_t kSector = 512;

RecordedDisk* recorder = nullptr;
sqlite3_vfs* real_vfs = nullptr;

// SQLite hands out room for this much and what the real file needs after it.
struct RecordedFile : sqlite3_file {
    const char* path;
    sqlite3_file* real;
};

RecordedFile& recorded(sqlite3_file* file) { return *static_cast<RecordedFile*>(file); }
sqlite3_file* real(sqlite3_file* file) { return recorded(file).real; }

int close_file(sqlite3_file* file) { return real(file)->pMethods->xClose(real(file)); }
int read_file(sqlite3_file* file, void* into, int bytes, sqlite3_int64 at) {
    return real(file)->pMethods->xRead(real(file), into, bytes, at);
}
int write_file(sqlite3_file* file, const void* from, int bytes, sqlite3_int64 at) {
    recorder->record(RecordedDisk::Kind::write, recorded(file).path, at,
                     std::string(static_cast<const char*>(from), static_cast<std::size_t>(bytes)));
    return real(file)->pMethods->xWrite(real(file), from, bytes, at);
}
int truncate_file(sqlite3_file* file, sqlite3_int64 size) {
    recorder->record(RecordedDisk::Kind::truncate, recorded(file).path, size);
    return real(file)->pMethods->xTruncate(real(file), size);
}
int sync_file(sqlite3_file* file, int flags) {
    recorder->record(RecordedDisk::Kind::sync, recorded(file).path);
    return real(file)->pMethods->xSync(real(file), flags);
}
int size_of_file(sqlite3_file* file, sqlite3_int64* size) {
    return real(file)->pMethods->xFileSize(real(file), size);
}
int lock_file(sqlite3_file* file, int level) { return real(file)->pMethods->xLock(real(file), level); }
int unlock_file(sqlite3_file* file, int level) { return real(file)->pMethods->xUnlock(real(file), level); }
int is_reserved(sqlite3_file* file, int* answer) {
    return real(file)->pMethods->xCheckReservedLock(real(file), answer);
}
int control_file(sqlite3_file* file, int what, void* argument) {
    return real(file)->pMethods->xFileControl(real(file), what, argument);
}
// A disk that promises nothing: what is written together does not arrive together.
int sector_size(sqlite3_file*) { return kSector; }
int characteristics(sqlite3_file*) { return 0; }
int map_memory(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    return real(file)->pMethods->xShmMap(real(file), page, size, extend, memory);
}
int lock_memory(sqlite3_file* file, int at, int count, int flags) {
    return real(file)->pMethods->xShmLock(real(file), at, count, flags);
}
void order_memory(sqlite3_file* file) { real(file)->pMethods->xShmBarrier(real(file)); }
int unmap_memory(sqlite3_file* file, int remove) {
    return real(file)->pMethods->xShmUnmap(real(file), remove);
}

constexpr sqlite3_io_methods kMethods{
    2,           close_file,   read_file,    write_file,   truncate_file, sync_file,       size_of_file,
    lock_file,   unlock_file,  is_reserved,  control_file, sector_size,   characteristics, map_memory,
    lock_memory, order_memory, unmap_memory, nullptr,      nullptr};

int open_file(sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* out_flags) {
    RecordedFile& opened = recorded(file);
    opened.path = path ? path : "";
    opened.real = static_cast<sqlite3_file*>(static_cast<void*>(&opened + 1));
    const int code = real_vfs->xOpen(real_vfs, path, opened.real, flags, out_flags);
    opened.pMethods = opened.real->pMethods ? &kMethods : nullptr;
    return code;
}

int remove_file(sqlite3_vfs*, const char* path, int sync_folder) {
    recorder->record(RecordedDisk::Kind::remove, path);
    return real_vfs->xDelete(real_vfs, path, sync_folder);
}

sqlite3_vfs recorded_vfs() {
    sqlite3_vfs vfs = *real_vfs;
    vfs.zName = "recorded";
    vfs.szOsFile = static_cast<int>(sizeof(RecordedFile)) + real_vfs->szOsFile;
    vfs.pNext = nullptr;
    vfs.xOpen = open_file;
    vfs.xDelete = remove_file;
    return vfs;
}

sqlite3_vfs& vfs() {
    static sqlite3_vfs made = recorded_vfs();
    return made;
}

}  // namespace

RecordedDisk::RecordedDisk(std::string folder) : folder_(std::move(folder) + "/") {
    if (recorder) throw std::logic_error("another disk is recorded");
    recorder = this;
    if (!real_vfs) real_vfs = sqlite3_vfs_find(nullptr);
    sqlite3_vfs_register(&vfs(), 1);
}

RecordedDisk::~RecordedDisk() {
    sqlite3_vfs_register(real_vfs, 1);
    recorder = nullptr;
}

void RecordedDisk::begin_with(const std::string& name, std::string contents) {
    at_first_[name] = std::move(contents);
}

void RecordedDisk::record(Kind kind, const std::string& path, std::int64_t at, std::string bytes) {
    if (!path.starts_with(folder_)) return;
    calls_.push_back({kind, path.substr(folder_.size()), at, std::move(bytes)});
}

void RecordedDisk::apply(std::string& contents, const Call& call) {
    const auto at = static_cast<std::size_t>(call.at);
    if (call.kind == Kind::truncate) return contents.resize(at);
    contents.resize(std::max(contents.size(), at + call.bytes.size()));
    contents.replace(at, call.bytes.size(), call.bytes);
}

void RecordedDisk::apply_some(std::string& contents, const Call& call, std::mt19937_64& chance) {
    if (call.kind == Kind::truncate) {
        if (chance() % 2 == 0) apply(contents, call);
        return;
    }
    for (std::size_t from = 0; from < call.bytes.size(); from += kSector)
        if (chance() % 2 == 0)
            apply(
                contents,
                {call.kind, {}, call.at + static_cast<std::int64_t>(from), call.bytes.substr(from, kSector)});
}

void RecordedDisk::keep(File& file) {
    for (const Call* const call : file.pending)
        apply(file.durable, *call);
    file.pending.clear();
    file.durable_name = true;
}

void RecordedDisk::leave(std::size_t calls, std::mt19937_64& chance, const std::string& folder) const {
    std::map<std::string, File> files;
    for (const auto& [name, contents] : at_first_)
        files[name] = {true, false, contents, {}};
    for (std::size_t i = 0; i < calls; ++i) {
        const Call& call = calls_[i];
        File& file = files[call.name];
        if (call.kind == Kind::remove) {
            file.removed = true;
            continue;
        }
        if (file.removed) file = {};  // made anew
        if (call.kind == Kind::sync) {
            if (!forgets_) keep(file);
        } else {
            file.pending.push_back(&call);
        }
    }
    for (auto& [name, file] : files) {
        if ((file.removed || !file.durable_name) && chance() % 2 == 0) continue;
        for (const Call* const call : file.pending)
            apply_some(file.durable, *call, chance);
        std::ofstream(folder + "/" + name, std::ios::binary) << file.durable;
    }
}

}  // namespace brimley::testing
