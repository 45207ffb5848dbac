// What undoes or blocks the document on screen: void, hold and release. Each tests, asks, and runs a
// transaction of its own.
#pragma once

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class VoidAndHold : public frame::DocumentPart {
  public:
    explicit VoidAndHold(APform_invoice& form);

    void void_invoice();
    void hold_invoice();
    void release_hold();

  private:
    // Says why a document in this state cannot be voided, if that is so. paid: as chkpaid shows it.
    [[nodiscard]] bool refuses_void(bool is_void, int paid) const;
    [[nodiscard]] bool may_void() const;
    [[nodiscard]] bool write_void();
    [[nodiscard]] bool may_change_hold(const char* question, const char* title) const;
    [[nodiscard]] bool write_hold(bool hold);
    void change_hold(bool hold);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
