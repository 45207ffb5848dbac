// The host's methods of the inquiries.
#include "host/form_slot.h"
#include "inquiries/apreport_aging.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"

namespace brimley::host {

void APclass::showform_APform_aging(const std::optional<std::string>& overdue) {
    FormSlot(*this, frm_aging).show(&APclass::frm_aging_NotifyClients, [&](inquiries::APreport_aging& form) {
        if (overdue != "overdue") return;
        form.show_overdue();
    });
}

void APclass::showform_APform_inquiry() {
    FormSlot(*this, frm_inquiry).show(&APclass::frm_inquiry_NotifyClients);
}

void APclass::showform_APform_payhistory(const std::optional<std::string>& docnox) {
    FormSlot(*this, frm_payhistory)
        .show(&APclass::frm_payhistory_NotifyClients, [&](inquiries::APreport_payhistory& form) {
            if (!docnox) return;
            form.show_invoice(*docnox);
        });
}

void APclass::frm_aging_Exit() { FormSlot(*this, frm_aging).exit(); }
void APclass::frm_inquiry_Exit() { FormSlot(*this, frm_inquiry).exit(); }
void APclass::frm_payhistory_Exit() { FormSlot(*this, frm_payhistory).exit(); }

}  // namespace brimley::host
