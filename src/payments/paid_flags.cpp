#include "payments/paid_flags.h"

#include <fmt/format.h>

namespace brimley::payments {

namespace {

bool has_item(kernel::ModuleG3& kernel, const std::string& fkey, bool paid) {
    return !kernel
                .read(fmt::format(
                    "SELECT fkey FROM (SELECT * FROM AP_transaction_table WHERE fkey = {}) WHERE paid = {}",
                    store::quoted(fkey), paid ? "TRUE" : "FALSE"))
                .at_eof();
}

}  // namespace

std::string_view flags_when_paid(kernel::ModuleG3& kernel, const std::string& fkey) {
    return has_item(kernel, fkey, false) ? "paid = TRUE, fully_paid = FALSE"
                                         : "paid = TRUE, fully_paid = TRUE";
}

std::string_view flags_when_given_back(kernel::ModuleG3& kernel, const std::string& fkey) {
    return has_item(kernel, fkey, true) ? "fully_paid = FALSE, paid = TRUE"
                                        : "fully_paid = FALSE, paid = FALSE";
}

void write_flags(kernel::ModuleG3& kernel, const std::function<std::string_view()>& flags,
                 const std::function<void(std::string_view flags)>& write) {
    const std::string_view written = flags();
    write(written);
    if (!kernel.database().others_write_meanwhile()) return;
    if (const std::string_view now = flags(); now != written) write(now);
}

}  // namespace brimley::payments
