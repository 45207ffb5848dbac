#include "marks/field_of_message.h"

#include <string_view>

#include "controls/grid.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::marks {

using controls::Control;
using controls::Grid;

namespace {

// A message that begins like this, in any letter case, speaks of the field; of several lines of which a form
// has the field the first counts.
struct Line {
    std::string_view beginning;
    const char* control;
    std::string_view column = {};  // of a grid
};

constexpr Line kLines[] = {
    {"please specify vendor", "cmbvendor"},
    {"please specify vendor", "dbgridcmd", "vendor no"},
    {"please specify payment term", "cmbterm"},
    {"payment term is invalid", "cmbterm"},
    {"please specify currency", "cmbcurrency"},
    {"please specify exchange rate", "cmbexrate"},
    {"exchange rate is invalid", "cmbexrate"},
    {"please specify rate date", "txtratedate"},
    {"please specify invoice date", "txtinvdate"},
    {"please specify payment date", "txtpaydate"},
    {"please specify check date", "txtcheckdate"},
    {"please specify period", "cmbperiod"},
    {"please specify fiscal year", "cmbfyear"},
    {"please specify purchase account", "dbgrid1", "purchase account"},
    {"purchase account is invalid", "dbgrid1", "purchase account"},
    {"no data input", "dbgrid1", "gross amount"},
    {"please specify any payment", "dbgrid1", "pay amount"},
    {"please specify any payment", "dbgrid1", "amount"},
    {"please specify amount for pay item ", "dbgrid1", "amount"},
    {"please specify account for ", "dbgrid1", "account"},
    {"account number for ", "dbgrid1", "account"},
    {"please specify discount account", "dbgrid1", "discount account"},
    {"discount account is invalid", "dbgrid1", "discount account"},
    {"please specify write-off account", "dbgrid1", "write-off account"},
    {"write-off account is invalid", "dbgrid1", "write-off account"},
    {"please specify payment exchange rate", "dbgrid1", "payment exch rate"},
    {"payment exchange rate is invalid", "dbgrid1", "payment exch rate"},
    {"payment amount is invalid", "txtpayment"},
    {"please specify payment amount", "txtpayment"},
    {"payment is invalid", "txtpayment"},
    {"please specify prepayment amount", "txtprepay"},
    {"prepayment is invalid", "txtprepay"},
    {"fee is invalid", "txtfee"},
    {"please specify expense account for fee", "cmbexpacc"},
    {"please specify credit card", "cmbcard"},
    {"please specify pay by", "cmbpayby"},
    {"please specify other pay-by", "cmbpayby"},
    {"please specify bank", "cmbbank"},
    {"bank code ", "cmbbank"},
    {"please specify check number", "txtcheck"},
    {"please specify cash account", "cmbcash"},
    {"please specify remit-to", "txtremit"},
    {"please specify recurring name", "txtrecurname"},
    {"please specify recurring date", "txtrecurdate"},
    {"number of invoice is invalid", "txtnoinvoice"},
    {"recurring frequency is invalid", "cmbfreq"},
    {"please specify effective date", "txteffectdate"},
    {"please specify expiry date", "txtexpiredate"},
    {"please specify last transaction date", "txtlastdate"},
};

constexpr std::string_view kDateFaults[] = {"date is invalid", "month is invalid", "year is invalid",
                                            "invalid date format"};

bool begins_with(const std::string& message, std::string_view beginning) {
    return message.size() >= beginning.size() &&
           controls::same_ignoring_case(std::string_view(message).substr(0, beginning.size()), beginning);
}

bool can_be_typed_in(const Control* control) {
    return control != nullptr && control->visible() && control->enabled() && !control->locked();
}

// The first line that the message may mean: what is missing or wrong stands there.
int row_of(const Grid& grid, std::string_view caption) {
    const int rows = grid.array.used_rows();
    for (int row = 0; row < rows; ++row) {
        bool holds_something = false;
        for (std::size_t column = 0; column < grid.columns.size(); ++column)
            holds_something |= !grid.array.get(row, static_cast<int>(column)).empty();
        if (holds_something && grid.cell(row, caption).empty()) return row;
    }
    return 0;
}

const Control* first_field_without_a_date(frame::Form& form) {
    for (const Control* const control : form.controls().all()) {
        const auto* const field = dynamic_cast<const controls::DateField*>(control);
        if (field != nullptr && can_be_typed_in(field) && !field->empty() &&
            !kernel::try_user_date(field->text(), form.context().BRIMLEY_DATE_FORMAT))
            return field;
    }
    return nullptr;
}

}  // namespace

Place field_of_message(frame::Form& form, const std::string& message) {
    for (const Line& line : kLines) {
        if (!begins_with(message, line.beginning)) continue;
        const Control* const control = form.controls().find(line.control);
        if (!can_be_typed_in(control)) continue;
        if (line.column.empty()) return {control};
        const auto* const grid = dynamic_cast<const Grid*>(control);
        const int column = grid == nullptr ? -1 : grid->get_column(line.column);
        if (column >= 0) return {grid, row_of(*grid, line.column), column};
    }
    for (const std::string_view fault : kDateFaults)
        if (begins_with(message, fault)) return {first_field_without_a_date(form)};
    return {};
}

}  // namespace brimley::marks
