#include "ledger/ledger_form.h"

namespace brimley::ledger {

namespace command = frame::command;

LedgerForm::LedgerForm(const frame::FormIdentity& identity, frame::HostContext context,
                       std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
    : Form(identity, std::move(context), std::move(kernel), desk) {}

frame::FieldHint LedgerForm::hint_of(const controls::Control& control) const {
    const auto found = hints_.find(&control);
    return found == hints_.end() ? frame::FieldHint{} : found->second;
}

void LedgerForm::set_caption(const controls::Control& control, std::string caption, int width) {
    hints_[&control] = {std::move(caption), width};
}

void LedgerForm::add_column(controls::Grid& grid, const char* caption, Look look) {
    controls::GridColumn column;
    column.caption = caption;
    column.order = static_cast<int>(grid.columns.size());
    column.width = look == Look::wide_text ? 3600 : 1700;
    column.locked = true;
    if (look == Look::money) column.alignment = controls::Alignment::right;
    grid.columns.push_back(column);
}

void LedgerForm::lock(controls::Control& control) {
    control.set_locked(true);
    control.set_back_colour(controls::kReadOnlyBack);
}

void LedgerForm::read_accounts() {
    step("read the chart", [&] { accounts_ = LedgerAccounts(kernel()); });
}

void LedgerForm::Form_Load() {
    step("get_user_rights", [&] { read_rights(); });
    set_BRIMLEY_COLOR();
    init_toolbar();
    init_fontcolor();
    step("init_form_property", [&] { init_form_property(); });
    for (controls::Control* const control : controls_.all())
        if (auto* const grid = dynamic_cast<controls::Grid*>(control))
            grid->header_colour = palette_[presentation::kHeaderSlot];
    show_first_values();
}

void LedgerForm::init_toolbar() {
    using Bars = std::vector<std::string>;
    bars_.add({command::kExit, "&Exit", "", "", Bars{"File", "Standard"}, 'X'});
    for (controls::Command& each : own_commands())
        bars_.add(std::move(each));
    bars_.add({command::kShowText, "&Show Text below Icon", "", "", Bars{"Option"}});
}

void LedgerForm::CommandBars1_Execute(int id) {
    if (!execute_common(id) && can_do(id)) execute_own(id);
}

}  // namespace brimley::ledger
