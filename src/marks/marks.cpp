#include "marks/marks.h"

#include <fmt/format.h>

#include <algorithm>

#include "controls/combo_box.h"
#include "controls/date_range.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::marks {

using controls::ComboBox;
using controls::Control;
using controls::Grid;
using kernel::money_value;
using store::Recordset;

namespace {

constexpr const char* kVendor = "cmbvendor";
constexpr const char* kVendorName = "cmbvendor_name";
constexpr const char* kInvoiceNumber = "txtinvno";
constexpr const char* kAccountFields[] = {"cmbcash", "cmbexpacc"};
constexpr std::string_view kAccountColumns[] = {"account", "purchase account", "discount account",
                                                "write-off account"};
// More than anybody types; a list that long is not looked at after each act.
constexpr int kRowsMax = 200;

// An account may be typed with its name behind it.
std::string_view number_of_account(std::string_view text) {
    return text.substr(0, std::min(text.find(' '), text.size()));
}

}  // namespace

const std::vector<Mark>& Marks::look() {
    const auto workspace = form_.context().dbe;
    if (workspace && workspace->in_transaction()) return found_;
    found_.clear();
    const frame::Mode mode = form_.mode();
    if (mode != mode_) known_.clear();
    mode_ = mode;
    if (mode == frame::Mode::read || !form_.context().abcdb || !form_.is_open()) return found_;
    const std::int64_t lost = workspace ? workspace->lost_calls() : 0;
    look_at_dates();
    look_at_vendor();
    look_at_invoice_number();
    look_at_account_fields();
    look_at_lines();
    // The form has read everything that belongs to it.
    if (workspace) workspace->forgive_lost_calls(workspace->lost_calls() - lost);
    return found_;
}

Recordset Marks::find(std::string_view table, store::FieldValues fields) const {
    return form_.context().abcdb->OpenRecordset(
        fmt::format("SELECT * FROM [{}] WHERE {}", table, store::all_equal(fields)),
        store::RecordsetKind::snapshot);
}

const std::string& Marks::known(std::string_view what, std::string_view key,
                                const std::function<std::string()>& read) {
    std::string name = fmt::format("{}\n{}", what, key);
    const auto found = known_.find(name);
    if (found != known_.end()) return found->second;
    std::string said;
    try {
        said = read();
    } catch (const store::Error&) {
        // Whatever it was, the form will meet it in its own words.
    }
    return known_.emplace(std::move(name), std::move(said)).first->second;
}

std::string Marks::text_of(const char* name) const {
    const Control* const control = form_.controls().find(name);
    if (control == nullptr || control->locked() || !control->visible()) return {};
    return control->shown();
}

void Marks::mark(const char* control, std::string text) {
    if (!text.empty()) found_.push_back({form_.controls().find(control), -1, -1, std::move(text)});
}

void Marks::mark(const Grid& grid, int row, int column, std::string text) {
    if (!text.empty()) found_.push_back({&grid, row, column, std::move(text)});
}

void Marks::look_at_dates() {
    for (const Control* const control : form_.controls().all()) {
        const auto* const field = dynamic_cast<const controls::DateField*>(control);
        if (field == nullptr || field->empty() || field->locked() || !field->visible()) continue;
        const std::string& format = form_.context().BRIMLEY_DATE_FORMAT;
        if (!kernel::try_user_date(field->text(), format))
            found_.push_back({field, -1, -1, fmt::format("{} is not a date ({})", field->text(), format)});
    }
}

void Marks::look_at_vendor() {
    const std::string vendor = text_of(kVendor);
    if (vendor.empty()) return;
    const std::string& name = known("name of vendor", vendor, [&]() -> std::string {
        const auto row = find("Vendor_table", {{"vendor_no", vendor}});
        return row.at_eof() ? "none" : "=" + row.text("VENDOR_NAME");
    });
    if (name.empty()) return;  // it could not be read
    if (name == "none") return mark(kVendor, fmt::format("There is no vendor {}", vendor));
    const std::string typed = text_of(kVendorName);
    if (typed.empty() || typed == name.substr(1)) return;
    const std::string& other = known("vendor of name", typed, [&] {
        const auto row = find("Vendor_table", {{"VENDOR_NAME", typed}});
        return row.at_eof() ? std::string{} : row.text("vendor_no");
    });
    mark(kVendorName, other.empty()
                          ? fmt::format("{} is {}", vendor, name.substr(1))
                          : fmt::format("This is the name of {}; {} is {}", other, vendor, name.substr(1)));
}

