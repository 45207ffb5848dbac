#include "frame/print_columns.h"

#include <fmt/format.h>

#include "frame/line_columns.h"

namespace brimley::frame {

namespace {

constexpr const char* kColumn = "column";
constexpr const char* kPrint = "print";

}  // namespace

PrintColumns::PrintColumns(Form& form, const controls::Grid& printed)
    : FormPart(form),
      Frame_printcol(form.controls(), "Frame_printcol", "Print Column"),
      grid_sel(form.controls(), "grid_sel"),
      printed_(printed) {
    grid_sel.lies_in(Frame_printcol);
    grid_sel.title = "PRINT COLUMNS";
    grid_sel.allow_update = true;
    grid_sel.array.dimension(kRowsMin);
    Frame_printcol.set_visible(false);
    Frame_printcol.on_close = [this] { save(); };
}

std::string PrintColumns::layout_query() const {
    return fmt::format(
        "SELECT * FROM Grid_property WHERE form_name = {} AND grid_name = {} ORDER BY col_order",
        store::quoted(identity().class_name), store::quoted(printed_.name()));
}

void PrintColumns::load_once() {
    if (loaded_) return;
    loaded_ = step("load grid_sel", [&] {
        const int column = grid_sel.get_column(kColumn);
        const int print = grid_sel.get_column(kPrint);
        auto layout = kernel().read(layout_query());
        grid_sel.array.dimension(rows_for(static_cast<int>(layout.RecordCount())));
        for (int row = 0; !layout.at_eof(); layout.MoveNext(), ++row) {
            grid_sel.array.set(row, column, layout.text("Caption"));
            grid_sel.array.set(row, print, layout.flag("Print") ? "True" : "False");
        }
        grid_sel.rebind();
    });
}

void PrintColumns::toggle() {
    if (Frame_printcol.visible()) {
        Frame_printcol.set_visible(false);
        save();
        return;
    }
    load_once();
    Frame_printcol.set_visible(true);
}

bool PrintColumns::is_ticked(int row) const {
    return controls::same_ignoring_case(grid_sel.cell(row, kPrint), "True");
}

std::vector<std::string> PrintColumns::ticked() {
    load_once();
    std::vector<std::string> captions;
    for (int row = 0; !grid_sel.cell(row, kColumn).empty(); ++row)
        if (is_ticked(row)) captions.push_back(grid_sel.cell(row, kColumn));
    return captions;
}

// A row that cannot be written does not keep the others from it.
void PrintColumns::save() {
    if (!loaded_) return;
    step("save grid_sel", [&] {
        auto layout = kernel().change(layout_query());
        for (int row = 0; !grid_sel.cell(row, kColumn).empty(); ++row)
            step("save a column to print", [&] { save_row(layout, row); });
    });
}

void PrintColumns::save_row(store::Recordset& layout, int row) {
    layout.FindFirst({{"caption", grid_sel.cell(row, kColumn)}});
    if (layout.NoMatch()) return;
    layout.Edit();
    layout.set("Print", is_ticked(row));
    layout.Update();
}

}  // namespace brimley::frame
