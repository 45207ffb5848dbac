// The list of open documents, cmbopendoc, and the walk along it in the view "Open Invoice Only".
//
// The list holds what is neither void nor fully paid, of the kind that txtdoctype named when the list was
// made. It runs downwards by number, so "next" goes to an older document and the last item is the oldest. It
// may be long and is fetched only when somebody opens it: a step of the walk looks up one item.
#pragma once

#include <string>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class OpenDocuments : public frame::DocumentPart {
  public:
    explicit OpenDocuments(APform_invoice& form);

    // A stored document of this doctype is on screen.
    void document_on_screen(const std::string& doctype) { doctype_on_screen_ = doctype; }
    // Makes the list again, with the document on screen chosen if it is in it.
    void get_list_open_doc();
    void cmbopendoc_itemselect();

    // The view "Open Invoice Only", or "View All".
    void show(bool open_only);
    [[nodiscard]] bool open_only() const;
    // The next (1), previous (-1) or last (0) document of the list. False when the list is not walked.
    [[nodiscard]] bool walk_list(int direction);

  private:
    [[nodiscard]] bool lists_document_on_screen() const;
    // MIN or MAX of the numbers in the list that meet the condition; empty when there is none.
    [[nodiscard]] std::string find(const char* function, const std::string& condition) const;

    APform_invoice& form_;
    std::string criteria_;  // what the list holds
    // Of the stored document; an edit leaves "ip" in txtdoctype, whatever the kind.
    std::string doctype_on_screen_;
};

}  // namespace brimley::invoices
