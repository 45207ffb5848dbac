// The accounts that an invoice is posted to, apart from those of its lines' taxes.
#pragma once

#include <string>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class Accounts : public frame::DocumentPart {
  public:
    explicit Accounts(APform_invoice& form);

    // Those that the company has set; while the form loads.
    void read_defaults();
    // The vendor's payable account, or the default one.
    [[nodiscard]] std::string get_apaccno(const std::string& vendor_no) const;
    // The account that the text starts with, when it is one that can be posted to; else empty.
    [[nodiscard]] std::string get_accno(const std::string& text) const;

  private:
    std::string default_cash_accno, default_ap_accno;
};

}  // namespace brimley::invoices
