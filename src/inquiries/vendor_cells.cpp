#include "inquiries/vendor_cells.h"

namespace brimley::inquiries {

VendorCells::VendorCells(frame::Form& form, const controls::Grid& grid, const store::Recordset& rows)
    : FormPart(form),
      field_(rows.column_of("vendor_no")),
      cells_{{{grid.get_column("vendor no"), {}}, {grid.get_column("vendor name"), {}}}} {}

bool VendorCells::changes(const store::Recordset& row) {
    row.read_text(field_, row_vendor_no_);
    changed_ = row_vendor_no_ != vendor_no_;
    if (!changed_) return false;
    vendor_no_ = row_vendor_no_;
    cells_[0].text = vendor_no_;
    cells_[1].text = name_of(vendor_no_);
    return true;
}

std::span<const controls::TextArray::CellText> VendorCells::cells() const {
    return std::span(cells_).first(changed_ ? cells_.size() : 0);
}

const std::string& VendorCells::name_of(const std::string& vendor_no) {
    const auto [name, is_new] = names_.try_emplace(vendor_no);
    if (is_new)
        step("find the vendor's name", [&, found = name] {
            found->second = kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME");
        });
    return name->second;
}

}  // namespace brimley::inquiries
