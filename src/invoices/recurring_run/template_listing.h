// The rows of the list of templates: all of them, or those that are due.
#pragma once

#include <map>
#include <string>

#include "frame/line_columns.h"
#include "invoices/recurring_run/due_rule.h"

namespace brimley::invoices {

inline constexpr const char* kDueColumn = "due";
inline constexpr const char* kDueDateColumn = "due date";
inline constexpr const char* kRecurNoColumn = "recurring no";
inline constexpr const char* kVendorNoColumn = "vendor no";
// The key of a row's template stands past the last caption.
[[nodiscard]] inline int key_column(const controls::Grid& grid) {
    return static_cast<int>(grid.columns.size());
}

// Serves one fill of the list (frame/list_fill.h).
class TemplateListing : public frame::FormPart {
  public:
    // With a rule it shows the templates that are due, each marked; without one all, and none is marked.
    // `rule` may be null; it must outlive this.
    TemplateListing(frame::Form& form, controls::Grid& grid, const store::Recordset& templates,
                    const DueRule* rule);

    [[nodiscard]] int show(const store::Recordset& row, int at);
    // Templates that are not due have left rows over.
    void end(int at);

  private:
    [[nodiscard]] bool is_due(const store::Recordset& row) const;
    void assign2_row(const store::Recordset& row, int at, const std::string& due_date);
    [[nodiscard]] const std::string& vendor_name(const std::string& vendor_no);

    controls::Grid& grid_;
    frame::LineColumns columns_;
    const DueRule* rule_;
    int vendor_name_column_, begin_column_, end_column_, due_date_column_, due_column_;
    std::map<std::string, std::string> vendor_names_;
};

}  // namespace brimley::invoices
