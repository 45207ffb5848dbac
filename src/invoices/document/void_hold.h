// What undoes or blocks a saved document: void, hold, release. Each tests, asks, and runs its own
// transaction; after a failure the document is as it was.
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
    [[nodiscard]] bool refuses_void(bool is_void, int paid);
    [[nodiscard]] bool may_void();
    [[nodiscard]] bool write_void();
    void give_back_owing_balance();
    [[nodiscard]] bool may_change_hold(const char* question, const char* title);
    [[nodiscard]] bool write_hold(bool hold);
    void change_hold(bool hold);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
