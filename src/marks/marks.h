// Marks beside what was entered: what a person would like to know, and the form does not refuse.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "frame/form.h"

namespace brimley::marks {

struct Mark {
    const controls::Control* control;
    int row = -1;     // of a grid
    int column = -1;  // its place in the array
    std::string text;
    friend bool operator==(const Mark&, const Mark&) = default;
};

// Of one form, which must outlive it.
class Marks {
  public:
    explicit Marks(frame::Form& form) : form_(form) {}

    // What there is to say now, field by field; nothing while the form shows a stored document. Reads the
    // company for what it has not been asked since the entry was begun; a failure to read is no mark, and
    // nobody else's loss. Within a transaction, which nobody else may read in, it stays as it was.
    [[nodiscard]] const std::vector<Mark>& look();

  private:
    // What is known of a vendor, an account, a tax code ...: read once an entry.
    using Known = std::map<std::string, std::string, std::less<>>;

    void look_at_dates();
    void look_at_vendor();
    void look_at_invoice_number();
    void look_at_account_fields();
    void look_at_lines();
    void look_at_line(const controls::Grid& grid, int row);
    void look_at_tax(const controls::Grid& grid, int row);

    // The texts of fields; empty when the form has no such field, or nobody may type in it.
    [[nodiscard]] std::string text_of(const char* name) const;
    // Adds a mark when there is something to say.
    void mark(const char* control, std::string text);
    void mark(const controls::Grid& grid, int row, int column, std::string text);

    // What is wrong with an account; empty: nothing.
    [[nodiscard]] std::string fault_of_account(std::string_view text);
    // The rates of a tax code added up, as text; empty when it has none.
    [[nodiscard]] std::string rate_of(const std::string& tax_code);
    // What `read` says of the key, unless it is known.
    [[nodiscard]] const std::string& known(std::string_view what, std::string_view key,
                                           const std::function<std::string()>& read);
    [[nodiscard]] store::Recordset find(std::string_view table, store::FieldValues fields) const;

    frame::Form& form_;
    frame::Mode mode_ = frame::Mode::read;
    Known known_;
    std::vector<Mark> found_;
};

}  // namespace brimley::marks
