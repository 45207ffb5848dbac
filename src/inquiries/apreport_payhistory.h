// APreport_payhistory: the payments of invoices, either those that a filter lets through, or all of one
// invoice, for which the form is opened.
#pragma once

#include "inquiries/document_inquiry.h"

namespace brimley::inquiries {

class APreport_payhistory : public DocumentInquiry {
  public:
    APreport_payhistory(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                        frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbpayby{controls_, "cmbpayby"};
    // Shows the currency of the invoice that the form was opened for; nothing is listed by it.
    controls::ComboBox cmbcurrency{controls_, "cmbcurrency"};
    controls::TextField txtpayamt{controls_, "txtpayamt"};

    void SEL_record() override;
    // The form is opened for the invoice with this number. Any Find after that goes by the filter.
    void show_invoice(const std::string& docno);
    // Shows the invoice with the number on screen, and what was paid on it, whatever the filter says.
    void get_match_history();
    // Asks the host for the document of the current row, by the type that the row shows.
    void origin_document();

  protected:
    [[nodiscard]] const char* layout_of(const controls::Grid& grid) const override;
    void show_first_values() override;
    void initform_control() override;
    void init_toolbar() override;
    void clear_box() override;
    void execute_own(int id) override;

  private:
    void assign2_control(const store::Recordset& invoice);
};

}  // namespace brimley::inquiries
