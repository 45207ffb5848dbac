// Scripts of the console: each line is carried out or refused as wrong, and the books agree at the end.
#include <sstream>

#include "company/check.h"
#include "company/create.h"
#include "console/console.h"
#include "console/script_line.h"
#include "fuzz.h"
#include "support/sample_host.h"

namespace brimley::testing {

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{"\npress 101\n",
                                                 "\npress 105\n",
                                                 "\npress 106\n",
                                                 "\npress 133\n",
                                                 "\npress 1008\n",
                                                 "\nanswer yes\n",
                                                 "\ncall showform_APform_invoice\n",
                                                 "\ncall showform_APform_payment\n",
                                                 "\nset ",
                                                 "\ncell dbgrid1 0 ",
                                                 "\nvisit dbgrid1 0 \"pay amount\"\n",
                                                 "\ntoday 2026-03-16\n",
                                                 "\nexpect nothing\n",
                                                 "\nsql \"SELECT * FROM ",
                                                 "cmbvendor",
                                                 "txtpayment",
                                                 "V1001",
                                                 "\"gross amount\"",
                                                 "-1",
                                                 "99999",
                                                 "'",
                                                 "\"",
                                                 "\\",
                                                 "#",
                                                 "''",
                                                 ";--"};
    return kWords;
}

namespace {

// Acts that any script may come upon leave what is owed to a vendor beside the documents, such as saving an
// invoice once more after leafing in New (docs/oddities.md).
bool may_follow_from_acts(const std::string& finding) {
    return finding.starts_with("Vendor ") && finding.find(": owing_balance is ") != std::string::npos;
}

}  // namespace

void fuzz_one(std::string_view input) {
    const CompanyCopy company{sample_original()};
    frame::HostContext context;
    context.dbe = company.open().workspace;
    context.abcdb = company.open().database;
    context.BASE_CURRENCY = "USD";
    context.BRIMLEY_USER = "anna";
    context.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    context.BRIMLEY_NO_PERIODS = "12";
    std::ostringstream out;
    console::Console console(context, out);
    std::istringstream lines{std::string(input)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        try {
            console.run(line, "fuzz:" + std::to_string(number));
        } catch (const console::ScriptFault&) {  // a wrong line
        }
    }
    for (const std::string& finding : company::check_company(*company.open().database))
        if (!may_follow_from_acts(finding)) throw Finding("the books: " + finding);
}

}  // namespace brimley::testing
