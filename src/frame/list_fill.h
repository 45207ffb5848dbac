// One fill of a list from a query: it sizes the list once, moves the progress bar, and gives the host a turn
// every so often.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

class ListFill : public FormPart {
  public:
    ListFill(Form& form, controls::Grid& grid, controls::ProgressBar& progress)
        : FormPart(form), grid_(grid), progress_(progress) {}

    // Empties the list, and ends the fill that the host may have interrupted.
    void clear();
    // Empties the list and fills it from the rows of the query. `make_listing` gets the rows before the first
    // one is shown; its result serves this fill alone and has
    //   int show(const store::Recordset& row, int at)   shows the current row at the next free row of the
    //                                                    grid, and returns the one after what it has filled
    //   void end(int at)                                 after the last row
    // Without rows none of them is called. Errors are ignored.
    // The host may begin another fill of the list in its turn. That one is whole then, and this one is over.
    template <class MakeListing>
    void run(const std::string& query, MakeListing&& make_listing) {
        const int this_fill = start();
        step("assign2_dbgrid1", [&] {
            auto rows = kernel().read_long(query);
            if (this_fill != newest_ || rows.at_eof()) return;
            expect(rows.RecordCount());
            auto listing = make_listing(rows);
            int at = 0;
            for (; !rows.at_eof(); rows.MoveNext()) {
                at = listing.show(rows, at);
                note_progress(at);
                if (this_fill != newest_) return;
            }
            listing.end(at);
        });
        if (this_fill == newest_) finish();
    }

  private:
    // Returns the number of the fill.
    int start();
    // The query has this many rows.
    void expect(std::int64_t count);
    void note_progress(int row);
    void finish();

    controls::Grid& grid_;
    controls::ProgressBar& progress_;
    int newest_ = 0;  // the number of the fill that the list belongs to
    std::int64_t count_ = 0;
    int shown_ = 0;  // rows, when the host had its last turn
};

}  // namespace brimley::frame
