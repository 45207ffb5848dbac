// Modes and their transitions.
#include "frame/document_form.h"

#include <fmt/format.h>

#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::frame {

using controls::Control;

DocumentForm::DocumentForm(const FormIdentity& identity, HostContext context,
                           std::shared_ptr<kernel::ModuleG3> kernel, Desk& desk, const WalkTables& tables)
    : GridForm(identity, std::move(context), std::move(kernel), desk), documents(*this, tables) {
    for (controls::Control* hidden : {&txtfkey, &txtglfkey, &txtdoctype})
        hidden->set_visible(false);
    // These boxes show the state of a document; nobody ticks them.
    for (controls::CheckBox* box : {&chkprint, &chkvoid})
        box->set_locked(true);
    txtdocno.on_enter = [this] {
        if (mode() == Mode::read) Recordx();
    };
    txtdocno.on_leave = [this] {
        if (mode() == Mode::read) static_cast<void>(validate_docno());
    };
}

controls::Refusal DocumentForm::bring_document(const std::string& name, const std::string& /*key*/) {
    const controls::Refusal typed = txtdocno.type(name);
    return typed == controls::Refusal::none ? txtdocno.press_enter() : typed;
}

namespace {

constexpr int kPeriodsMax = 99;
constexpr controls::Colour kDocnoInEdit = controls::rgb(120, 120, 220);

}  // namespace

void DocumentForm::read_gain_and_loss() {
    step("gain and loss accounts", [&] {
        gain_accno = kernel().parameter_account("GL", "GL realized gain account");
        loss_accno = kernel().parameter_account("GL", "GL realized loss account");
    });
}

void DocumentForm::load_document_form() {
    read_gain_and_loss();
    step("get_user_rights", [&] { read_rights(); });
    set_BRIMLEY_COLOR();
    init_toolbar();
    init_fontcolor();
    step("initform_control", [&] { initform_control(); });
    step("init_form_property", [&] { init_form_property(); });
    step("init_grid", [&] { init_grid(); });
    if (has_database()) {
        last_record();
    } else {
        grid_readmode();
    }
}

void DocumentForm::set_field(Control& field, FieldState state) {
    const bool read_only = state == FieldState::read_only;
    field.set_locked(read_only);
    field.set_back_colour(read_only ? controls::kReadOnlyBack : controls::kWhite);
}

void DocumentForm::set_all_fields(FieldState state) {
    for (Control* control : controls_.all()) {
        const std::string_view name = control->name();
        const auto starts_with = [&](std::string_view kind) {
            return controls::same_ignoring_case(name.substr(0, kind.size()), kind);
        };
        if (!starts_with("txt") && !starts_with("cmb") && !starts_with("rbox")) continue;
        set_field(*control, control->container() == &font_bar.frame_font ? FieldState::open : state);
    }
}

void DocumentForm::open_only(std::initializer_list<Control*> fields) {
    const auto docno_colour = txtdocno.back_colour();
    set_all_fields(FieldState::read_only);
    txtdocno.set_back_colour(docno_colour);
    for (Control* field : fields)
        set_field(*field, FieldState::open);
    set_lines_editable(false);
}

void DocumentForm::set_lines_editable(bool editable) {
    dbgrid1.allow_add_new = editable;
    dbgrid1.allow_update = editable;
    dbgrid1.allow_delete = editable;
}

// Once the form is up this runs only on leaving New or Edit, while their command is still pressed.
void DocumentForm::grid_readmode() {
    if (is_open() && mode() == Mode::read) return;
    set_all_fields(FieldState::read_only);
    set_lines_editable(false);
    dbgrid1.header_colour = palette_[presentation::kHeaderSlot];
    set_field(txtdocno, FieldState::open);
}

void DocumentForm::grid_newmode() {
    set_all_fields(FieldState::open);
    set_lines_editable(true);
    txtdocno.set_locked(true);
}

void DocumentForm::grid_editmode() {
    set_all_fields(FieldState::open);
    set_lines_editable(true);
    txtdocno.set_locked(true);
    txtdocno.set_back_colour(kDocnoInEdit);
}

void DocumentForm::leave_mode(int pressed_command) {
    grid_readmode();
    bars_.set_pressed(pressed_command, false);
    shown_fkey_ = txtfkey.text();
    frame_status.refresh();
}

void DocumentForm::press_new() {
    if (!rights().Update || mode() == Mode::edit) return;
    if (mode() == Mode::read) {
        bars_.set_pressed(command::kNew, true);
        grid_newmode();
        gencode_new();
        shown_whole_ = true;
        return;
    }
    if (entry_has_data() && ask("Do you want to save new entry?")) {
        if (!insert_new_record()) return;
    } else {
        last_record();
    }
    leave_mode(command::kNew);
}

bool DocumentForm::refuses_edit() {
    const std::string why = edit_refusal();
    if (!why.empty()) tell(why);
    return !why.empty();
}

void DocumentForm::begin_edit() {
    const std::string fkey = txtfkey.text();
    if (refuses_edit() || !validate_docno()) return;
    // A number may repeat in another year; the document on screen is meant.
    txtfkey.set(fkey);
    Recordx_fkey();
    if (!shown_whole() || txtfkey.text() != fkey) return;
    if (refuses_edit()) return;  // it was voided or paid elsewhere while it was on this screen
    grid_editmode();
    bars_.set_pressed(command::kEditMode, true);
}

