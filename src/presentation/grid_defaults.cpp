#include "presentation/grid_defaults.h"

namespace brimley::presentation {

namespace {

using Column = GridColumnDefault;
constexpr ColumnKind kText = ColumnKind::text;
constexpr ColumnKind kAmount = ColumnKind::amount;
constexpr ColumnKind kCentred = ColumnKind::centred;
constexpr ColumnKind kCheckBox = ColumnKind::check_box;

// An invoice, debit note or credit note. The tax amount is changed through the tax grid.
constexpr Column kInvoiceLines[] = {
    {"pay item", 800, kCentred, kPlain},
    {"description", 2800, kText, kEntered},
    {"gross amount", 1400, kAmount, kEntered},
    {"open amount", 1400, kAmount, kPlain},
    {"taxable amount", 1400, kAmount, kEntered},
    {"tax amount", 1200, kAmount, kPlain},
    {"tax code", 1100, kText, kEntered | kCompleted},
    {"purchase account", 1500, kText, kEntered | kCompleted},
    {"account name", 2600, kText, kPlain},
    {"paid", 700, kCentred, kPlain},
    {"discount available", 1400, kAmount, kPlain},
    {"discount taken", 1400, kAmount, kPlain},
    {"write-off", 1200, kAmount, kPlain},
    {"created date", 1200, kCentred, kPlain},
    {"created time", 1100, kCentred, kPlain},
    {"user created", 1200, kText, kPlain},
    {"last modified date", 1400, kCentred, kPlain},
    {"last modified time", 1400, kCentred, kPlain},
    {"user updated", 1200, kText, kPlain},
    {"computer id", 1400, kText, kPlain},
};

// The taxes of one line, by authority. The last three columns tie the rows to their line.
constexpr Column kTaxDetails[] = {
    {"no", 450, kCentred, kPlain},
    {"tax authority", 1200, kText, kPlain},
    {"taxable amount", 1300, kAmount, kPlain},
    {"rate", 800, kAmount, kEntered},
    {"tax amount", 1100, kAmount, kEntered},
    {"taxable", 800, kCheckBox, kEntered},
    {"allocated tax", 1200, kAmount, kPlain},
    {"recoverable tax", 1250, kAmount, kPlain},
    {"expensed tax", 1200, kAmount, kPlain},
    {"pay item", 800, kCentred, kHidden},
    {"include tax", 900, kCentred, kHidden},
    {"amount", 1200, kAmount, kHidden},
};

// The taxes of the whole document. "tax included" is an amount here, not a flag.
constexpr Column kTaxSummary[] = {
    {"no", 450, kCentred, kPlain},
    {"tax authority", 1200, kText, kPlain},
    {"total tax", 1200, kAmount, kPlain},
    {"tax", 1100, kAmount, kPlain},
    {"tax included", 1100, kAmount, kPlain},
    {"allocated tax", 1200, kAmount, kPlain},
    {"recoverable tax", 1250, kAmount, kPlain},
    {"expensed tax", 1200, kAmount, kPlain},
};

// Open items of a vendor. The rows of prepayments and credit notes have a style of their own.
constexpr Column kPaymentLines[] = {
    {"on due", 700, kCheckBox, kRowStyle},
    {"AP document no", 1600, kText, kRowStyle},
    {"invoice no", 1500, kText, kRowStyle},
    {"pay item", 800, kCentred, kRowStyle},
    {"gross amount", 1400, kAmount, kRowStyle},
    {"open amount", 1400, kAmount, kRowStyle},
    {"pay amount", 1400, kAmount, kEntered | kRowStyle},
    {"base-currency amount", 1700, kAmount, kRowStyle},
    {"invoice date", 1200, kCentred, kRowStyle},
    {"due date", 1200, kCentred, kRowStyle},
    {"discount taken", 1300, kAmount, kEntered | kRowStyle},
    {"write-off", 1200, kAmount, kEntered | kRowStyle},
    {"net balance", 1400, kAmount, kRowStyle},
    {"discount account", 1500, kText, kEntered | kCompleted | kRowStyle},
    {"write-off account", 1500, kText, kEntered | kCompleted | kRowStyle},
    {"discount available", 1500, kAmount, kRowStyle},
    {"discount percent", 1300, kAmount, kRowStyle},
    {"document type", 1200, kCentred, kRowStyle},
    {"prepay account", 1400, kText, kRowStyle},
    {"currency", 900, kCentred, kRowStyle},
    {"invoice exch rate", 1400, kAmount, kRowStyle},
    {"payment exch rate", 1400, kAmount, kEntered | kRowStyle},
};

// The payments that used up a prepayment.
constexpr Column kPrepaymentLines[] = {
    {"AP document no", 1600, kText, kPlain},
    {"date", 1200, kCentred, kPlain},
    {"pay amount", 1400, kAmount, kPlain},
    {"currency", 900, kCentred, kPlain},
};

constexpr Column kMiscPaymentLines[] = {
    {"pay item", 800, kCentred, kPlain},
    {"amount", 1400, kAmount, kEntered},
    {"net amount", 1400, kAmount, kEntered},
    {"account", 1400, kText, kEntered | kCompleted},
    {"account name", 2600, kText, kPlain},
    {"tax included", 1100, kCheckBox, kEntered},
    {"tax code", 1100, kText, kEntered | kCompleted},
    {"tax amount", 1200, kAmount, kPlain},
    {"allocated tax", 1300, kAmount, kPlain},
    {"reference", 2000, kText, kEntered},
    {"created date", 1200, kCentred, kPlain},
    {"created time", 1100, kCentred, kPlain},
    {"computer id", 1400, kText, kPlain},
};

constexpr Column kCardPaymentLines[] = {
    {"AP document no", 1600, kText, kPlain}, {"pay item", 800, kCentred, kPlain},
    {"gross amount", 1400, kAmount, kPlain}, {"open amount", 1400, kAmount, kPlain},
    {"pay amount", 1400, kAmount, kPlain},   {"balance", 1400, kAmount, kPlain},
    {"currency", 900, kCentred, kPlain},
};

constexpr Column kCheckLines[] = {
    {"remit to", 2600, kText, kPlain},       {"check no", 1300, kText, kPlain},
    {"check date", 1200, kCentred, kPlain},  {"payment no", 1500, kText, kPlain},
    {"payment type", 1300, kText, kPlain},   {"AP document no", 1600, kText, kPlain},
    {"invoice no", 1500, kText, kPlain},     {"invoice date", 1200, kCentred, kPlain},
    {"check amount", 1400, kAmount, kPlain}, {"pay item", 800, kCentred, kPlain},
    {"pay amount", 1400, kAmount, kPlain},   {"currency", 900, kCentred, kPlain},
    {"bank account", 1400, kText, kPlain},   {"period", 800, kCentred, kPlain},
    {"fiscal year", 1000, kCentred, kPlain},
};

// The user unticks "due" where no invoice is wanted.
constexpr Column kRecurringLines[] = {
    {"vendor no", 1200, kText, kPlain},          {"vendor name", 2600, kText, kPlain},
    {"recurring no", 1500, kText, kPlain},       {"recurring name", 2200, kText, kPlain},
    {"recurring date", 1200, kCentred, kPlain},  {"begin date", 1200, kCentred, kPlain},
    {"expiration date", 1300, kCentred, kPlain}, {"created date", 1200, kCentred, kPlain},
    {"no of invoice", 1200, kCentred, kPlain},   {"no of issue", 1100, kCentred, kPlain},
    {"frequency", 1100, kText, kPlain},          {"due date", 1200, kCentred, kPlain},
    {"due", 700, kCheckBox, kEntered},
};

constexpr Column kNewRates[] = {
    {"currency", 1000, kCentred, kEntered | kCompleted}, {"rate", 1200, kAmount, kEntered},
    {"every vendor", 1100, kCheckBox, kEntered},         {"vendor group", 1400, kText, kEntered},
    {"vendor no", 1200, kText, kEntered | kCompleted},   {"vendor name", 2600, kText, kPlain},
};

// "document no" and "date" must stand right after "vendor name": total rows write into them by position, a
// text as long as "Revalue EUR at rate".
constexpr Column kRevaluationResult[] = {
    {"vendor no", 1200, kText, kPlain},
    {"vendor name", 2600, kText, kPlain},
    {"document no", 2000, kText, kPlain},
    {"date", 1200, kCentred, kPlain},
    {"pay item", 800, kCentred, kPlain},
    {"currency", 900, kCentred, kPlain},
    {"original rate", 1200, kAmount, kPlain},
    {"invoice amount", 1400, kAmount, kPlain},
    {"original base-currency amount", 2200, kAmount, kPlain},
    {"unrealized Gain/Loss", 1700, kAmount, kPlain},
    {"new base-currency amount", 2000, kAmount, kPlain},
};

// The form completes the captions of the last two with the base currency.
constexpr Column kRevaluationSummary[] = {
    {"account no", 1400, kText, kPlain}, {"account name", 2800, kText, kPlain},
    {"currency", 900, kCentred, kPlain}, {"debit", 1500, kAmount, kPlain},
    {"credit", 1500, kAmount, kPlain},
};

constexpr Column kAgingLines[] = {
    {"vendor no", 1200, kText, kPlain},       {"vendor name", 2600, kText, kPlain},
    {"AP document no", 1600, kText, kPlain},  {"invoice no", 1500, kText, kPlain},
    {"invoice date", 1200, kCentred, kPlain}, {"due date", 1200, kCentred, kPlain},
    {"pay item", 800, kCentred, kPlain},      {"gross amount", 1400, kAmount, kPlain},
    {"open amount", 1400, kAmount, kPlain},   {"current", 1400, kAmount, kPlain},
    {"1 - 30", 1300, kAmount, kPlain},        {"31 - 60", 1300, kAmount, kPlain},
    {"61 - 90", 1300, kAmount, kPlain},       {"> 90", 1300, kAmount, kPlain},
};

constexpr Column kInquiryLines[] = {
    {"vendor no", 1200, kText, kPlain},     {"vendor name", 2600, kText, kPlain},
    {"document no", 1600, kText, kPlain},   {"vendor invoice no", 1600, kText, kPlain},
    {"pay item", 800, kCentred, kPlain},    {"document date", 1200, kCentred, kPlain},
    {"due date", 1200, kCentred, kPlain},   {"gross amount", 1400, kAmount, kPlain},
    {"open amount", 1400, kAmount, kPlain}, {"paid", 700, kCheckBox, kPlain},
    {"hold", 700, kCheckBox, kPlain},
};

constexpr Column kHistoryLines[] = {
    {"vendor no", 1200, kText, kPlain},       {"vendor name", 2600, kText, kPlain},
    {"document no", 1600, kText, kPlain},     {"document type", 1300, kText, kPlain},
    {"invoice no", 1500, kText, kPlain},      {"AP doc no", 1600, kText, kPlain},
    {"pay item", 800, kCentred, kPlain},      {"date", 1200, kCentred, kPlain},
    {"gross amount", 1400, kAmount, kPlain},  {"open amount", 1400, kAmount, kPlain},
    {"pay amount", 1400, kAmount, kPlain},    {"balance", 1400, kAmount, kPlain},
    {"discount", 1200, kAmount, kPlain},      {"write-off", 1200, kAmount, kPlain},
    {"check no", 1300, kText, kPlain},        {"check date", 1200, kCentred, kPlain},
    {"total payment", 1400, kAmount, kPlain}, {"fee amount", 1200, kAmount, kPlain},
};

// The pane in which the columns to print are ticked.
constexpr Column kPrintColumns[] = {
    {"column", 2600, kText, kPlain},
    {"print", 700, kCheckBox, kEntered},
};

// The payment history builds its column pane from rows under 'ARreport_inquiry', the name of a sibling
// module's form.
constexpr GridDefault kGrids[] = {
    {"APform_invoice", "dbgrid1", kInvoiceLines},
    {"APform_invoice", "grid_tax", kTaxDetails},
    {"APform_invoice", "grid_tax_summary", kTaxSummary},
    {"APform_payment", "dbgrid1", kPaymentLines},
    {"APform_prepayment", "dbgrid1", kPrepaymentLines},
    {"APform_misc_payment", "dbgrid1", kMiscPaymentLines},
    {"APform_misc_payment", "grid_tax", kTaxDetails},
    {"APform_misc_payment", "grid_tax_summary", kTaxSummary},
    {"APform_creditcard_payment", "dbgrid1", kCardPaymentLines},
    {"APform_void_check", "dbgrid1", kCheckLines},
    {"APreport_recur_inquiry", "dbgrid1", kRecurringLines},
    {"APreport_recur_inquiry", "grid_sel", kPrintColumns},
    {"APform_revalue", "dbgridcmd", kNewRates},
    {"APform_revalue", "dbgrid1", kRevaluationResult},
    {"APform_revalue", "dbgrid2", kRevaluationSummary},
    {"APreport_aging", "dbgrid1", kAgingLines},
    {"APreport_aging", "grid_sel", kPrintColumns},
    {"APreport_inquiry", "dbgrid1", kInquiryLines},
    {"APreport_inquiry", "grid_sel", kPrintColumns},
    {"APreport_payhistory", "dbgrid1", kHistoryLines},
    {"ARreport_inquiry", "grid_sel", kPrintColumns},
};

}  // namespace

std::span<const GridDefault> grid_defaults() { return kGrids; }

}  // namespace brimley::presentation
