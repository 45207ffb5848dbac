#include "revaluation/revaluation_posting.h"

#include "kernel/money.h"
#include "revaluation/apform_revalue.h"

namespace brimley::revaluation {

RevaluationPosting::RevaluationPosting(APform_revalue& form) : DocumentPart(form), form_(form) {}

bool RevaluationPosting::insert_GL_record(store::DateTime gldate) {
    if (!form_.ledger_summary.stands_on_account()) return fail("There is nothing to post");
    kernel::GlPosting posting(kernel(), kernel::gl_rules(kernel::GlForm::revaluation), document(gldate));
    if (!posting.open() || !add_summary(posting) || !posting.write_lines() || !posting.finish()) return false;
    if (!insert_GL_reverse_revalue(posting.fkey())) return false;
    form_.txtglfkey.set(posting.fkey());
    return true;
}

kernel::GlDocument RevaluationPosting::document(store::DateTime gldate) const {
    kernel::GlDocument document = gl_document(gldate);
    document.Currency = context().BASE_CURRENCY;
    if (!form_.txtdesc.empty()) document.more_header_fields.push_back({"Description", form_.txtdesc.text()});
    return document;
}

// Amounts go to the accounts' own sides, those of all currencies of an account together.
bool RevaluationPosting::add_summary(kernel::GlPosting& posting) const {
    for (const SummaryRow& row : form_.ledger_summary.read()) {
        const auto debit = kernel().look_up("Account_master_table", {{"accno", row.accno}}, "debit");
        if (!debit) return fail(kernel::no_account(row.accno));
        if (!row.has_amount()) return fail("No amount for account " + row.accno);
        const double amount = row.amount() * kernel::side_of(debit->flag());
        posting.add(row.accno, amount, amount);
    }
    return true;
}

// The year after the last one may not exist; the counters of its numbers decide.
kernel::FiscalPeriod RevaluationPosting::next_period() const {
    const auto number = [](const std::string& text) {
        return static_cast<int>(kernel::whole_number(kernel::money_value(text), 0, 9999));
    };
    const int period = number(form_.cmbperiod.text());
    const bool last = period == number(context().BRIMLEY_NO_PERIODS);
    const int year = number(form_.cmbfyear.text());
    return {last ? 1 : period + 1, std::to_string(last ? year + 1 : year)};
}

bool RevaluationPosting::insert_GL_reverse_revalue(const std::string& fkey) const {
    kernel::GlReversal reversal = gl_reversal();
    reversal.fkey = fkey;
    reversal.Currency = context().BASE_CURRENCY;
    reversal.into = next_period();
    return kernel::reverse_gl_document(kernel(), kernel::gl_reversal_rules(kernel::GlForm::revaluation),
                                       reversal);
}

}  // namespace brimley::revaluation
