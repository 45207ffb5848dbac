// Where the data files of the product lie.
#pragma once

#include <filesystem>
#include <string>

namespace brimley::company {

// A folder of CSV files: "sample_company", or "half_year", which the build makes of it. It lies in the folder
// that the environment variable BRIMLEY_DATA names; without one in `share/brimley` beside the running
// program's folder, where the build and an installation put it. Throws std::runtime_error when it does not.
[[nodiscard]] std::filesystem::path data_folder(const std::string& name);

}  // namespace brimley::company
