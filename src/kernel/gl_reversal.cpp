#include "kernel/gl_reversal.h"

#include <fmt/format.h>

namespace brimley::kernel {

namespace {

using store::quoted;
using store::Recordset;
using store::Value;

// One reversal in progress.
class Reversing {
  public:
    Reversing(ModuleG3& kernel, const GlReversalRules& rules, const GlReversal& reversal)
        : kernel_(kernel),
          rules_(rules),
          reversal_(reversal),
          writer_(kernel, {rules.names.line_Source, reversal.source_docno, rules.names.line_source_form,
                           reversal.user, reversal.Currency}) {}

    bool run() {
        auto lines = kernel_.read(fmt::format(
            "SELECT * FROM GL_transaction_table WHERE fkey = {} ORDER BY lineno", quoted(reversal_.fkey)));
        if (lines.at_eof())
            return rules_.ways.without_lines == GlWithoutLines::succeeds ||
                   kernel_.refuse(fmt::format("No GL document has the key \"{}\"", reversal_.fkey));
        const auto period = period_of_reverse();
        if (!period) return false;
        return is_in_document(*period) ? reverse_in_same(lines) : reverse_in_new(lines, *period);
    }

  private:
    [[nodiscard]] std::optional<FiscalPeriod> period_of_reverse() {
        if (reversal_.into) return reversal_.into;
        return kernel_.get_fiscal_period(kernel_.outside().now().date_only());
    }

    [[nodiscard]] bool is_in_document(const FiscalPeriod& period) const {
        return !reversal_.into && period.period == Value(reversal_.period).number() &&
               Value(period.fyear).number() == Value(reversal_.fyear).number();
    }

    [[nodiscard]] bool reverse_in_same(Recordset& lines) {
        return reopen_old_header() && write_lines(lines, last_lineno(lines) + 1) && writer_.finish();
    }

    [[nodiscard]] bool reverse_in_new(Recordset& lines, const FiscalPeriod& period) {
        const bool first = rules_.ways.header == GlReversalHeader::first;
        if (!add_new_header(period, lines.text("docno")) || (first && !save_new_header())) return false;
        if (!write_lines(lines, 1) || !writer_.finish() || (!first && !save_new_header())) return false;
        return rules_.ways.old_header == GlOldHeader::untouched || mark_old_header_reversed();
    }

    [[nodiscard]] Recordset old_header() {
        return kernel_.find_to_change("GL_header_table", {{"fkey", reversal_.fkey}});
    }

    [[nodiscard]] bool take(Recordset& header) {
        if (header.at_eof())
            return kernel_.refuse(fmt::format("The GL document \"{}\" has no header", reversal_.fkey));
        return with_retry(kernel_, [&] { header.Edit(); });
    }

    [[nodiscard]] bool update(Recordset& row) {
        return with_retry(kernel_, [&] { row.Update(); });
    }

    [[nodiscard]] bool reopen_old_header() {
        header_ = old_header();
        if (!take(header_)) return false;
        set_description(reversal_.edited ? rules_.texts.edited : rules_.texts.voided);
        header_.set("Reverse", true);
        return update(header_);
    }

    void set_description(const char* text) {
        if (text != nullptr) header_.set("Description", filled_in(text, reversal_.source_docno));
    }

    [[nodiscard]] bool add_new_header(const FiscalPeriod& period, const std::string& old_docno) {
        const auto number = draw_gl_number(kernel_, reversal_.company, period.fyear, rules_.ways.too_long);
        if (!number) return false;
        const store::DateTime now = kernel_.outside().now();
        header_ = kernel_.change("SELECT * FROM GL_header_table WHERE 1 = 2");
        header_.AddNew();
        header_.set("company", reversal_.company);
        header_.set("doctype", "gl");
        header_.set("docno", number->docno);
        header_.set("fkey", number->fkey);
        header_.set("Currency", reversal_.Currency);
        set_description(rules_.texts.in_new);
        header_.set("remark", filled_in(rules_.texts.remark, old_docno));
        header_.set("gldate", rules_.ways.date == GlReversalDate::day ? now.date_only() : now);
        header_.set("period", std::to_string(period.period));
        header_.set("fyear", period.fyear);
        header_.set("Source", rules_.names.header_Source);
        header_.set("source_form", rules_.names.header_source_form);
        header_.set("source_docno", reversal_.source_docno);
        if (rules_.ways.header == GlReversalHeader::last_and_stamped) stamp_header(now);
        return true;
    }

    void stamp_header(store::DateTime now) {
        header_.set("user_created", reversal_.user);
        header_.set("date_created", now.date_only());
        header_.set("time_created", now.time_text());
    }

    [[nodiscard]] bool save_new_header() {
        if (!update(header_)) return false;
        header_.Bookmark(header_.LastModified());
        return true;
    }

    static int last_lineno(Recordset& lines) {
        lines.MoveLast();
        const int last = static_cast<int>(lines.number("lineno"));
        lines.MoveFirst();
        return last;
    }

    [[nodiscard]] bool write_lines(Recordset& lines, int lineno) {
        writer_.open();
        for (; !lines.at_eof(); lines.MoveNext(), ++lineno) {
            if (!writer_.write(reverse_of(lines, lineno))) return false;
        }
        return true;
    }

    [[nodiscard]] GlLine reverse_of(const Recordset& old, int lineno) const {
        GlLine line;
        line.lineno = lineno;
        line.account = segments_of(old);
        line.amount = 0 - old.number("amount");
        line.base_amount = 0 - old.number("base_amount");
        line.Currency = old.text("Currency");
        line.ledgertype = "A";
        line.docno = header_.text("docno");
        line.company = header_.text("company");
        line.gldate = header_.field("gldate").date();
        line.fkey = header_.text("fkey");
        line.period = header_.text("period");
        line.fyear = header_.text("fyear");
        return line;
    }

    [[nodiscard]] bool mark_old_header_reversed() {
        auto old = old_header();
        if (!take(old)) return false;
        old.set("Reverse", true);
        old.set("remark", "Reversed by " + header_.text("docno"));
        return update(old);
    }

    ModuleG3& kernel_;
    const GlReversalRules& rules_;
    const GlReversal& reversal_;
    GlLineWriter writer_;
    Recordset header_;  // of the document that takes the reverse
};

}  // namespace

bool reverse_gl_document(ModuleG3& kernel, const GlReversalRules& rules, const GlReversal& reversal) {
    return Reversing(kernel, rules, reversal).run();
}

}  // namespace brimley::kernel
