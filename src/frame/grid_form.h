// The frame of the forms with a list or lines: dbgrid1, the font bar over it, the layouts of the grids, and
// the commands that they have in common.
//
// It knows no modes and no documents: forms that enter documents are DocumentForms.
#pragma once

#include <initializer_list>
#include <vector>

#include "frame/font_bar.h"
#include "frame/form.h"

namespace brimley::frame {

class GridForm : public Form {
  public:
    using Form::Form;

    controls::Grid dbgrid1{controls_, "dbgrid1"};
    FontBar font_bar{*this, dbgrid1};
    controls::Frame frame_status{controls_, "frame_status"};

    [[nodiscard]] bool font_bar_shown() const override {
        return Form::font_bar_shown() || font_bar.frame_font.visible();
    }

    // Keeps the choice in Recent_value_table and paints the even rows of dbgrid1.
    void show_even_row_color(bool flag);

  protected:
    // --- variable points ---

    // The grids whose layout the company keeps, dbgrid1 first.
    [[nodiscard]] virtual std::vector<controls::Grid*> grids() { return {&dbgrid1}; }

    // The name under which the company has the layout that the grid is built from. It is saved under the
    // form's own in any case.
    [[nodiscard]] virtual const char* layout_of(const controls::Grid& /*grid*/) const {
        return identity().class_name;
    }

    // --- shared procedures ---

    // Gives the grids their columns and their look, and paints the even rows of dbgrid1 as the company's last
    // choice was.
    void build_grids();
    void save_grid() override;
    // Opens the page setup of a report in a pane of this form, unless it is open already.
    void show_page_setup(const std::string& report_form);
    // Empties dbgrid1.
    void clear_list();
    // The form's own commands and the common ones, by their ids. One of the form's replaces the common one
    // with the same id; the form does not have those in `without`.
    void add_commands(std::vector<controls::Command> own, std::initializer_list<int> without = {});
    // The commands that are the same on every form with a grid. False when the id is none of them.
    [[nodiscard]] bool execute_of_grid_form(int id) { return execute_common(id) || font_bar.execute(id); }

  private:
    void paint_even_rows(bool flag);
};

}  // namespace brimley::frame
