// The list of the checks of one year: one row a line of the payment, in the order in which the payments were
// stored. A payment without lines is not listed.
#pragma once

#include <string>

#include "frame/line_columns.h"

namespace brimley::payments {

class CheckList : public frame::FormPart {
  public:
    CheckList(frame::Form& form, controls::Grid& grid);

    void clear();
    // The vendor's checks, or all when no vendor is given.
    void list_vendor_check(const std::string& vendor_no);

  private:
    [[nodiscard]] std::string checks_of(const std::string& vendor_no) const;
    void fill(const std::string& checks);

    controls::Grid& grid_;
    frame::LineColumns columns_;
    frame::LineColumns misc_columns_;
};

}  // namespace brimley::payments
