#include "frame/fields/vendor_fields.h"

#include <fmt/format.h>

namespace brimley::frame {

VendorFields::VendorFields(Form& form, controls::ComboBox& number, controls::ComboBox& name, Unknown unknown)
    : FormPart(form), number_(number), name_(name), unknown_(unknown) {
    number_.on_item_select = [this] {
        follow(number_, name_);
        if (on_chosen) on_chosen();
    };
    name_.on_item_select = [this] {
        follow(name_, number_);
        if (on_chosen) on_chosen();
    };
}

void VendorFields::follow(const controls::ComboBox& chosen, controls::ComboBox& other) const {
    const std::string text = chosen.chosen(1).value_or("");
    if (!text.empty() || unknown_ == Unknown::empties_the_other) other.set(text);
}

void VendorFields::fill() {
    const auto list = [this](const char* first, const char* second) {
        return rows_of(fmt::format("SELECT {0}, {1} FROM Vendor_table ORDER BY {0} DESC", first, second));
    };
    number_.set_source(list("vendor_no", "VENDOR_NAME"));
    name_.set_source(list("VENDOR_NAME", "vendor_no"));
}

std::optional<std::string> VendorFields::name_of(const std::string& vendor_no) const {
    const auto name = kernel().look_up("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME");
    return name ? std::optional(name->text()) : std::nullopt;
}

}  // namespace brimley::frame
