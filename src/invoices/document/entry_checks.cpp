#include "invoices/document/entry_checks.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

EntryChecks::EntryChecks(APform_invoice& form) : DocumentPart(form), form_(form) {}

std::optional<CheckedEntry> EntryChecks::check() {
    const auto fails = [this](const std::string& message) {
        tell(message);
        return std::nullopt;
    };
    if (!form_.lines.has_any()) return fails("No data input");
    if (!period_is_open()) return std::nullopt;
    CheckedEntry entry;
    entry.lines = form_.lines.read();
    entry.period = store::Value(form_.cmbperiod.text()).number();
    entry.ap_accno = form_.accounts.get_apaccno(form_.cmbvendor.text());
    if (entry.ap_accno.empty())
        return fails(form_.cmbvendor_name.text() + " : Account payable has not been set.");
    const bool dates_are_good =
        read_date(form_.txtdiscdate, entry.discount_date) && read_date(form_.txtduedate, entry.due_date);
    return dates_are_good ? std::optional(std::move(entry)) : std::nullopt;
}

bool EntryChecks::read_date(const controls::DateField& field, std::optional<store::DateTime>& date) const {
    if (field.empty()) return true;
    date = required_date(field, "Date is invalid (" + field.text() + ")");
    return date.has_value();
}

}  // namespace brimley::invoices
