// The flags paid and fully_paid of documents, which follow from their items.
//
// Two desks may pay two items of one document at once, or one pays and the other gives back. Each sees of the
// items what was committed when it looked, and they meet at the header alone, where the later one waits. So
// it looks once more when it has the header.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "kernel/module_g3.h"

namespace brimley::payments {

// What stands after SET in the UPDATE of a header, after items of the document were paid, and after some were
// given back.
[[nodiscard]] std::string_view flags_when_paid(kernel::ModuleG3& kernel, const std::string& fkey);
[[nodiscard]] std::string_view flags_when_given_back(kernel::ModuleG3& kernel, const std::string& fkey);

// Writes the flags, inside the caller's transaction, and again when they are others by then. Lets
// store::Error through.
void write_flags(kernel::ModuleG3& kernel, const std::function<std::string_view()>& flags,
                 const std::function<void(std::string_view flags)>& write);

}  // namespace brimley::payments
