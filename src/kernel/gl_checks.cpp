#include <fmt/format.h>

#include "kernel/module_g3.h"
#include "kernel/money.h"

namespace brimley::kernel {

bool ModuleG3::check_gl_document(store::Recordset& gl_lines, store::Recordset& account_rows) {
    std::vector<CheckedLine> lines;
    for (gl_lines.MoveFirst(); !gl_lines.at_eof(); gl_lines.MoveNext()) {
        const std::string accno = gl_lines.text("accno");
        account_rows.FindFirst({{"accno", accno}});
        if (account_rows.NoMatch()) return refuse(no_account(accno));
        lines.push_back({accno, gl_lines.number("base_amount"), account_rows.flag("debit"),
                         account_rows.flag("inactive")});
        if (lines.back().inactive) break;  // reported below; the lines after it do not matter any more
    }
    return check_gl_document(lines);
}

bool ModuleG3::check_gl_document(const std::vector<CheckedLine>& lines) {
    double sum = 0;
    for (const CheckedLine& line : lines) {
        if (line.inactive) {
            tell(fmt::format("Account {} is inactive.", line.accno));
            return false;
        }
        sum = Round(sum + side_of(line.debit) * line.base_amount);
    }
    if (sum != 0) {
        tell("Document is not balance (debit <> credit)");
        return false;
    }
    return true;
}

bool ModuleG3::account_currency_exists(std::string_view accno, std::string_view currency) {
    bool found = false;
    carry_on(reasons_, "account_currency_exists", [&] {
        found = exists("Account_currency_table", {{"accno", accno}, {"Currency", currency}});
    });
    return found;
}

bool ModuleG3::add_account_currency(std::string_view accno, std::string_view currency) {
    if (accno.empty()) return refuse(no_account(accno));
    auto rows = find_to_change("Account_currency_table", {{"accno", accno}});
    rows.FindFirst({{"currency", currency}});
    if (rows.NoMatch()) {
        if (!create_foreign_balance_rows(accno, currency)) return false;
        rows.AddNew();
        rows.set("accno", accno);
        rows.set("Currency", currency);
    } else {
        rows.Edit();
    }
    rows.set("Description", " ");
    rows.set("revalue", true);
    rows.Update();
    return true;
}

}  // namespace brimley::kernel