void DocumentForm::press_edit() {
    if (!rights().Update || mode() == Mode::new_entry) return;
    if (mode() == Mode::read) {
        begin_edit();
        return;
    }
    if (ask("Do you want to save editing?")) {
        if (!Update_record()) return;
    } else {
        Recordx();
    }
    leave_mode(command::kEditMode);
}

void DocumentForm::press_save() {
    if (!rights().Update) return;
    if (mode() == Mode::new_entry && insert_new_record()) leave_mode(command::kNew);
    if (mode() == Mode::edit && Update_record()) leave_mode(command::kEditMode);
}

void DocumentForm::CommandBars1_Execute(int id) {
    if (execute_of_grid_form(id)) return;
    const bool reading = mode() == Mode::read;
    switch (id) {
        case command::kSave:
            press_save();
            break;
        case command::kNew:
            press_new();
            break;
        case command::kEditMode:
            press_edit();
            break;
        case command::kPreview:
            if (reading && rights().Print && on_saved_document()) preview();
            break;
        case command::kPrevious:
            previous_record();
            break;
        case command::kNext:
            next_record();
            break;
        case command::kLast:
            last_record();
            break;
        case command::kInsertLine:
            insert_line();
            break;
        case command::kDeleteLine:
            delete_line();
            break;
        case command::kGlRecord:
            findGL();
            break;
        case command::kRefresh:
            if (reading) Recordx_fkey();
            break;
        default:
            execute_own(id);
    }
}

bool DocumentForm::can_do(int id) const {
    const bool reading = mode() == Mode::read;
    switch (id) {
        case command::kSave:
            return rights().Update && !reading;
        case command::kNew:
            return rights().Update && mode() != Mode::edit;
        case command::kEditMode:
            return rights().Update && mode() != Mode::new_entry;
        case command::kPreview:
            return rights().Print && reading && on_saved_document();
        case command::kInsertLine:
            return dbgrid1.allow_add_new;
        case command::kDeleteLine:
            return dbgrid1.allow_delete;
        case command::kGlRecord:
            return on_posted_document();
        case command::kOrigin:
            return on_saved_document() && request_for_origin() != nullptr;
        case command::kRefresh:
            return reading;
        default:
            return true;
    }
}

bool DocumentForm::on_saved_document() const {
    return !txtdocno.empty() && txtdocno.text() != kNewDocno && !txtfkey.empty();
}

void DocumentForm::findGL() {
    if (on_posted_document()) notify("G/L Ledger Review", txtglfkey.text());
}

const char* DocumentForm::request_for_origin() const {
    struct Origin {
        const char* source;
        const char* request;
    };
    static constexpr Origin kOrigins[] = {
        {"PO-RECEIPT", "Receipt Entry"}, {"PO-BILL", "P/O Bill Entry"}, {"PO-LANDED", "Landed Cost Entry"}};
    for (const Origin& origin : kOrigins)
        if (txtsource.text() == origin.source) return origin.request;
    return nullptr;
}

void DocumentForm::origin_doc() {
    const char* const request = request_for_origin();
    if (on_saved_document() && request != nullptr) notify(request, txtsource_docno.text());
}

std::optional<store::DateTime> DocumentForm::date_in(const controls::TextField& field) const {
    return kernel::try_user_date(field.text(), context().BRIMLEY_DATE_FORMAT);
}

std::optional<store::DateTime> DocumentForm::required_date(const controls::DateField& field,
                                                           const std::string& missing) {
    return kernel::required_user_date(field.text(), context().BRIMLEY_DATE_FORMAT, missing, desk());
}

void DocumentForm::take_period_of(const controls::DateField& field) {
    step("period of a date", [&] {
        const auto date = date_in(field);
        if (!date) return;
        const auto found = kernel().get_fiscal_period(*date);
        if (!found) return;
        cmbperiod.set(std::to_string(found->period));
        cmbfyear.set(found->fyear);
    });
}

store::Recordset DocumentForm::rates_of_currency(const std::optional<store::DateTime>& until) {
    std::string query = fmt::format("SELECT * FROM Exchange_rate_table WHERE currency = {}",
                                    store::quoted(cmbcurrency.text()));
    if (until) query += " AND rate_date <= " + store::date_value(*until);
    return kernel().read(query + " ORDER BY rate_date");
}

void DocumentForm::fill_common_combos() {
    cmbcompany.set_items({{"1"}});
    cmbfyear.set_source(rows_of("SELECT fyear FROM Fiscalyear_table"));
    cmbcurrency.set_source(rows_of("SELECT Currency FROM Working_currency_table"));
    std::vector<controls::ComboBox::Row> periods;
    const int last_period = static_cast<int>(
        kernel::whole_number(kernel::money_value(context().BRIMLEY_NO_PERIODS), 0, kPeriodsMax));
    for (int period = 1; period <= last_period; ++period)
        periods.push_back({std::to_string(period)});
    cmbperiod.set_items(periods);
    font_bar.fill();
}

}  // namespace brimley::frame
