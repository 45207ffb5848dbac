// Loading the form, picking a check, the toolbar, and requests to the host.
#include "payments/void_check/apform_void_check.h"

namespace brimley::payments {

using controls::Command;
namespace command = frame::command;

namespace {

constexpr frame::FormIdentity kIdentity{"APform_void_check", "Void Check", "\\Help\\Void Check Help.pdf"};

constexpr int kCheckWindow = 1001;
constexpr int kBillRecord = 1002;

std::vector<Command> own_commands() {
    using Bars = std::vector<std::string>;
    return {
        {command::kFind, "&Find", "Find", "", Bars{"Run", "Standard"}},
        {command::kClear, "&Clear", "Clear", "", Bars{"Run", "Standard"}},
        {command::kOrigin, "Origin Document", "Origin", "Origin Document", Bars{"Link", "Standard"}},
        {command::kFont, "&Font", "", "", Bars{"Popup"}},
        {command::kFormHelp, "Void Check Help", "Help", "Void Check Help", Bars{"Help", "Standard"}},
        {kCheckWindow, "Check Window", "", "", Bars{"View"}},
        {kBillRecord, "&A/P Bill Record", "Bill", "Bill", Bars{"Link", "Standard"}},
    };
}

}  // namespace

APform_void_check::APform_void_check(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                     frame::Desk& desk)
    : GridForm(kIdentity, std::move(context), std::move(kernel), desk) {
    for (controls::Control* hidden : {&txtfkey, &txtglfkey})
        hidden->set_visible(false);
    for (controls::Control* picked :
         std::initializer_list<controls::Control*>{&txtremit, &txtcheck, &txtcheckdate, &txtchkamt, &cmbbank,
                                                   &cmbcurrency, &txtpaymentno, &cmbperiod, &cmbfyear}) {
        picked->set_locked(true);
        picked->set_back_colour(controls::kReadOnlyBack);
        picked->lies_in(frame_check);
    }
    label_type.lies_in(frame_check);
    txtvoiddate.lies_in(frame_check);
    dbgrid1.on_double_click = [this](int row) { dbgrid1_DblClick(row); };
    dbgrid1.on_row_col_change = [this](int, int old_column) { font_bar.follow_column(old_column); };
}

void APform_void_check::Form_Load() {
    list.clear();
    step("prepayment account",
         [&] { prepayment_accno = kernel().parameter_account("AP", "AP Prepayment account"); });
    step("get_user_rights", [&] { read_rights(); });
    set_BRIMLEY_COLOR();
    init_toolbar();
    init_fontcolor();
    step("initform_control", [&] {
        vendor_fields.fill();
        font_bar.fill();
    });
    step("init_form_property", [&] { init_form_property(); });
    step("init_grid", [&] { build_grids(); });
    dbgrid1.header_colour = palette_[presentation::kHeaderSlot];
}

void APform_void_check::init_toolbar() {
    add_commands(own_commands(), {command::kPreview, command::kNew, command::kEditMode, command::kPrevious,
                                  command::kNext, command::kLast, command::kInsertLine, command::kDeleteLine,
                                  command::kGlRecord, command::kRefresh});
}

void APform_void_check::CommandBars1_Execute(int id) {
    if (execute_of_grid_form(id)) return;
    switch (id) {
        case command::kSave:
            if (rights().Update) void_check();
            break;
        case command::kFind:
            list_vendor_check();
            break;
        case command::kClear:
            clear_box();
            break;
        case command::kOrigin:
            find_payment();
            break;
        case kCheckWindow:
            frame_check.set_visible(!frame_check.visible());
            break;
        case kBillRecord:
            findAP();
            break;
        default:
            break;
    }
}

void APform_void_check::dbgrid1_DblClick(int row) {
    const auto cell = [&](const char* caption) { return dbgrid1.cell(row, caption); };
    if (cell("check no").empty()) return;
    txtremit.set(cell("remit to"));
    label_type.set_caption(cell("payment type"));
    txtcheck.set(cell("check no"));
    txtcheckdate.set(cell("check date"));
    txtchkamt.set(cell("check amount"));
    cmbbank.set(cell("bank account"));
    cmbcurrency.set(cell("currency"));
    txtpaymentno.set(cell("payment no"));
    cmbperiod.set(cell("period"));
    cmbfyear.set(cell("fiscal year"));
}

void APform_void_check::clear_box() {
    for (controls::ComboBox* field :
         {&cmbvendor, &cmbvendor_name, &cmbbank, &cmbcurrency, &cmbperiod, &cmbfyear})
        field->clear_choice();
    for (controls::TextField* field :
         std::initializer_list<controls::TextField*>{&txtremit, &txtcheck, &txtcheckdate, &txtchkamt,
                                                     &txtpaymentno, &txtvoiddate, &txtfkey, &txtglfkey})
        field->set("");
    label_type.set_caption("");
}

void APform_void_check::find_payment() {
    const CheckKind* const kind = check_kind_listed_as(current("payment type"));
    if (kind != nullptr && kind->request != nullptr) notify(kind->request, current("payment no"));
}

void APform_void_check::findAP() {
    const std::string docno = current("AP document no");
    if (docno.empty()) return;
    notify(current("payment type") == "prepayment" ? "A/P Prepayment" : "Bill Entry : Docno", docno);
}

}  // namespace brimley::payments
