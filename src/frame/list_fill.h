// One fill of a list from a query: it sizes the list once, moves the progress bar, and lets the host stay
// alive meanwhile.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

class ListFill : public FormPart {
  public:
    ListFill(Form& form, controls::Grid& grid, controls::ProgressBar& progress)
        : FormPart(form), grid_(grid), progress_(progress) {}

    // Empties the list and fills it from the rows of the query. `begin` gets the rows before the first one is
    // shown. `show` gets them on each of them in turn, with the next free row of the grid, and returns the
    // one after those that it has filled. `end` gets the next free row after the last. Without rows neither
    // is called. Errors are ignored.
    // The host may begin another fill of the list meanwhile. That one is whole, and this one has ended when
    // control comes back to it.
    template <class Begin, class Show, class End>
    void run(const std::string& query, Begin&& begin, Show&& show, End&& end) {
        const int this_fill = start();
        step("assign2_dbgrid1", [&] {
            auto rows = kernel().read_long(query);
            if (this_fill != newest_ || rows.at_eof()) return;
            expect(rows.RecordCount());
            begin(rows);
            int row = 0;
            for (; !rows.at_eof(); rows.MoveNext()) {
                row = show(rows, row);
                note_progress(row);
                if (this_fill != newest_) return;
            }
            end(row);
        });
        if (this_fill == newest_) finish();
    }
    template <class Begin, class Show>
    void run(const std::string& query, Begin&& begin, Show&& show) {
        run(query, std::forward<Begin>(begin), std::forward<Show>(show), [](int) {});
    }

    // The name in Vendor_table; empty for an unknown vendor. Each is looked up once in a fill.
    [[nodiscard]] const std::string& vendor_name(const std::string& vendor_no);

  private:
    // Returns the number of the fill.
    int start();
    // So many rows will come.
    void expect(std::int64_t count);
    void note_progress(int row);
    void finish();

    controls::Grid& grid_;
    controls::ProgressBar& progress_;
    int newest_ = 0;  // the number of the fill that the list belongs to
    std::int64_t count_ = 0;
    int shown_ = 0;  // so many rows when the host was last let go on
    std::unordered_map<std::string, std::string> vendor_names_;
};

}  // namespace brimley::frame
