// Number and name of a row's vendor, shown where it is another one than in the row above.
//
// One object serves one fill of a list.
#pragma once

#include <array>
#include <span>
#include <string>
#include <unordered_map>

#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::inquiries {

class VendorCells : public frame::FormPart {
  public:
    // The rows have the field vendor_no.
    VendorCells(frame::Form& form, const controls::Grid& grid, const store::Recordset& rows);

    // Reads the vendor of the current row; true when it is another one than that of the row before. No vendor
    // is as before the first row.
    [[nodiscard]] bool changes(const store::Recordset& row);
    [[nodiscard]] const std::string& vendor_no() const { return vendor_no_; }
    // Of the current row: nothing when its vendor has not changed. An unknown vendor has no name.
    [[nodiscard]] std::span<const controls::TextArray::CellText> cells() const;

  private:
    // Each is looked up once.
    [[nodiscard]] const std::string& name_of(const std::string& vendor_no);

    int field_;
    bool changed_ = false;
    std::string row_vendor_no_;
    std::string vendor_no_;
    std::array<controls::TextArray::CellText, 2> cells_;
    std::unordered_map<std::string, std::string> names_;
};

}  // namespace brimley::inquiries
