// Payments of every kind.
#include "company/field_rules.h"

namespace brimley::company::payment_fields {

namespace {

using enum MustBe;

constexpr const char* kInvoicePayment = "APform_payment";
constexpr const char* kPrepayment = "APform_prepayment";
constexpr const char* kMiscPayment = "APform_misc_payment";

template <const char* const* kForm>
bool of(const RowInRules& row, const RowInRules* /*owner*/) {
    return row.is("source_form", *kForm);
}
template <const char* const* kForm>
bool line_of(const RowInRules& /*row*/, const RowInRules* header) {
    return header->is("source_form", *kForm);
}
// A card payment does not name its form.
bool of_card(const RowInRules& row, const RowInRules* /*owner*/) {
    return row.is("doctype", "pc") && !row.is("GLFKEY", "");
}
bool line_of_card(const RowInRules& /*row*/, const RowInRules* header) { return of_card(*header, nullptr); }
bool of_any_form(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_card(row, nullptr) || row.is("source_form", kInvoicePayment) ||
           row.is("source_form", kPrepayment) || row.is("source_form", kMiscPayment);
}
// Its GL document says of which kind it is.
template <const char* const* kSource>
bool posted_as(const RowInRules& /*row*/, const RowInRules* posting) {
    return posting->is("Source", *kSource) && !posting->is("source_form", "");
}
bool by_check(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row, nullptr) && row.is("payby", "Check");
}
bool not_by_check(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row, nullptr) && !row.is("payby", "Check");
}
bool is_void(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row, nullptr) && row.flag("void");
}
bool is_in_use(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row, nullptr) && !row.flag("void");
}

constexpr FieldRule kAnyHeader[]{
    {"company docno doctype payment_date Currency payby period fyear GLFKEY user_created date_created "
     "time_created",
     filled},
    {"exchange_rate", amount_above_or_0},
    {"Source source_docno", empty},
};

constexpr FieldRule kHeaderAndPosting[]{
    {"docno", as_there, "source_docno"},
    {"company Currency period fyear exchange_rate", as_there},
    {"payment_date", as_there, "gldate"},
};

constexpr const char* kPaymentSource = "AP-PAYMENT";
constexpr const char* kMiscSource = "AP-MISCPAY";
constexpr const char* kPrepaymentSource = "AP";
constexpr const char* kCardSource = "AP-CARD";
constexpr FieldRule kPostedAsPayment[]{{"doctype", one_of, "py"}, {"source_form", one_of, "APform_payment"}};
constexpr FieldRule kPostedAsMisc[]{{"doctype", one_of, "mpy"},
                                    {"source_form", one_of, "APform_misc_payment"}};
constexpr FieldRule kPostedAsPrepayment[]{{"doctype", one_of, "pp"},
                                          {"source_form", one_of, "APform_prepayment"}};
constexpr FieldRule kPostedAsCard[]{{"doctype", one_of, "pc"}, {"source_form", empty}};

constexpr FieldRule kByCheck[]{{"check_no", filled}};
constexpr FieldRule kNotByCheck[]{{"check_no check_date", empty}};
constexpr FieldRule kVoid[]{{"void_date", filled}};
constexpr FieldRule kInUse[]{{"void_date", empty}};

constexpr FieldRule kInvoicePaymentHeader[]{
    {"doctype", one_of, "py"},
    {"vendor_no", filled},
    {"remit_to bank_accno po_no prepayment_accno invoiced card_balance fee_amount expense_accno", empty},
};

constexpr FieldRule kPrepaymentHeader[]{
    {"doctype", one_of, "pp"},
    {"vendor_no prepayment_accno", filled},
    {"payment_base_amount total_amount total_base_amount total_currency card_balance fee_amount "
     "expense_accno",
     empty},
};

constexpr FieldRule kCardHeader[]{
    {"doctype", one_of, "pc"},
    {"vendor_no", filled},
    {"remit_to bank_accno payment_base_amount total_amount total_base_amount total_currency po_no "
     "prepayment_accno invoiced source_form",
     empty},
};

