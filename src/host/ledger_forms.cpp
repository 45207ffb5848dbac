// The host's methods of the ledger.
#include "host/form_slot.h"
#include "ledger/ledger_entry.h"
#include "ledger/ledger_journal.h"
#include "ledger/ledger_trial_balance.h"

namespace brimley::host {

void APclass::showform_Ledger_journal(const std::optional<std::string>& accno) {
    FormSlot(*this, frm_journal).show(&APclass::frm_ledger_NotifyClients, [&](ledger::Ledger_journal& form) {
        if (accno) form.show_account(*accno);
    });
}

void APclass::showform_Ledger_trial_balance() {
    FormSlot(*this, frm_trial_balance).show(&APclass::frm_ledger_NotifyClients);
}

void APclass::showform_Ledger_entry(const std::optional<std::string>& docnox) {
    FormSlot(*this, frm_entry).show(&APclass::frm_ledger_NotifyClients, [&](ledger::Ledger_entry& form) {
        if (docnox) (void)form.show_number(*docnox);
    });
}

}  // namespace brimley::host
