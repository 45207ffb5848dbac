#include "kernel/current_earnings.h"

#include "kernel/module_g3.h"

namespace brimley::kernel {

store::Recordset* EarningsRow::take(ModuleG3& kernel, const std::string& query, store::FieldValues fields) {
    std::string values;
    for (const auto& field : fields)
        values.append(field.second) += '\n';
    if (values == held_by_) return &rows_;
    write();
    if (!rows_.is_open()) rows_ = kernel.change(query);
    rows_.edit_first(fields);
    if (rows_.NoMatch()) return nullptr;
    held_by_ = std::move(values);
    return &rows_;
}

void EarningsRow::write() {
    if (held_by_.empty()) return;
    rows_.Update();
    held_by_.clear();
}

}  // namespace brimley::kernel
