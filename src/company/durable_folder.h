// Names that outlast a power failure.
#pragma once

#include <filesystem>

namespace brimley::company {

// What was made in this folder, moved there or removed is on the disk when it returns. File systems that
// cannot promise this are taken as they are. Throws std::system_error when the disk fails.
void sync_folder(const std::filesystem::path& folder);

}  // namespace brimley::company
