// The masters of time and numbers: fiscal years and their periods, the working period, how documents are
// numbered; and purchase orders, which another module of the suite would keep.
#include <algorithm>

#include "company/add_year.h"
#include "kernel/module_g3.h"
#include "masters/descriptions.h"

namespace brimley::masters {

namespace {

using enum Field::Kind;

constexpr Known kYear{"Fiscalyear_table", "fyear", "", "fiscal year"};
const std::vector<const char*> kPeriods{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"};

// The four fields that say from which period to which.
struct Span {
    const char* start_year;
    const char* start_period;
    const char* end_year;
    const char* end_period;

    [[nodiscard]] int filled_in(const Entered& row) const {
        const char* const all[] = {start_year, start_period, end_year, end_period};
        return static_cast<int>(
            std::ranges::count_if(all, [&](const char* field) { return !row.text(field).empty(); }));
    }
    [[nodiscard]] bool is_backwards(const Entered& row) const {
        const auto place = [&](const char* year, const char* period) {
            return row.number(year) * 100 + row.number(period);
        };
        return place(end_year, end_period) < place(start_year, start_period);
    }
    void add_fields(std::vector<Field>& fields, const char* const (&captions)[4]) const {
        const char* const names[] = {start_year, start_period, end_year, end_period};
        for (int i = 0; i < 4; ++i) {
            Field field{.name = names[i], .caption = captions[i], .kind = i % 2 == 0 ? known : choice};
            if (field.kind == known)
                field.of = kYear;
            else
                field.choices = kPeriods;
            fields.push_back(field);
        }
    }
};

constexpr Span kWorking{"working_start_fyear", "working_start_period", "working_end_fyear",
                        "working_end_period"};
constexpr Span kAllowed{"allow_start_fyear", "allow_start_period", "allow_end_fyear", "allow_end_period"};

std::string fault_of_working_period(const Entered& row) {
    if (row.text("activate_working_period") != "0" && kWorking.filled_in(row) < 4)
        return "A working period has a first and a last year and period.";
    for (const Span& span : {kWorking, kAllowed}) {
        const int filled = span.filled_in(row);
        if (filled != 0 && filled != 4) return "Fill in both years and both periods, or none of them.";
        if (filled == 4 && span.is_backwards(row)) return "The last period must not be before the first one.";
    }
    return {};
}

// Two kinds of documents that begin alike would be given the same numbers, and are looked for by them.
std::string fault_of_prefixes(kernel::ModuleG3& kernel) {
    auto rows = kernel.read("SELECT prefix FROM Next_number_format_table ORDER BY prefix");
    std::string last;
    for (bool is_first = true; !rows.at_eof(); rows.MoveNext(), is_first = false) {
        const std::string prefix = rows.text("prefix");
        if (!is_first && prefix == last) return "Two kinds of documents cannot have the same prefix.";
        last = prefix;
    }
    return {};
}

std::string fault_of_digits(const Entered& row) {
    const double digits = row.number("running_no_digit");
    return digits >= 1 && digits <= 9 && digits == static_cast<int>(digits)
               ? ""
               : "Digits must be a whole number from 1 to 9.";
}

}  // namespace

Master fiscal_years() {
    return {
        .identity = {"Master_fiscal_year", "Fiscal years", ""},
        .table = "Fiscalyear_table",
        .one = "fiscal year",
        .fields =
            {{.name = "fyear", .caption = "Year", .key = true, .required = true, .listed = true},
             {.name = "StartDate", .caption = "First day", .kind = date, .listed = true, .computed = true},
             {.name = "EndDate", .caption = "Last day", .kind = date, .listed = true, .computed = true},
             {.name = "history", .caption = "Closed", .kind = flag, .listed = true}},
        .make = [](kernel::ModuleG3& kernel,
                   const Entered& row) { company::add_year(kernel.database(), row.text("fyear")); },
        .stays = true};
}

Master periods() {
    return {
        .identity = {"Master_period", "Periods", ""},
        .table = "Period_table",
        .one = "period",
        .fields = {{.name = "fyear",
                    .caption = "Year",
                    .kind = known,
                    .key = true,
                    .required = true,
                    .listed = true,
                    .of = kYear},
                   {.name = "StartDate",
                    .caption = "First day",
                    .kind = date,
                    .key = true,
                    .listed = true,
                    .computed = true},
                   {.name = "EndDate", .caption = "Last day", .kind = date, .listed = true, .computed = true},
                   {.name = "period", .caption = "Period", .listed = true, .computed = true}},
        .shown_only = true};
}

Master working_period() {
    Master master{
        .identity = {"Master_working_period", "Working period", ""},
        .table = "COA_config_table",
        .one = "working period",
        .fields = {{.name = "Currency", .caption = "Base currency", .listed = true, .computed = true},
                   {.name = "activate_working_period",
                    .caption = "Documents only within the working period",
                    .kind = flag,
                    .listed = true}},
        .fault = fault_of_working_period,
        .single = true};
    kWorking.add_fields(master.fields, {"From year", "From period", "To year", "To period"});
    master.fields.push_back(
        {.name = "allow_history_update", .caption = "Also in these earlier periods", .kind = flag});
    kAllowed.add_fields(master.fields,
                        {"Earlier from year", "Earlier from period", "Earlier to year", "Earlier to period"});
    return master;
}

Master numbers() {
    return {.identity = {"Master_number", "Shape of the document numbers", ""},
            .table = "Next_number_config_table",
            .one = "shape of the document numbers",
            .fields =
                {{.name = "structure",
                  .caption = "1 prefix, year, number; 2 year, prefix, number; 3 prefix, number",
                  .kind = choice,
                  .required = true,
                  .listed = true,
                  .choices = {"1", "2", "3"}},
                 {.name = "fyear_digit",
                  .caption = "Digits of the year, 2 or 4",
                  .kind = number,
                  .required = true,
                  .listed = true},
                 {.name = "seperator1", .caption = "- after the first part", .kind = flag, .listed = true},
                 {.name = "seperator2", .caption = "- after the second part", .kind = flag, .listed = true}},
            .fault = [](const Entered& row) -> std::string {
                const double digits = row.number("fyear_digit");
                return digits == 2 || digits == 4 ? "" : "The digits of the year must be 2 or 4.";
            },
            .single = true};
}

Master number_formats() {
    return {.identity = {"Master_number_format", "Prefixes of the document numbers", ""},
            .table = "Next_number_format_table",
            .one = "prefix",
            .fields = {{.name = "doctype", .caption = "Kind", .key = true, .required = true, .listed = true},
                       {.name = "prefix", .caption = "Prefix", .required = true, .listed = true},
                       {.name = "running_no_digit", .caption = "Digits", .required = true, .listed = true}},
            .fault = fault_of_digits,
            .fault_of_company = fault_of_prefixes,
            .stays = true};
}

Master counters() {
    return {.identity = {"Master_counter", "Next document numbers", ""},
            .table = "Docno_master_table",
            .one = "next number",
            .fields = {{.name = "fiscalyear",
                        .caption = "Year",
                        .kind = known,
                        .key = true,
                        .required = true,
                        .listed = true,
                        .of = kYear},
                       {.name = "doctype",
                        .caption = "Kind",
                        .kind = known,
                        .key = true,
                        .required = true,
                        .listed = true,
                        .of = {"Next_number_format_table", "doctype", "prefix", "kind of document"}},
                       {.name = "nextdocno",
                        .caption = "Next number",
                        .kind = number,
                        .required = true,
                        .listed = true,
                        .rising = true}},
            .fault = [](const Entered& row) -> std::string {
                const double next = row.number("nextdocno");
                return next >= 1 && next < 1e9 && next == static_cast<int>(next)
                           ? ""
                           : "Next number must be a whole number from 1.";
            },
            .stays = true,
            .of_company = true};
}

Master purchase_orders() {
    return {
        .identity = {"Master_purchase_order", "Purchase orders", ""},
        .table = "PO_header_table",
        .one = "purchase order",
        .fields = {{.name = "docno", .caption = "Order no", .key = true, .required = true, .listed = true},
                   {.name = "vendor_no",
                    .caption = "Vendor",
                    .kind = known,
                    .required = true,
                    .listed = true,
                    .of = kVendor},
                   {.name = "received", .caption = "Received", .kind = flag, .listed = true},
                   {.name = "void", .caption = "Void", .kind = flag, .listed = true}},
        .used_by = {{"Prepayment_waiting_PO_table", "po_no", "prepayments"}}};
}

}  // namespace brimley::masters
