// Where the data files of the product lie.
#pragma once

#include <filesystem>

namespace brimley::company {

// The folder of the sample company's CSV files. Looked for in the folder that the environment variable
// BRIMLEY_DATA names, then in `data` two levels above the running program's folder, then in `share/brimley`
// beside it, then where it was built. Throws std::runtime_error when it is in none of them.
[[nodiscard]] std::filesystem::path sample_company_folder();

}  // namespace brimley::company
