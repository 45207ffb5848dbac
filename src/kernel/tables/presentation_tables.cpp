// Grid layouts, shared by all users, and the page formats of each user.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

std::vector<store::Table> presentation_tables() {
    return {
        // A layout that is saved while columns change places holds the same order twice for a moment.
        TableBuilder("Grid_property")
            .text({"form_name", "grid_name"})
            .number({"col_order"})
            .text({"Caption"})
            .yes_no({"Visible", "Locked"})
            .number({"col_width", "row_height"})
            .text({"font_name"})
            .number({"font_size"})
            .nullable_yes_no({"font_italic", "font_bold", "font_underline"})
            .number({"font_color", "Alignment"})
            .text({"cell_type"})
            .yes_no({"AutoCompletion", "no_coldivider", "no_headerdivider", "col_fetchstyle", "row_merge",
                     "Print"})
            .indexed_key({"form_name", "grid_name", "col_order"}),

        TableBuilder("Report_format_table")
            .text({"user", "form_name", "Orientation", "font_name"})
            .number({"font_size", "row_height", "top_margin", "bottom_margin", "left_margin", "right_margin"})
            .number({"font_color", "evenrow_color"})
            .nullable_yes_no({"disabled_evenrow_color"})
            .yes_no({"Bold"})
            .nullable_yes_no({"use_grid_font", "column_divider"})
            .text({"split_page", "PaperSize"})
            .number({"Width", "Height"})
            .text({"unit"})
            .indexed_key({"user", "form_name"}),
    };
}

}  // namespace brimley::kernel
