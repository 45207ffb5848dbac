#include "company/journal_export.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

#include "company/durable_folder.h"
#include "company/output_file.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

struct JournalAccount {
    std::string name;
    bool debit = true;
    bool income_statement = false;
    bool earnings = false;
    // On the debit side.
    double balance = 0;  // of Balance_table
    double foreign = 0;  // what of it came by the foreign ledger, which moves no Current Earnings
    double moved = 0;    // by lines
};

class JournalExport {
  public:
    JournalExport(store::Database& database, const std::filesystem::path& file)
        : database_(database), file_(file) {
        const auto config = read("SELECT Currency FROM COA_config_table");
        commodity_ = config.at_eof() ? std::string{} : commodity(config.text("Currency"));
        read_accounts();
    }

    void write() {
        sum_lines();
        write_brought_in();
        write_documents();
        file_.finish();
        file_.publish();
    }

  private:
    [[nodiscard]] Recordset read(const std::string& query) {
        return database_.OpenRecordset(query, store::RecordsetKind::snapshot);
    }

    void read_accounts() {
        auto rows = read("SELECT accno,accname,debit,acctype,type FROM Account_master_table");
        for (; !rows.at_eof(); rows.MoveNext())
            accounts_[rows.text("accno")] = {plain(rows.text("accno") + ' ' + rows.text("accname")),
                                             rows.flag("debit"), rows.text("acctype") == "Income Statement",
                                             rows.text("type") == "X"};
        auto balances = read("SELECT accno,ledgertype,amount,base_amount FROM Balance_table");
        for (; !balances.at_eof(); balances.MoveNext()) {
            const std::string accno = balances.text("accno");
            if (balances.text("ledgertype") == "A")
                account(accno).balance += debit_of(accno, balances.number("amount"));
            else
                account(accno).foreign += debit_of(accno, balances.number("base_amount"));
        }
    }

    // One that the chart does not have goes by its number.
    JournalAccount& account(const std::string& accno) {
        const auto [found, is_new] = accounts_.try_emplace(accno);
        if (is_new) found->second.name = plain(accno.empty() ? "none" : accno);
        return found->second;
    }
    double debit_of(const std::string& accno, double amount) {
        return account(accno).debit ? amount : -amount;
    }

    // Without what has a meaning of its own in a journal.
    static std::string plain(std::string_view text) {
        std::string result;
        for (const char c : text) {
            const bool blank = static_cast<unsigned char>(c) <= ' ';
            if (blank && (result.empty() || result.back() == ' ')) continue;
            result += blank ? ' ' : c == ';' || c == ':' || c == '|' || c == '=' ? ',' : c;
        }
        while (!result.empty() && result.back() == ' ')
            result.pop_back();
        return result;
    }

    static std::string commodity(const std::string& currency) {
        const bool letters = !currency.empty() && std::ranges::all_of(currency, [](unsigned char c) {
            return std::isalpha(c) != 0;
        });
        return letters ? currency : '"' + plain(currency) + '"';
    }

    static std::string amount_text(double amount) {
        return kernel::Round(amount) == amount ? fmt::format("{:.2f}", amount) : fmt::format("{:f}", amount);
    }

    // The lines of generated invoices hold what they move in their amount alone.
    double debit_of_line(const Recordset& line) {
        const char* const field = line.field("base_amount").is_null() ? "amount" : "base_amount";
        return debit_of(line.text("accno"), line.number(field));
    }

    void sum_lines() {
        auto lines = read("SELECT accno,amount,base_amount FROM GL_transaction_table");
        for (; !lines.at_eof(); lines.MoveNext())
            account(lines.text("accno")).moved += debit_of_line(lines);
    }

    void begin(const store::DateTime& day, const std::string& code, const std::string& text) {
        file_.write(fmt::format("\n{:04}-{:02}-{:02}{} {}\n", day.year(), day.month(), day.day_of_month(),
                                code.empty() ? "" : fmt::format(" ({})", plain(code)), plain(text)));
    }
    void post(const std::string& name, double debit) {
        file_.write(fmt::format("    {}  {} {}\n", name, amount_text(debit), commodity_));
    }

    void write_brought_in() {
        double earned = 0;
        for (const auto& [accno, each] : accounts_)
            if (each.income_statement && !each.earnings) earned += each.balance - each.foreign;
        std::map<std::string, double> brought_in;
        double difference = 0;
        for (const auto& [accno, each] : accounts_) {
            const double amount = kernel::Round(each.balance - (each.earnings ? earned : 0) - each.moved);
            if (amount == 0) continue;
            brought_in[each.name] += amount;
            difference += amount;
        }
        if (brought_in.empty()) return;
        begin(first_day(), "", "Balances brought in");
        for (const auto& [name, amount] : brought_in)
            post(name, amount);
        if (kernel::Round(difference) != 0) post("Difference", -kernel::Round(difference));
    }

    [[nodiscard]] store::DateTime first_day() {
        const auto years = read("SELECT StartDate FROM Fiscalyear_table ORDER BY StartDate");
        const auto first = years.at_eof() ? std::nullopt : years.field("StartDate").date();
        return first ? first->date_only() : *store::DateTime::from_ymd(2000, 1, 1);
    }

    void write_documents() {
        std::map<std::string, std::string> texts;
        auto headers = read("SELECT fkey,fyear,remark FROM GL_header_table");
        for (; !headers.at_eof(); headers.MoveNext())
            texts[headers.text("fkey") + '\n' + headers.text("fyear")] = headers.text("remark");
        auto lines = read(
            "SELECT gldate,fkey,fyear,fiscalyear,docno,lineno,accno,amount,base_amount FROM "
            "GL_transaction_table "
            "ORDER BY gldate,fkey,fyear,fiscalyear,lineno");
        std::string last;
        for (; !lines.at_eof(); lines.MoveNext()) {
            const std::string fyear =
                lines.text("fyear").empty() ? lines.text("fiscalyear") : lines.text("fyear");
            const std::string key = lines.text("fkey") + '\n' + fyear;
            if (key != last) {
                const auto day = lines.field("gldate").date();
                begin(day ? *day : first_day(), lines.text("docno"), texts[key]);
                last = key;
            }
            const std::string accno = lines.text("accno");
            post(account(accno).name, debit_of_line(lines));
        }
    }

    store::Database& database_;
    OutputFile file_;
    std::string commodity_;
    std::map<std::string, JournalAccount> accounts_;
};

}  // namespace

void export_journal(store::Database& database, const std::filesystem::path& file) {
    JournalExport(database, file).write();
    sync_folder(file.has_parent_path() ? file.parent_path() : std::filesystem::path("."));
}

}  // namespace brimley::company
