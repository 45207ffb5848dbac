#include "invoices/document/rate_fields.h"

#include "invoices/apform_invoice.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

namespace {

constexpr std::size_t kRatesListedMax = 10;

}  // namespace

RateFields::RateFields(APform_invoice& form) : DocumentPart(form), form_(form) {
    form_.cmbcurrency.on_item_select = [this] { cmbcurrency_itemselect(); };
    form_.cmbcurrency.on_change = [this] {
        if (form_.cmbcurrency.empty()) cmbcurrency_itemselect();
    };
    form_.cmbexrate.on_item_select = [this] { cmbexrate_itemselect(); };
    form_.txtratedate.on_change = [this] { txtratedate_change(); };
}

void RateFields::close() {
    form_.cmbexrate.clear_items();
    form_.cmbexrate.set("");
    form_.txtratedate.set("");
    set_field(form_.cmbexrate, FieldState::read_only);
    set_field(form_.txtratedate, FieldState::read_only);
}

void RateFields::cmbcurrency_itemselect() {
    if (!entering()) return;
    if (form_.cmbcurrency.empty() || !foreign()) {
        close();
        return;
    }
    set_field(form_.cmbexrate, FieldState::open);
    set_field(form_.txtratedate, FieldState::open);
    step("cmbcurrency_itemselect", [&] { list_rates(); });
}

void RateFields::list_rates() {
    auto rates = rates_of_currency(date_in(form_.txtratedate));
    std::vector<controls::ComboBox::Row> items;
    for (; !rates.at_eof() && items.size() < kRatesListedMax; rates.MoveNext())
        items.push_back({rates.text("Rate"), date_text(rates.field("rate_date"))});
    form_.cmbexrate.set_items(items);
    form_.cmbexrate.set("");
    if (rates.RecordCount() == 0) return;
    rates.MoveLast();
    form_.txtratedate.set(date_text(rates.field("rate_date")));
    form_.cmbexrate.set(rates.text("Rate"));
}

void RateFields::cmbexrate_itemselect() {
    const auto picked = form_.cmbexrate.chosen(1);
    if (!picked) return;
    const auto date = kernel::parse_user_date(*picked, context().BRIMLEY_DATE_FORMAT, desk());
    if (date) form_.txtratedate.set(date_text(*date));
}

}  // namespace brimley::invoices
