// Books with payments in them, for tests of the checks.
#pragma once

#include "company/books_fixture.h"

namespace brimley::testing {

// The books of BooksTest, and two payments of 1ip-1, whose vendor is V1001:
//   1py-1  40.00 with 5.00 discount and 1.00 written off, GL document 1gl-4, period 1
//   1py-2  30.00 with 2.00 discount, void; GL document 1gl-5 with its reverse, period 1
// The void has left its discount in the amount paid of the item.
class PaidBooksTest : public BooksTest {
  protected:
    PaidBooksTest() {
        in_transaction([&](store::Database&) {
            make_first_invoice_whole();
            add_payment("1py-1", "1gl-4", 40, false);
            add_line("1py-1", 112.35, 40, 5, 1, false);
            post_first_payment();
            add_payment("1py-2", "1gl-5", 30, true);
            add_line("1py-2", 66.35, 30, 2, 0, true);
            post_void_payment();
            db().Execute("UPDATE AP_header_table SET paid = TRUE WHERE fkey = '1ip-1'");
            change(
                item(),
                {{"open_amount", 66.35}, {"paid_amount", 48.0}, {"discount_taken", 5.0}, {"writeoff", 1.0}});
            change(vendor("V1001"), {{"owing_balance", 66.35}});
            for (const auto& [doctype, next] : {std::pair("py", 3), std::pair("gl", 6)}) {
                const std::string kind = std::string(" WHERE doctype = '") + doctype + "'";
                change("SELECT * FROM Next_number_fkey_table" + kind, {{"fkeyno", next}});
                change("SELECT * FROM Docno_master_table" + kind + " AND fiscalyear = '2026'",
                       {{"nextdocno", next}});
            }
        });
    }

    static std::string item() { return "SELECT * FROM AP_transaction_table WHERE fkey = '1ip-1'"; }
    static std::string payment(const std::string& fkey) {
        return "SELECT * FROM Payment_header_table WHERE fkey = '" + fkey + "'";
    }
    static std::string payment_line(const std::string& fkey) {
        return "SELECT * FROM Payment_transaction_table WHERE fkey = '" + fkey + "'";
    }

    void add_payment(const std::string& fkey, const std::string& gl_fkey, double amount, bool is_void) {
        add("Payment_header_table", {{"fkey", fkey},
                                     {"docno", "PY-26-0000" + fkey.substr(4)},
                                     {"company", 1},
                                     {"doctype", "py"},
                                     {"vendor_no", "V1001"},
                                     {"Currency", "USD"},
                                     {"cash_accno", "1000"},
                                     {"payment_amount", amount},
                                     {"payment_base_amount", amount},
                                     {"total_amount", amount},
                                     {"total_base_amount", amount},
                                     {"total_currency", "USD"},
                                     {"fyear", "2026"},
                                     {"source_form", "APform_payment"},
                                     {"GLFKEY", gl_fkey},
                                     {"void", is_void}});
        if (is_void) change(payment(fkey), {{"void_date", *store::DateTime::from_ymd(2026, 1, 20)}});
    }
    void add_line(const std::string& fkey, double open, double pay, double discount, double writeoff,
                  bool is_void) {
        add("Payment_transaction_table", {{"fkey", fkey},
                                          {"item_no", 1},
                                          {"company", 1},
                                          {"ap_docno", "IP-26-00001"},
                                          {"pay_item", 1},
                                          {"ap_doctype", "ip"},
                                          {"Currency", "USD"},
                                          {"gross_amount", 112.35},
                                          {"open_amount", open},
                                          {"pay_amount", pay},
                                          {"pay_base_amount", pay},
                                          {"discount_taken", discount},
                                          {"writeoff", writeoff},
                                          {"balance", open - pay - discount - writeoff},
                                          {"void", is_void}});
    }
    void add_gl_header(const std::string& gl_fkey, const std::string& source, bool reversed = false) {
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", gl_fkey},
                                {"docno", "GL-26-0000" + gl_fkey.substr(4)},
                                {"fyear", "2026"},
                                {"Source", source},
                                {"Reverse", reversed}});
    }
    // A line in period 1, with all balances that it moves.
    void post(const std::string& gl_fkey, int number, const std::string& accno, double amount) {
        add_gl_line(gl_fkey, number, accno, amount, amount, "1");
        move_base_ledger(accno, 1, amount);
    }
    void move_earnings(double amount) {
        raise(balance("3900"), "amount", amount);
        move_period(year("3900"), "", 1, amount);
        move_period(year("3900"), "e_", 1, amount);
    }

  private:
    void make_first_invoice_whole() {
        change("SELECT * FROM AP_header_table WHERE fkey = '1ip-1'",
               {{"vendor_no", "V1001"}, {"Currency", "USD"}});
        change(item(), {{"docno", "IP-26-00001"},
                        {"vendor_no", "V1001"},
                        {"Source", "AP-INVOICE"},
                        {"Currency", "USD"},
                        {"ap_accno", "2000"},
                        {"po_accno", "5000"},
                        {"taxable_amount", 100.0},
                        {"date_created", *store::DateTime::from_ymd(2026, 1, 5)}});
    }
    void post_first_payment() {
        add_gl_header("1gl-4", "AP-PAYMENT");
        post("1gl-4", 1, "1000", -40);
        post("1gl-4", 2, "2000", -46);
        post("1gl-4", 3, "7000", 5);
        post("1gl-4", 4, "7100", 1);
        move_earnings(6);
    }
    // What it has posted and what takes that back cancel out in every balance.
    void post_void_payment() {
        add_gl_header("1gl-5", "AP-PAYMENT", true);
        int number = 0;
        for (const double side : {1.0, -1.0}) {
            add_gl_line("1gl-5", ++number, "1000", side * -30, side * -30, "1");
            add_gl_line("1gl-5", ++number, "2000", side * -32, side * -32, "1");
            add_gl_line("1gl-5", ++number, "7000", side * 2, side * 2, "1");
        }
    }
};

}  // namespace brimley::testing
