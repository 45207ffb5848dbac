#include <fmt/format.h>
#include <gtest/gtest.h>

#include "hostile_entry.h"
#include "inquiries/apreport_aging.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"
#include "payments/kinds_of_payments.h"
#include "payments/payment_entry.h"
#include "payments/void_check/apform_void_check.h"
#include "revaluation/revaluation_entry.h"
#include "support/recurring_templates.h"
#include "support/template_entry.h"

namespace brimley::testing {

namespace {

constexpr int kExit = 100;
constexpr int kSave = 101;
constexpr int kFind = 104;
constexpr int kEdit = 106;
constexpr int kSaveFont = 401;

const std::vector<EnteredLine> kTaxedLines{{"5000", "STACK", "taxable amount", "100.00"},
                                           {"5900", "GST5", "gross amount", "210.00"}};

void begin_payment_of_items(DeskOfUser& user, const char* way) {
    user.ap.showform_APform_payment();
    auto& payment = *user.ap.frm_payment;
    begin_payment(payment, "V1001");
    edit_item_cell(payment, 0, "pay amount", "70.00");
    edit_item_cell(payment, 1, "write-off", "5.00");
    edit_item_cell(payment, 1, "pay amount", "55.00");
    if (std::string(way) == "Check") {
        EXPECT_EQ(payment.cmbpayby.type(way), controls::Refusal::none);
        EXPECT_EQ(payment.cmbbank.type("MAIN"), controls::Refusal::none);
        EXPECT_EQ(payment.txtcheck.type("100"), controls::Refusal::none);
        EXPECT_EQ(payment.txtcheckdate.type("16/03/2026"), controls::Refusal::none);
    }
    pay_total(payment);
}

// The sample company, and what a user has saved in it.
void make_sample_with(const std::string& company, void (*saved)(DeskOfUser& user)) {
    company::create_company_file(company, company::SampleCompany{"anna"});
    const store::OpenCompany open = store::open_company(company, kernel::company_tables());
    DeskOfUser user(open);
    saved(user);
}

void save_invoice_of_items(DeskOfUser& user) {
    save_invoice(user, {.lines = {{"5000", "NOTAX", "gross amount", "100.00"},
                                  {"5000", "NOTAX", "gross amount", "60.00"}}});
}

void pay_invoice_of_items(DeskOfUser& user, const char* way) {
    save_invoice_of_items(user);
    begin_payment_of_items(user, way);
    EXPECT_EQ(user.ap.frm_payment->press(kSave), controls::Refusal::none);
}

CompanyOriginal& with_open_items() {
    static CompanyOriginal original(
        [](const std::string& company) { make_sample_with(company, save_invoice_of_items); });
    return original;
}

CompanyOriginal& with_a_payment() {
    static CompanyOriginal original([](const std::string& company) {
        make_sample_with(company, [](DeskOfUser& user) { pay_invoice_of_items(user, "Cash"); });
    });
    return original;
}

CompanyOriginal& with_a_check() {
    static CompanyOriginal original([](const std::string& company) {
        make_sample_with(company, [](DeskOfUser& user) { pay_invoice_of_items(user, "Check"); });
    });
    return original;
}

CompanyOriginal& with_a_taxed_invoice() {
    static CompanyOriginal original([](const std::string& company) {
        make_sample_with(company, [](DeskOfUser& user) { save_invoice(user, {.lines = kTaxedLines}); });
    });
    return original;
}

struct InvoiceSession : HostileSession {
    explicit InvoiceSession(CompanyOriginal& original = sample_original()) : HostileSession(original) {
        user.ap.showform_APform_invoice();
    }
    frame::Form& form() override { return *user.ap.frm_invoice; }
    void enter_document() {
        enter(*user.ap.frm_invoice, {.currency = "EUR", .rate = "1.0837", .lines = kTaxedLines});
    }
};

// The invoice that is there.
struct ShownInvoiceSession : InvoiceSession {
    ShownInvoiceSession() : InvoiceSession(with_a_taxed_invoice()) {}
};

struct PaymentSession : HostileSession {
    explicit PaymentSession(CompanyOriginal& original = with_open_items()) : HostileSession(original) {}
    frame::Form& form() override { return *user.ap.frm_payment; }
    void enter_payment(const char* way) { begin_payment_of_items(user, way); }
};

// The payment that is there.
struct ShownPaymentSession : PaymentSession {
    ShownPaymentSession() : PaymentSession(with_a_payment()) { user.ap.showform_APform_payment(); }
};

struct CheckSession : HostileSession {
    CheckSession() : HostileSession(with_a_check()) {}
    frame::Form& form() override { return *user.ap.frm_void_check; }
    void pick_check() {
        user.ap.showform_APform_void_check();
        EXPECT_EQ(form().press(kFind), controls::Refusal::none);
        EXPECT_EQ(user.ap.frm_void_check->dbgrid1.double_click(0), controls::Refusal::none);
        user.desk.answers = {true};
    }
};

// A payment of another kind, entered as its tests enter it.
struct KindSession : HostileSession {
    void enter_payment(payments::PaymentForm& (*enter)(DeskOfUser& user)) { form_ = &enter(user); }
    void pay_by_check() {
        EXPECT_EQ(form_->cmbpayby.type("Check"), controls::Refusal::none);
        EXPECT_EQ(form_->cmbbank.type("MAIN"), controls::Refusal::none);
        EXPECT_EQ(form_->txtcheck.type("100"), controls::Refusal::none);
    }
    frame::Form& form() override { return *form_; }

