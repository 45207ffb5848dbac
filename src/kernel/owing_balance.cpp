#include "kernel/owing_balance.h"

#include "kernel/money.h"

namespace brimley::kernel {

namespace {

double moved(const store::Value& owing, OwingChange change, OwingRule rule) {
    double balance = owing.number() + change.added - change.taken_back;
    if (owing.is_null() && rule.null_owing == NullOwing::change_reversed) balance = 0 - balance;
    return rule.rounding == OwingRounding::to_cents ? Round(balance) : balance;
}

}  // namespace

void change_owing_balance(ModuleG3& kernel, std::string_view vendor_no, OwingChange change, OwingRule rule) {
    if (rule.null_owing == NullOwing::stays_null) {
        // A balance that stays as it is takes no lock.
        const auto owing = kernel.look_up("Vendor_table", {{"vendor_no", vendor_no}}, "owing_balance");
        if (!owing || owing->is_null()) return;
    }
    auto vendor = kernel.change("SELECT owing_balance FROM Vendor_table");
    vendor.edit_first({{"vendor_no", vendor_no}});
    if (vendor.NoMatch()) return;
    vendor.set("owing_balance", moved(vendor.field("owing_balance"), change, rule));
    vendor.Update();
}

}  // namespace brimley::kernel
