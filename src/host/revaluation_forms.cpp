// The host's methods of the revaluation.
#include "host/form_slot.h"
#include "revaluation/apform_revalue.h"

namespace brimley::host {

void APclass::showform_APform_revalue() {
    FormSlot(*this, frm_revalue).show(&APclass::frm_revalue_NotifyClients);
}

// The entry of a new run is not disturbed.
void APclass::APform_revalue_goto_docno(const std::string& docnox) {
    if (frm_revalue && frm_revalue->txtdocno.text() == frame::kNewDocno) return;
    FormSlot(*this, frm_revalue).go_to_docno(docnox);
}

void APclass::frm_revalue_Exit() { FormSlot(*this, frm_revalue).exit(); }

}  // namespace brimley::host