constexpr FieldRule kMiscHeader[]{
    {"doctype", one_of, "mpy"},
    {"remit_to", filled},
    {"vendor_no bank_accno payment_base_amount total_amount total_base_amount total_currency po_no "
     "prepayment_accno invoiced card_balance fee_amount expense_accno",
     empty},
};

constexpr FieldRule kAnyLine[]{
    {"docno company vendor_no payment_date void user_created", as_there},
    {"date_created", made_with_it},
    {"remark", empty},
};

constexpr FieldRule kInvoicePaymentLine[]{{"item_no ap_docno pay_item", filled}};

constexpr FieldRule kOnlyLine[]{
    {"Currency", as_there},
    {"pay_item", one_of, "1"},
    {"item_no ap_doctype invoice_no invoice_date discount_available discount_taken writeoff discount_accno "
     "writeoff_accno prepay_accno invoice_exchange_rate payment_exchange_rate pay_base_amount",
     empty},
};
constexpr FieldRule kPrepaymentLine[]{{"ap_docno", as_there, "docno"}};
constexpr FieldRule kCardLine[]{{"ap_docno", empty}};

constexpr FieldRule kMiscLine[]{
    {"docno company payment_date void date_created time_created", as_there},
    {"description", empty},
    {"pay_item account", filled},
};

bool line_of_any(const RowInRules& /*row*/, const RowInRules* header) {
    return of_any_form(*header, nullptr);
}
bool only_line(const RowInRules& /*row*/, const RowInRules* header) {
    return of_card(*header, nullptr) || header->is("source_form", kPrepayment);
}
bool any(const RowInRules& /*row*/, const RowInRules* /*owner*/) { return true; }

constexpr FieldRule kWaiting[]{{"po_no", as_there}, {"prepayment_no", as_there, "docno"}};

}  // namespace

std::span<const RowRules> rules() {
    constexpr const char* kHeaders = "Payment_header_table";
    constexpr const char* kLines = "Payment_transaction_table";
    const auto header = [](bool (*apply)(const RowInRules&, const RowInRules*),
                           std::span<const FieldRule> rules) {
        return RowRules{kHeaders, "Payment", nullptr, apply, nullptr, nullptr, nullptr, nullptr, rules};
    };
    const auto posted = [](bool (*apply)(const RowInRules&, const RowInRules*),
                           std::span<const FieldRule> rules) {
        return RowRules{kHeaders,          "Payment", nullptr,           apply, "GLFKEY",
                        "GL_header_table", "fkey",    "its GL document", rules};
    };
    const auto line = [](const char* table, bool (*apply)(const RowInRules&, const RowInRules*),
                         std::span<const FieldRule> rules) {
        return RowRules{table, "Payment", "pay_item", apply, "fkey", kHeaders, "fkey", "its header", rules};
    };
    static const RowRules kRules[]{
        header(of_any_form, kAnyHeader),
        header(by_check, kByCheck),
        header(not_by_check, kNotByCheck),
        header(is_void, kVoid),
        header(is_in_use, kInUse),
        header(of<&kInvoicePayment>, kInvoicePaymentHeader),
        header(of<&kPrepayment>, kPrepaymentHeader),
        header(of_card, kCardHeader),
        header(of<&kMiscPayment>, kMiscHeader),
        posted(of_any_form, kHeaderAndPosting),
        posted(posted_as<&kPaymentSource>, kPostedAsPayment),
        posted(posted_as<&kMiscSource>, kPostedAsMisc),
        posted(posted_as<&kPrepaymentSource>, kPostedAsPrepayment),
        posted(posted_as<&kCardSource>, kPostedAsCard),
        line(kLines, line_of_any, kAnyLine),
        line(kLines, line_of<&kInvoicePayment>, kInvoicePaymentLine),
        line(kLines, only_line, kOnlyLine),
        line(kLines, line_of<&kPrepayment>, kPrepaymentLine),
        line(kLines, line_of_card, kCardLine),
        line("Payment_misc_transaction_table", line_of<&kMiscPayment>, kMiscLine),
        {"Prepayment_waiting_PO_table", "Order that waits for prepayment", nullptr, any, "prepayment_fkey",
         kHeaders, "fkey", "the prepayment", kWaiting},
    };
    return kRules;
}

}  // namespace brimley::company::payment_fields
