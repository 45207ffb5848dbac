#include "kernel/gl_reversal.h"

#include <fmt/format.h>

namespace brimley::kernel {

namespace {

using store::quoted;
using store::Recordset;
using store::Value;

// One reversal on its way.
class Reversing {
  public:
    Reversing(ModuleG3& kernel, const GlReversal& reversal)
        : kernel_(kernel), reversal_(reversal), writer_(kernel, reversal.origin) {}

    bool run() {
        auto lines = kernel_.read(fmt::format(
            "SELECT * FROM GL_transaction_table WHERE fkey = {} ORDER BY lineno", quoted(reversal_.fkey)));
        if (lines.at_eof()) return reversal_.result_without_lines;
        const std::string old_docno = lines.text("docno");
        const auto today = kernel_.get_fiscal_period(kernel_.outside().now().date_only());
        if (!today) return false;
        const bool same = today->period == Value(reversal_.period).number() &&
                          Value(today->fyear).number() == Value(reversal_.fyear).number();
        if (!(same ? reopen_old_header() : add_new_header(*today, old_docno))) return false;
        if (!write_lines(lines, same ? last_lineno(lines) + 1 : 1) || !writer_.check()) return false;
        return same || mark_old_header_reversed();
    }

  private:
    [[nodiscard]] Recordset old_header() {
        return kernel_.change(
            fmt::format("SELECT * FROM GL_header_table WHERE fkey = {}", quoted(reversal_.fkey)));
    }

    [[nodiscard]] bool edit(Recordset& row) {
        return with_retry(kernel_.outside(), [&] { row.Edit(); });
    }

    [[nodiscard]] bool update(Recordset& row) {
        return with_retry(kernel_.outside(), [&] { row.Update(); });
    }

    [[nodiscard]] bool reopen_old_header() {
        header_ = old_header();
        if (header_.at_eof() || !edit(header_)) return false;
        header_.set("Description", reversal_.description_in_same);
        header_.set("Reverse", true);
        return update(header_);
    }

    [[nodiscard]] bool add_new_header(const FiscalPeriod& today, const std::string& old_docno) {
        const auto number =
            draw_gl_number(kernel_, reversal_.company, today.fyear, reversal_.origin.too_long);
        if (!number) return false;
        header_ = kernel_.change("SELECT * FROM GL_header_table WHERE 1 = 2");
        header_.AddNew();
        header_.set("company", reversal_.company);
        header_.set("doctype", "gl");
        header_.set("docno", number->docno);
        header_.set("fkey", number->fkey);
        header_.set("Currency", reversal_.Currency);
        header_.set("Description", reversal_.description_in_new);
        header_.set("remark", "Reverse GL " + old_docno);
        const store::DateTime now = kernel_.outside().now();
        header_.set("gldate", reversal_.new_has_time ? now : now.date_only());
        header_.set("period", std::to_string(today.period));
        header_.set("fyear", today.fyear);
        header_.set("Source", reversal_.origin.Source);
        const std::string& form = reversal_.source_form_in_new;
        header_.set("source_form", form.empty() ? reversal_.origin.source_form : form);
        header_.set("source_docno", reversal_.origin.source_docno);
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
        if (old.at_eof() || !edit(old)) return false;
        old.set("Reverse", true);
        old.set("remark", "Reversed by " + header_.text("docno"));
        return update(old);
    }

    ModuleG3& kernel_;
    const GlReversal& reversal_;
    GlLineWriter writer_;
    Recordset header_;  // of the document that takes the reverse
};

}  // namespace

bool reverse_gl_document(ModuleG3& kernel, const GlReversal& reversal) {
    return Reversing(kernel, reversal).run();
}

}  // namespace brimley::kernel