// A void document does not count, nor does the one that is being edited.
void Marks::look_at_invoice_number() {
    const std::string number = text_of(kInvoiceNumber);
    const Control* const vendor = form_.controls().find(kVendor);
    if (number.empty() || vendor == nullptr || vendor->shown().empty()) return;
    const Control* const own = form_.controls().find("txtfkey");
    const std::string fkey = own == nullptr ? std::string{} : own->shown();
    mark(kInvoiceNumber, known("invoice number", vendor->shown() + "\n" + number + "\n" + fkey, [&] {
             auto row = find("AP_header_table", {{"invoice_no", number}});
             while (!row.at_eof() && (row.text("vendor_no") != vendor->shown() || row.flag("void") ||
                                      (row.text("fkey") == fkey && mode_ == frame::Mode::edit)))
                 row.MoveNext();
             return row.at_eof() ? std::string{}
                                 : fmt::format("This vendor already has {}: {}", number, row.text("docno"));
         }));
}

std::string Marks::fault_of_account(std::string_view text) {
    if (text.empty()) return {};
    const std::string accno(number_of_account(text));
    return known("account", accno, [&]() -> std::string {
        const auto row = find("Account_master_table", {{"accno", accno}});
        if (row.at_eof()) return fmt::format("There is no account {}", accno);
        return row.flag("inactive") ? fmt::format("Account {} is inactive", accno) : std::string{};
    });
}

void Marks::look_at_account_fields() {
    for (const char* const field : kAccountFields)
        mark(field, fault_of_account(text_of(field)));
}

void Marks::look_at_lines() {
    for (const Control* const control : form_.controls().all()) {
        const auto* const grid = dynamic_cast<const Grid*>(control);
        if (grid == nullptr || !grid->allow_update || grid->locked() || !grid->visible()) continue;
        const int rows = grid->array.used_rows();
        for (int row = 0; rows <= kRowsMax && row < rows; ++row)
            look_at_line(*grid, row);
    }
}

void Marks::look_at_line(const Grid& grid, int row) {
    for (const std::string_view caption : kAccountColumns) {
        const int column = grid.get_column(caption);
        if (column >= 0) mark(grid, row, column, fault_of_account(grid.cell(row, caption)));
    }
    look_at_tax(grid, row);
}

std::string Marks::rate_of(const std::string& tax_code) {
    return known("rate", tax_code, [&]() -> std::string {
        double rate = 0;
        for (auto part = find("Tax_code_details_table", {{"tax_code", tax_code}}); !part.at_eof();
             part.MoveNext()) {
            const auto authority =
                find("Tax_authority_table", {{"tax_authority", part.text("tax_authority")}});
            if (!authority.at_eof()) rate += authority.number("Rate");
        }
        return rate == 0 ? std::string{} : store::shortest_number(rate);
    });
}

void Marks::look_at_tax(const Grid& grid, int row) {
    const int column = grid.get_column("tax amount");
    if (column < 0) return;
    const auto amount = [&](const char* caption) { return money_value(grid.cell(row, caption)); };
    const std::string tax_code = grid.cell(row, "tax code");
    const char* const net = grid.get_column("net amount") >= 0 ? "net amount" : "taxable amount";
    if (tax_code.empty() || amount(net) == 0 || amount("tax amount") != 0) return;
    const std::string rate = rate_of(tax_code);
    if (!rate.empty())
        mark(grid, row, column,
             fmt::format("{} has a rate of {} %, but there is no tax: type the amount again to compute it",
                         tax_code, rate));
}

}  // namespace brimley::marks
