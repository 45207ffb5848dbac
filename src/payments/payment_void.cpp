#include "payments/payment_void.h"

#include <fmt/format.h>

namespace brimley::payments {

void mark_void(kernel::ModuleG3& kernel, const char* lines, const std::string& fkey,
               const std::string& void_date) {
    const std::string key = store::quoted(fkey);
    kernel.database().Execute(fmt::format("UPDATE {} SET void = TRUE WHERE fkey = {}", lines, key));
    kernel.database().Execute(fmt::format(
        "UPDATE Payment_header_table SET void = TRUE,void_date = {} WHERE fkey = {}", void_date, key));
}

void give_up_order(kernel::ModuleG3& kernel, const std::string& prepayment_fkey) {
    kernel.database().Execute("DELETE * FROM Prepayment_waiting_PO_table WHERE prepayment_fkey = " +
                              store::quoted(prepayment_fkey));
}

}  // namespace brimley::payments
