#include "invoices/document/vendor_address.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

VendorAddress::VendorAddress(APform_invoice& form) : DocumentPart(form), form_(form) {}

void VendorAddress::vendor_address() {
    form_.frame_address.set_visible(!form_.frame_address.visible());
    refresh();
}

void VendorAddress::refresh() {
    if (!form_.frame_address.visible()) return;
    form_.txtvendor_address.set("");  // not the last vendor's, should this one not be found
    step("vendor_address", [&] {
        const auto vendor = kernel().find("Vendor_table", {{"vendor_no", form_.cmbvendor.text()}});
        if (vendor.at_eof()) return;
        form_.txtvendor_address.set(vendor.text("VENDOR_NAME") + "\n" + vendor.text("address"));
    });
}

}  // namespace brimley::invoices
