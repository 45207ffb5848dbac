#include "frame/fields/vendor_fields.h"

#include <fmt/format.h>

namespace brimley::frame {

VendorFields::VendorFields(Form& form, controls::ComboBox& number, controls::ComboBox& name, Unknown unknown,
                           BlankEntry blank)
    : FormPart(form), number_(number), name_(name), unknown_(unknown), blank_(blank) {
    number_.on_item_select = [this] {
        follow(number_, name_);
        if (on_chosen) on_chosen();
    };
    name_.on_item_select = [this] {
        follow(name_, number_);
        if (on_chosen) on_chosen();
    };
    if (blank == BlankEntry::none) return;
    number_.on_change = [this] { follow_emptied(number_, name_); };
    name_.on_change = [this] { follow_emptied(name_, number_); };
}

void VendorFields::follow(const controls::ComboBox& chosen, controls::ComboBox& other) const {
    const std::string text = chosen.chosen(1).value_or("");
    if (!text.empty() || unknown_ == Unknown::empties_the_other) other.set(text);
}

void VendorFields::follow_emptied(const controls::ComboBox& emptied, controls::ComboBox& other) {
    if (emptied.empty()) other.set("");
}

void VendorFields::fill() {
    const auto list = [this](const char* first, const char* second) {
        const auto vendors =
            rows_of(fmt::format("SELECT {0}, {1} FROM Vendor_table ORDER BY {0} DESC", first, second));
        return [vendors, blank = blank_] {
            kernel::TextRows rows = vendors();
            if (blank == BlankEntry::first) rows.insert(rows.begin(), {"", ""});
            return rows;
        };
    };
    number_.set_source(list("vendor_no", "VENDOR_NAME"));
    name_.set_source(list("VENDOR_NAME", "vendor_no"));
}

std::optional<std::string> VendorFields::name_of(const std::string& vendor_no) const {
    const auto name = kernel().look_up("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME");
    return name ? std::optional(name->text()) : std::nullopt;
}

void VendorFields::show_name_and_currency(controls::ComboBox& currency) const {
    if (number_.empty()) return;
    step("take the vendor's name and currency", [&] {
        const auto vendor = kernel().find("Vendor_table", {{"vendor_no", number_.text()}});
        name_.set(vendor.at_eof() ? std::string{} : vendor.text("VENDOR_NAME"));
        if (!vendor.at_eof() && !vendor.text("Currency").empty()) currency.set(vendor.text("Currency"));
    });
}

}  // namespace brimley::frame
