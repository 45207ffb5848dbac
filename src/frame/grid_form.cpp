#include "frame/grid_form.h"

#include "frame/line_columns.h"
#include "frame/page_setup.h"
#include "presentation/grid_layout.h"

namespace brimley::frame {

void GridForm::build_grids() {
    using presentation::GridPlace;
    for (controls::Grid* grid : grids()) {
        const bool first = grid == &dbgrid1;
        presentation::build_grid(*grid, kernel(), layout_of(*grid), grid->name(),
                                 first ? GridPlace::first : GridPlace::further);
    }
    step("even row colour", [&] {
        const auto row =
            kernel().read("SELECT * FROM Recent_value_table WHERE control_name = 'evenrow_color'");
        paint_even_rows(!row.at_eof() && row.text("Value") == "1");
    });
}

void GridForm::show_page_setup(const std::string& report_form) {
    if (child() != nullptr) return;
    show_child(std::make_shared<Form_report_format>(context(), shared_kernel(), desk(), report_form));
}

void GridForm::clear_list() {
    dbgrid1.array.dimension(kRowsMin);
    dbgrid1.rebind();
}

void GridForm::save_grid() {
    for (const controls::Grid* grid : grids()) {
        step("save_grid",
             [&] { presentation::save_grid_layout(*grid, kernel(), identity().class_name, grid->name()); });
    }
}

void GridForm::show_even_row_color(bool flag) {
    step("show_even_row_color", [&] {
        auto row = kernel().change("SELECT * FROM Recent_value_table WHERE control_name = 'evenrow_color'");
        if (row.at_eof()) return;
        row.Edit();
        row.set("Value", flag ? "1" : "0");
        row.Update();
    });
    paint_even_rows(flag);
}

void GridForm::paint_even_rows(bool flag) {
    dbgrid1.even_row_colour = flag ? palette_[presentation::kEvenRowSlot] : controls::kWhite;
    dbgrid1.rebind();
}

}  // namespace brimley::frame
