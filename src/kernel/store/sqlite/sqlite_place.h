// Where a company file may lie: what the file system must be able to do for several programs to share it.
#pragma once

#include <string>
#include <string_view>

namespace brimley::store {

// Throws not_a_company for what is no file that can be read, for a file with several names (its log lies
// beside one of them, and who came by another would not see it), and for a file on a network, where two
// machines do not see each other's locks.
void require_place_of_company(const std::string& path);

// The name of a file system that is on another machine, by the number that statfs() gives for its kind, or of
// one that is served by a program (FUSE) by the type that the table of mounts shows; empty for all others.
[[nodiscard]] std::string_view network_file_system(long kind, std::string_view mounted_as);

}  // namespace brimley::store
