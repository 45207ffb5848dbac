// The pane in which the user ticks the columns of dbgrid1 to print.
//
// The boxes are read from the layout of dbgrid1 when they are first needed, on screen or for a report, and
// are written back when the pane or the form closes. Whether a column is shown does not matter.
#pragma once

#include <string>
#include <vector>

#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

class PrintColumns : public FormPart {
  public:
    // The ticks are about the columns of `printed`.
    PrintColumns(Form& form, const controls::Grid& printed);

    controls::Frame Frame_printcol;
    // A row for each column: its caption and its box.
    controls::Grid grid_sel;

    // The command of the pane: shows it, or closes it.
    void toggle();
    // The captions that are ticked, in the order of the layout.
    [[nodiscard]] std::vector<std::string> ticked();
    // Writes the boxes into the layout, unless they were never read. Failures are ignored.
    void save();

  private:
    void load_once();
    [[nodiscard]] std::string layout_query() const;
    [[nodiscard]] bool is_ticked(int row) const;
    void save_row(store::Recordset& layout, int row);

    const controls::Grid& printed_;
    bool loaded_ = false;
};

}  // namespace brimley::frame
