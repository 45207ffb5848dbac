// The two fields of a vendor, number and name: their lists, and how each follows the other.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "controls/combo_box.h"
#include "frame/form_part.h"

namespace brimley::frame {

class VendorFields : public FormPart {
  public:
    // What becomes of the other field when a text is chosen that the list does not have.
    enum class Unknown { leaves_the_other, empties_the_other };
    // Where no vendor means all of them, a blank entry comes first, and to empty a field is to choose it.
    enum class BlankEntry { none, first };
    VendorFields(Form& form, controls::ComboBox& number, controls::ComboBox& name, Unknown unknown,
                 BlankEntry blank = BlankEntry::none);

    // Gives both fields their lists, newest number and last name first; fetched when somebody looks at them.
    void fill();
    // Empty for an unknown vendor.
    [[nodiscard]] std::optional<std::string> name_of(const std::string& vendor_no) const;

    // For a new document: shows the name of the vendor on screen, and its currency if it has one. An unknown
    // vendor has no name. Errors are ignored.
    void show_name_and_currency(controls::ComboBox& currency) const;

    // After a vendor was chosen in either field.
    std::function<void()> on_chosen;

  private:
    void follow(const controls::ComboBox& chosen, controls::ComboBox& other) const;
    static void follow_emptied(const controls::ComboBox& emptied, controls::ComboBox& other);

    controls::ComboBox& number_;
    controls::ComboBox& name_;
    Unknown unknown_;
    BlankEntry blank_;
};

}  // namespace brimley::frame
