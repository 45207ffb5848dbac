// Books with a few documents in them, for tests of the checks.
#pragma once

#include "company/check.h"
#include "company/company_fixture.h"

namespace brimley::testing {

// The sample company with three documents, every balance written out by hand:
//   1ip-1  112.35 USD with two taxes, GL document 1gl-1, period 1
//   1ip-2  100.00 EUR at 1.25, GL document 1gl-2, period 2
//   1vcn-1 40.00 USD, paid in full, GL document 1gl-3, period AD
class BooksTest : public CompanyTest {
  protected:
    BooksTest() {
        make(company::SampleCompany{"zoe"});
        in_transaction([&](store::Database&) {
            enter_taxed_invoice();
            enter_foreign_invoice();
            enter_paid_credit_note();
            for (const char* doctype : {"ip", "vcn", "gl"}) {
                const std::string kind = std::string(" WHERE doctype = '") + doctype + "'";
                change("SELECT * FROM Next_number_fkey_table" + kind, {{"fkeyno", 4}});
                change("SELECT * FROM Docno_master_table" + kind + " AND fiscalyear = '2026'",
                       {{"nextdocno", 4}});
            }
        });
    }

    company::Findings findings() {
        company::Findings found;
        in_transaction([&](store::Database& database) { found = company::check_sums(database); });
        return found;
    }
    company::Findings notes() {
        company::Findings found;
        in_transaction([&](store::Database& database) { found = company::books_notes(database); });
        return found;
    }

