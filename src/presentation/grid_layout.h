// Grid layouts as the company keeps them: one Grid_property row for each column of each grid of each form.
//
// The rows are made when a company is created; forms only read and edit them. They are shared by everyone who
// uses the company.
#pragma once

#include <string_view>

#include "controls/grid.h"
#include "kernel/module_g3.h"

namespace brimley::presentation {

// Whether the row height of Grid_property counts: it does for the first grid of a form, the others have the
// standard height.
enum class GridPlace { first, further };

inline constexpr int kStandardRowHeight = 370;

// Gives the grid its columns and their look from the rows of form and grid, in the order of col_order.
// Without rows the grid has no columns.
void build_grid(controls::Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                std::string_view grid_name, GridPlace place);

// Writes row height, column order and widths back. Failures are ignored: the user is leaving.
void save_grid_layout(const controls::Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                      std::string_view grid_name);

// Writes fonts, colours and alignment of the columns back.
void save_grid_fonts(const controls::Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                     std::string_view grid_name);

// Gives the columns the fonts, colours and alignment of their rows again, as build_grid did, and the grid its
// row height.
void restore_grid_fonts(controls::Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                        std::string_view grid_name);

// A stored row height below 200 or above 600, or none, is the standard one.
[[nodiscard]] int accepted_row_height(const store::Value& stored);

}  // namespace brimley::presentation
