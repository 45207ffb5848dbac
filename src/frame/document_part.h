// A piece of a document form with a subject of its own (frame/form_part.h). It sees what all document forms
// have; what only its own form has it reaches by a reference of its own.
#pragma once

#include "frame/document_form.h"

namespace brimley::frame {

class DocumentPart : public FormPart {
  protected:
    explicit DocumentPart(DocumentForm& form) : FormPart(form), form_(form) {}
    ~DocumentPart() = default;

    using FieldState = DocumentForm::FieldState;

    [[nodiscard]] bool entering() const { return form_.entering(); }
    [[nodiscard]] bool foreign() const { return form_.foreign(); }
    [[nodiscard]] bool on_saved_document() const { return form_.on_saved_document(); }
    [[nodiscard]] bool shown_whole() const { return form_.shown_whole(); }
    [[nodiscard]] bool has_its_number() const { return form_.has_its_number(); }
    [[nodiscard]] DocumentWalk& walk() const { return form_.walk(); }
    void show_document(store::Recordset& header) const { form_.show_document(header); }
    void show_document(store::Recordset& header, const DocumentWalk& its_walk) const {
        form_.show_document(header, its_walk);
    }
    static void set_field(controls::Control& field, FieldState state) {
        DocumentForm::set_field(field, state);
    }

    [[nodiscard]] std::optional<store::DateTime> date_in(const controls::TextField& field) const {
        return form_.date_in(field);
    }
    [[nodiscard]] std::optional<store::DateTime> required_date(const controls::DateField& field,
                                                               const std::string& missing) const {
        return form_.required_date(field, missing);
    }
    [[nodiscard]] static std::string no_date(const controls::TextField& field) {
        return DocumentForm::no_date(field);
    }
    [[nodiscard]] static std::string changed_since_shown(const store::Recordset& header) {
        return DocumentForm::changed_since_shown(header);
    }
    // The walk of the documents themselves, whatever is walked at the moment.
    [[nodiscard]] const DocumentWalk& documents() const { return form_.documents; }
    [[nodiscard]] store::Recordset rates_of_currency(const std::optional<store::DateTime>& until) const {
        return form_.rates_of_currency(until);
    }
    // False after its message: none is given, or one that nobody uses. A typing error must not open accounts
    // for it.
    [[nodiscard]] bool currency_is_in_use() const;
    // False after its message: none is given, or it lies outside the working period.
    [[nodiscard]] bool period_is_open() const;
    [[nodiscard]] bool draw_number(kernel::ModuleG3::TooLongMessage too_long) const {
        return form_.draw_number(too_long);
    }
    [[nodiscard]] kernel::GlDocument gl_document(store::DateTime gldate) const {
        return form_.gl_document(gldate);
    }
    [[nodiscard]] kernel::GlReversal gl_reversal() const { return form_.gl_reversal(); }
    [[nodiscard]] const std::string& gain_accno() const { return form_.gain_accno; }
    [[nodiscard]] const std::string& loss_accno() const { return form_.loss_accno; }

    // Who made a row, and when, by the clock of the desk.
    void stamp_created(store::Recordset& row) const;

  private:
    DocumentForm& form_;
};

}  // namespace brimley::frame