  private:
    payments::PaymentForm* form_ = nullptr;
};

// A list, in a company with an invoice and a payment to find.
struct ListSession : HostileSession {
    ListSession() : HostileSession(with_a_payment()) {}
};

// A run with gains and losses, whatever its rate is.
struct RevaluationSession : HostileSession {
    RevaluationSession() {
        add_three_items(company);
        enter_revaluation(user);
    }
    frame::Form& form() override { return *user.ap.frm_revalue; }
};

struct AgingSession : ListSession {
    AgingSession() { user.ap.showform_APform_aging(); }
    frame::Form& form() override { return *user.ap.frm_aging; }
};

// A list of templates, of which two are due.
struct RecurringSession : HostileSession {
    RecurringSession() {
        for (const int number : {1, 2})
            add_template(company, {.number = number, .lines = {{105, 100, 5, "GST5"}}});
        list_due(user);
    }
    frame::Form& form() override { return *user.ap.frm_recur_inquiry; }
};

struct InquirySession : ListSession {
    InquirySession() { user.ap.showform_APform_inquiry(); }
    frame::Form& form() override { return *user.ap.frm_inquiry; }
};

struct HistorySession : ListSession {
    HistorySession() { user.ap.showform_APform_payhistory("IP-26-00001"); }
    frame::Form& form() override { return *user.ap.frm_payhistory; }
};

template <class Session, class Prepare>
std::unique_ptr<HostileSession> begun(Prepare prepare) {
    auto session = std::make_unique<Session>();
    prepare(*session);
    static_cast<void>(session->user.messages());
    return session;
}

void save(HostileSession& session) {
    EXPECT_EQ(session.form().press(kSave), controls::Refusal::none);
    EXPECT_EQ(session.form().mode(), frame::Mode::read);
}

std::vector<HostileEntry> entries() {
    return {
        {"NewInvoice",
         [] { return begun<InvoiceSession>([](auto& session) { session.enter_document(); }); },
         {kSaveFont, kSave},
         {"txtremark", "txtinvno", "dbgrid1 description"},
         {"txtinvno"}},
        {"EditedInvoice",
         [] {
             return begun<ShownInvoiceSession>(
                 [](auto& session) { EXPECT_EQ(session.form().press(kEdit), controls::Refusal::none); });
         },
         {kSave},
         {"txtremark", "txtinvno", "dbgrid1 description"},
         {"txtinvno"}},
        {"ShownInvoice", [] { return begun<ShownInvoiceSession>([](auto&) {}); }, {}, {}},
        {"NewTemplate",
         [] {
             return begun<InvoiceSession>(
                 [](auto& session) { enter_template(*session.user.ap.frm_invoice); });
         },
         {kSave},
         {"txtremark", "txtrecurname"}},
        {"CashPayment",
         [] { return begun<PaymentSession>([](auto& session) { session.enter_payment("Cash"); }); },
         {kSaveFont, kSave},
         {"txtremark"}},
        {"CheckPayment",
         [] { return begun<PaymentSession>([](auto& session) { session.enter_payment("Check"); }); },
         {kSave},
         {"txtremark", "txtcheck"}},
        {"EditedPayment",
         [] {
             return begun<ShownPaymentSession>(
                 [](auto& session) { EXPECT_EQ(session.form().press(kEdit), controls::Refusal::none); });
         },
         {kSave},
         {"txtremark"}},
        {"VoidedCheck",
         [] { return begun<CheckSession>([](auto& session) { session.pick_check(); }); },
         {kSaveFont, kFind, kSave},
         {}},
        {"MiscPaymentInCash",
         [] { return begun<KindSession>([](auto& session) { session.enter_payment(enter_misc_payment); }); },
         {kSaveFont, kSave},
         {"txtremark", "txtremit", "dbgrid1 reference"}},
        {"MiscPaymentByCheck",
         [] {
             return begun<KindSession>([](auto& session) {
                 session.enter_payment(enter_misc_payment);
                 session.pay_by_check();
             });
         },
         {kSave},
         {"txtremark", "txtremit", "txtcheck", "dbgrid1 reference"}},
        {"EditedMiscPayment",
         [] {
             return begun<KindSession>([](auto& session) {
                 session.enter_payment(enter_misc_payment);
                 session.pay_by_check();
                 save(session);
                 EXPECT_EQ(session.form().press(kEdit), controls::Refusal::none);
             });
         },
         {kSave},
         {"txtremark", "txtcheck"}},
        {"Prepayment",
         [] { return begun<KindSession>([](auto& session) { session.enter_payment(enter_prepayment); }); },
         {kSave},
         {"txtremark", "txtremit", "cmbpono"}},
        {"EditedPrepayment",
         [] {
             return begun<KindSession>([](auto& session) {
                 session.enter_payment(enter_prepayment);
                 save(session);
                 EXPECT_EQ(session.form().press(kEdit), controls::Refusal::none);
                 change_prepayment(session.user);
             });
         },
         {kSave},
         {"txtremark", "txtremit", "cmbpono", "txtcheck"}},
        {"CardPayment",
         [] { return begun<KindSession>([](auto& session) { session.enter_payment(enter_card_payment); }); },
         {kSaveFont, kSave},
         {"txtremark", "txtcheck"}},
        {"Revaluation",
         [] { return begun<RevaluationSession>([](auto&) {}); },
         {kSaveFont, kFind, kSave},
         {"txtdesc"}},
        {"Aging", [] { return begun<AgingSession>([](auto&) {}); }, {kFind, kSaveFont, kExit}, {}},
        {"RecurringTemplates",
         [] { return begun<RecurringSession>([](auto&) {}); },
         {kSaveFont, invoices::kGenerate, kFind, invoices::kListDue, kExit},
         {}},
        {"InvoiceInquiry",
         [] { return begun<InquirySession>([](auto&) {}); },
         {kFind, kSaveFont, kExit},
         {"cmbcompany"}},
        {"PaymentHistory", [] { return begun<HistorySession>([](auto&) {}); }, {kFind, kSaveFont, kExit}, {}},
    };
}

// Of letters that cannot be packed.
std::string long_text(std::size_t size) {
    std::string text;
    for (std::uint32_t chance = 1; text.size() < size; chance = chance * 1664525 + 1013904223)
        text += static_cast<char>('a' + (chance >> 16) % 26);
    return text;
}

std::vector<HostileText> hostile_sample() {
    return {{"Quotes", R"('; DELETE FROM "Vendor_table"; -- ' OR '1' = '1)"},
            {"Statement", R"("; DROP TABLE "GL_header_table"; -- /* \ $1 ?1 %s [accno] # */)"},
            {"Controls", "a\x01\x02\b\t\r\n\x1b[2J\x7f\xc2\x85\xe2\x80\xae"},
            {"Broken", std::string("a\0b\xff\xc3(\xed\xa0\x80", 9), false}};
}

// And these one by one.
std::vector<HostileText> all_hostile_texts() {
    std::vector<HostileText> texts{{"Quote", "'"},
                                   {"TwoQuotes", "''"},
                                   {"DoubleQuote", "\""},
                                   {"Semicolon", ";"},
                                   {"Comment", "--"},
                                   {"OpenComment", "/*"},
                                   {"Backslash", "\\'"},
                                   {"Bracket", "]["},
                                   {"Parameter", "$1 ?1 :a @b"},
                                   {"Like", "%_*"},
                                   {"Call", "Datevalue('Jan 15, 2026')"},
                                   {"Number", "1e999"},
                                   {"NoNumber", "NaN"},
                                   {"Words", "NULL OR TRUE"},
                                   {"Long", long_text(100'000), true, false},
                                   {"Blanks", std::string(300, ' ')},
                                   {"BrokenLetters", "\xff\xfe\xc0\x80", false},
                                   {"HalfALetter", "\xe2\x82", false},
                                   {"Nothing", std::string("\0", 1), false},
                                   {"NothingWithin", std::string("a\0'; --", 7), false}};
    for (HostileText& text : hostile_sample())
        texts.push_back(std::move(text));
    return texts;
}

}  // namespace

class Hostile : public ::testing::TestWithParam<std::tuple<HostileEntry, HostileText>> {};

TEST_P(Hostile, TextIsStoredAsTypedOrRefused) {
    const auto& [entry, text] = GetParam();
    type_everywhere(entry, text);
}

std::string hostile_name(const ::testing::TestParamInfo<Hostile::ParamType>& info) {
    return fmt::format("{}_{}", std::get<0>(info.param).name, std::get<1>(info.param).name);
}

INSTANTIATE_TEST_SUITE_P(Each, Hostile,
                         ::testing::Combine(::testing::ValuesIn(entries()),
                                            ::testing::ValuesIn(hostile_sample())),
                         hostile_name);
INSTANTIATE_TEST_SUITE_P(Night, Hostile,
                         ::testing::Combine(::testing::ValuesIn(entries()),
                                            ::testing::ValuesIn(all_hostile_texts())),
                         hostile_name);

}  // namespace brimley::testing
