// Where the data files of the product lie.
#pragma once

#include <filesystem>
#include <string>

namespace brimley::company {

// A folder of CSV files: "sample_company", or "half_year", which the build makes of it. Looked for in the
// folder that the environment variable BRIMLEY_DATA names, then in `data` two levels above the running
// program's folder, then in `share/brimley` beside it, then where it was built. Throws std::runtime_error
// when it is in none of them.
[[nodiscard]] std::filesystem::path data_folder(const std::string& name);

}  // namespace brimley::company
