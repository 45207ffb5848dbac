#include "payments/prepayment/prepayment_save.h"

#include "payments/prepayment/apform_prepayment.h"

namespace brimley::payments {

using store::Recordset;

PrepaymentSave::PrepaymentSave(APform_prepayment& form) : NewPayment(form), form_(form) {}

bool PrepaymentSave::validate() { return form_.check_entry(checks, {"please specify pay by"}); }

void PrepaymentSave::fill_header(Recordset& header) {
    NewPayment::fill_header(header);
    const std::string& vendor_no = form_.cmbvendor.text();
    header.set("vendor_no", vendor_no);
    header.set("remit_to", form_.txtremit.text());
    header.set("payment_amount", form_.amount());
    header.set("prepayment_accno", form_.prepayment_accno());
    if (const std::string order = form_.purchase_order(); !order.empty()) header.set("po_no", order);
}

bool PrepaymentSave::write_lines(Recordset& header) {
    write_item(header);
    write_only_line(header, {form_.amount(), form_.amount(), 0, form_.txtdocno.text()});
    return true;
}

// A credit of the vendor. It has no exchange rate, a foreign one neither.
void PrepaymentSave::write_item(const Recordset& header) {
    auto item = kernel().change("SELECT * FROM AP_transaction_table WHERE 1 = 2");
    item.AddNew();
    copy_header(item, header,
                {"docno", "doctype", "company", "fkey", "vendor_no", "Currency", "period", "fyear"});
    item.set("invoice_date", header.field("payment_date"));
    item.set("pay_item", 1);
    item.set("gross_amount", 0 - form_.amount());
    item.set("open_amount", 0 - form_.amount());
    item.set("Source", "AP-PREPAY");
    item.set("source_form", identity().class_name);
    stamp_created(item);
    item.Update();
}

bool PrepaymentSave::post() {
    const std::string& vendor_no = form_.cmbvendor.text();
    if (const std::string order = form_.purchase_order(); !order.empty())
        form_.insert_Prepayment_waiting_PO(order, form_.amount());
    if (!form_.insert_GL_record(vendor_no, checks.accno)) return false;
    form_.update_vendor_owing_balance(vendor_no, 0 - form_.amount());
    return true;
}

}  // namespace brimley::payments
