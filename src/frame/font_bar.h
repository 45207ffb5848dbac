// The font bar of a grid: font, size, colour, style and alignment of its columns.
//
// A change is seen at once and kept until the form closes; only Save Font writes it to the company. Each
// change applies to all columns of the grid, to those that the user has selected, or to the current one when
// none is selected: cmbselcol says which.
#pragma once

#include <functional>
#include <vector>

#include "controls/combo_box.h"
#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

class FontBar : public FormPart {
  public:
    FontBar(Form& form, controls::Grid& grid);

    controls::Frame frame_font;
    controls::ComboBox cmbselcol;
    controls::ComboBox cmbitfont;
    controls::ComboBox cmbitcolor;
    controls::ComboBox cmbfont_size;

    // The lists of the combo boxes; once, while the form loads.
    void fill();
    // The commands of the bar; false when the id is none of them.
    [[nodiscard]] bool execute(int id);
    // Shows the look of the column that the user has moved to.
    void follow_column(int old_column);

    void font_bold();
    void font_italic();
    void font_underline();
    void font_align_left() { align(controls::Alignment::left); }
    void font_align_center() { align(controls::Alignment::centre); }
    void font_align_right() { align(controls::Alignment::right); }
    void cmbfont_size_itemchange();
    void cmbitfont_itemchange();
    void cmbitcolor_itemchange();
    // Saves the fonts of the columns for everybody. Reports success, whether or not it could.
    void cmdsave_font_Click();
    // Back to the fonts last saved.
    void cmdrestore_font_click();

  private:
    [[nodiscard]] std::vector<int> columns_to_style() const;
    void style_columns(const std::function<void(controls::GridColumn&)>& change);
    // Returns the new state of the command.
    bool toggle(int command);
    void align(controls::Alignment alignment);
    void show_alignment(controls::Alignment alignment);

    controls::CommandBars& bars_;
    controls::Grid& grid_;
};

}  // namespace brimley::frame