    void add_document(const std::string& fkey, const std::string& docno, const std::string& gl_fkey,
                      store::Value period) {
        const std::string doctype = fkey.substr(1, fkey.find('-') - 1);
        add("AP_header_table", {{"fkey", fkey},
                                {"docno", docno},
                                {"company", "1"},
                                {"doctype", doctype},
                                {"Source", "AP-INVOICE"},
                                {"GLFKEY", gl_fkey},
                                {"fyear", "2026"}});
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", gl_fkey},
                                {"fyear", "2026"},
                                {"docno", "GL-26-0000" + gl_fkey.substr(4)},
                                {"period", period}});
    }

    void add_gl_line(const std::string& fkey, int number, const std::string& accno, double amount,
                     double base_amount, const std::string& period, const std::string& currency = "USD") {
        add("GL_transaction_table", {{"company", 1},
                                     {"fkey", fkey},
                                     {"lineno", number},
                                     {"accno", accno},
                                     {"amount", amount},
                                     {"base_amount", base_amount},
                                     {"period", period},
                                     {"fyear", "2026"},
                                     {"Currency", currency},
                                     {"ledgertype", currency == "USD" ? "A" : "F"}});
    }

    static std::string vendor(const std::string& vendor_no) {
        return "SELECT * FROM Vendor_table WHERE vendor_no = '" + vendor_no + "'";
    }
    static std::string gl_header(const std::string& fkey) {
        return "SELECT * FROM GL_header_table WHERE fkey = '" + fkey + "'";
    }
    static std::string gl_line(const std::string& fkey, const std::string& accno) {
        return "SELECT * FROM GL_transaction_table WHERE fkey = '" + fkey + "' AND accno = '" + accno + "'";
    }
    static std::string balance(const std::string& accno, const std::string& ledger = "A") {
        return "SELECT * FROM Balance_table WHERE ledgertype = '" + ledger + "' AND accno = '" + accno + "'";
    }
    static std::string year(const std::string& accno, const std::string& ledger = "A") {
        return "SELECT * FROM Balance_period_table WHERE fyear = '2026' AND ledgertype = '" + ledger +
               "' AND accno = '" + accno + "'";
    }

    // Adds to one column of a family and to all that follow from it.
    void move_period(const std::string& query, const std::string& family, int period, double amount) {
        raise(query, family + "period" + std::to_string(period), amount);
        for (int running = period; running <= 13; ++running) {
            raise(query, family + "balperiod" + std::to_string(running), amount);
        }
        raise(query, family + "ytd_balance", amount);
    }

    void move_base_ledger(const std::string& accno, int period, double amount) {
        raise(balance(accno), "amount", amount);
        raise(balance(accno), "base_amount", amount);
        move_period(year(accno), "", period, amount);
        move_period(year(accno), "e_", period, amount);
    }

    void enter_taxed_invoice() {
        add_document("1ip-1", "IP-26-00001", "1gl-1", 1);
        add("AP_transaction_table", {{"fkey", "1ip-1"},
                                     {"doctype", "ip"},
                                     {"pay_item", "1"},
                                     {"gross_amount", 112.35},
                                     {"open_amount", 112.35},
                                     {"tax_amount", 12.35},
                                     {"tax_amount1", 5.0},
                                     {"tax_recoverable1", 5.0},
                                     {"tax_allocated1", 0.0},
                                     {"tax_amount2", 7.35},
                                     {"tax_allocated2", 7.35},
                                     {"tax_expensed2", 0.0}});
        add_gl_line("1gl-1", 1, "1300", 5, 5, "1");
        add_gl_line("1gl-1", 2, "2000", 112.35, 112.35, "1");
        add_gl_line("1gl-1", 3, "5000", 107.35, 107.35, "1");
        move_base_ledger("1300", 1, 5);
        move_base_ledger("2000", 1, 112.35);
        move_base_ledger("5000", 1, 107.35);
        raise(balance("3900"), "amount", -107.35);
        move_period(year("3900"), "", 1, -107.35);
        move_period(year("3900"), "e_", 1, -107.35);
    }

    // The purchase goes to stock, a balance sheet account, whose euro rows are made here.
    void enter_foreign_invoice() {
        for (const char* fyear : {"2026", "2027"}) {
            add("Balance_period_table", {{"fyear", fyear},
                                         {"company", 1},
                                         {"ledgertype", "F"},
                                         {"accno", "1200"},
                                         {"Currency", "EUR"}});
        }
        add("Balance_table", {{"company", 1}, {"ledgertype", "F"}, {"accno", "1200"}, {"Currency", "EUR"}});
        add("Account_currency_table", {{"accno", "1200"}, {"Currency", "EUR"}, {"revalue", true}});
        add_document("1ip-2", "IP-26-00002", "1gl-2", 2);
        add("AP_transaction_table", {{"fkey", "1ip-2"},
                                     {"doctype", "ip"},
                                     {"pay_item", "1"},
                                     {"gross_amount", 100.0},
                                     {"open_amount", 100.0},
                                     {"Currency", "EUR"}});
        for (const char* accno : {"1200", "2010"}) {
            add_gl_line("1gl-2", std::string(accno) == "1200" ? 1 : 2, accno, 100, 125, "2", "EUR");
            raise(balance(accno, "F"), "amount", 100);
            raise(balance(accno, "F"), "base_amount", 125);
            raise(balance(accno), "amount", 125);
            move_period(year(accno, "F"), "", 2, 100);
            move_period(year(accno, "F"), "e_", 2, 125);
            move_period(year(accno), "", 2, 125);
        }
    }

    void enter_paid_credit_note() {
        add_document("1vcn-1", "VCN-26-00003", "1gl-3", "AD");
        add("AP_transaction_table", {{"fkey", "1vcn-1"},
                                     {"doctype", "vcn"},
                                     {"pay_item", "1"},
                                     {"gross_amount", 40.0},
                                     {"open_amount", 0.0},
                                     {"paid_amount", 40.0},
                                     {"paid", true}});
        change("SELECT * FROM AP_header_table WHERE fkey = '1vcn-1'", {{"paid", true}, {"fully_paid", true}});
        for (const char* accno : {"1210", "2000"}) {
            add_gl_line("1gl-3", std::string(accno) == "1210" ? 1 : 2, accno, 40, 40, "AD");
            raise(balance(accno), "amount", 40);
            raise(balance(accno), "base_amount", 40);
            for (const char* field : {"adjust", "ytd_balance", "e_adjust", "e_ytd_balance"}) {
                raise(year(accno), field, 40);
            }
        }
    }
};

}  // namespace brimley::testing
