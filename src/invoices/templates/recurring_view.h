// The view of recurring templates, and showing one of them on the invoice form.
//
// A template is an invoice without a date, in tables of its own. The view is the pressed state of command
// 1005: while it is pressed the form walks templates instead of documents. That the entry or the document on
// screen is a template is another thing: chkrecur says so, in any view.
#pragma once

#include <string>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class RecurringView : public frame::DocumentPart {
  public:
    explicit RecurringView(APform_invoice& form);

    [[nodiscard]] bool pressed() const;
    // Shows the newest template, in the view of templates. Without one it says so and leaves the screen.
    void last_recurring();
    // The same for the command, with the pane of the recurring fields.
    void open();
    // Turns the fields to templates, or back to documents. Command 1005 is still as it was.
    void recurring_mode(bool on);
    // Back to documents, if templates are in view; the template stays on screen until a document is shown.
    void leave();
    // Shows the template that recur_fkey names, whatever the view; without a name nothing happens.
    void get_recur();
    std::string recur_fkey;
    void chkrecur_click();
    // The box and the fields of a template agree with each other: it may have been clicked before New was
    // pressed, when a click changes nothing else.
    void catch_up_with_chkrecur();
    // The fields that only a template has, of the header that is being shown.
    void assign_template(store::Recordset& header);

    frame::DocumentWalk templates;

  private:
    void press(bool pressed);
    void show_name_in_place_of_date(bool name);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
