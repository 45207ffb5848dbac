#include "masters/master_form.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/fiscal_year.h"
#include "company/people.h"
#include "company/refusal.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::masters {

using frame::Mode;
using store::Value;

namespace {

constexpr int kTextWidth = 30;  // characters
constexpr int kLongLines = 4;

std::string control_name(const Field& field) {
    const char* const prefix = field.kind == Field::Kind::flag ? "chk"
                               : field.kind == Field::Kind::known || field.kind == Field::Kind::choice
                                   ? "cmb"
                                   : "txt";
    return prefix + store::lower_case(field.name);
}

std::vector<controls::Command> commands_of(const Master& master) {
    using Bars = std::vector<std::string>;
    return {{frame::command::kExit, "&Exit", "", "", Bars{"File", "Standard"}, 'X'},
            {frame::command::kSave, "&Save", "", "", Bars{"File", "Standard"}, 'S'},
            {frame::command::kNew, "&New", "", fmt::format("New {}", master.one), Bars{"Edit", "Standard"}},
            {frame::command::kEditMode, "&Edit mode", "Edit", "", Bars{"Edit", "Standard"}},
            {frame::command::kDeleteLine, "&Delete", "", fmt::format("Delete the {}", master.one),
             Bars{"Edit", "Standard"}},
            {frame::command::kPrevious, "&Previous", "", "", Bars{"Record", "Standard"}},
            {frame::command::kNext, "&Next", "", "", Bars{"Record", "Standard"}},
            {frame::command::kFind, "&Find", "", "", Bars{"Record", "Standard"}},
            {command::kSort, "S&ort by column", "Sort", "", Bars{"Record", "Standard"}},
            {command::kWriteFile, "&Write CSV file", "", "", Bars{"File"}},
            {command::kReadFile, "&Read CSV file", "", "", Bars{"File"}},
            {frame::command::kShowText, "&Show Text below Icon", "", "", Bars{"Option"}}};
}

std::string in_query(const Value& value) {
    if (value.is_flag()) return value.flag() ? "TRUE" : "FALSE";
    return value.is_date() ? store::date_value(*value.date()) : store::quoted(value.text());
}

// "year 2026 exists" as a sentence of its own.
std::string sentence(std::string_view reason) {
    std::string text = controls::upper_case(reason.substr(0, 1));
    return text.append(reason.substr(1)) + '.';
}

bool is_yes(const Value& value) { return !value.is_null() && value.flag(); }

}  // namespace

MasterForm::MasterForm(const Master& master, frame::HostContext context,
                       std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
    : Form(master.identity, std::move(context), std::move(kernel), desk), master_(master) {
    for (const Field& field : master_.fields) {
        places_.push_back({&field, control_for(field)});
        if (!field.listed) continue;
        controls::GridColumn column;
        column.caption = field.caption;
        column.order = static_cast<int>(dbgrid1.columns.size());
        column.width = field.kind == Field::Kind::text || field.kind == Field::Kind::known ? 2200 : 1500;
        column.locked = true;
        column.check_box = field.kind == Field::Kind::flag;
        if (field.kind == Field::Kind::number) column.alignment = controls::Alignment::right;
        dbgrid1.columns.push_back(column);
    }
    dbgrid1.on_row_col_change = [this](int, int) {
        if (mode() == Mode::read) show_row(dbgrid1.row());
    };
    txtsearch.on_enter = [this] {
        if (mode() == Mode::read) list_rows();
    };
}

std::unique_ptr<controls::Control> MasterForm::control_for(const Field& field) {
    const std::string name = control_name(field);
    switch (field.kind) {
        case Field::Kind::flag:
            return std::make_unique<controls::CheckBox>(controls_, name, field.caption);
        case Field::Kind::date:
            return std::make_unique<controls::DateField>(controls_, name);
        case Field::Kind::choice: {
            auto combo = std::make_unique<controls::ComboBox>(controls_, name);
            std::vector<controls::ComboBox::Row> rows;
            for (const char* const choice : field.choices)
                rows.push_back({choice});
            combo->set_items(rows);
            return combo;
        }
        case Field::Kind::known: {
            const bool has_name = *field.of.name_field != '\0';
            auto combo = std::make_unique<controls::ComboBox>(
                controls_, name, has_name ? fmt::format("0;1500;<;|1;3500;<;") : std::string("0;1500;<;"));
            combo->set_source(
                rows_of(fmt::format("SELECT {}{}{} FROM {} ORDER BY {}", field.of.field, has_name ? ", " : "",
                                    field.of.name_field, field.of.table, field.of.field)));
            return combo;
        }
        default:
            return std::make_unique<controls::TextField>(controls_, name);
    }
}

void MasterForm::Form_Load() {
    step("get_user_rights", [&] { read_rights(); });
    set_BRIMLEY_COLOR();
    init_toolbar();
    init_fontcolor();
    step("init_form_property", [&] { init_form_property(); });
    dbgrid1.header_colour = palette_[presentation::kHeaderSlot];
    set_mode(Mode::read);
    list_rows();
}

void MasterForm::init_toolbar() {
    for (controls::Command& each : commands_of(master_))
        bars_.add(std::move(each));
}

// Who keeps the company's rights keeps its masters, too, unless a right of their own is given.
void MasterForm::read_rights_of(kernel::UserRights& rights) {
    Form::read_rights_of(rights);
    if (rights.Update && !master_.for_administrators && !master_.shown_only) return;
    const bool may =
        !master_.shown_only && company::has_every_right(kernel().database(), context().BRIMLEY_USER);
    rights = {may, may, rights.form_design};
}

bool MasterForm::can_do(int id) const {
    const Mode now = mode();
    switch (id) {
        case frame::command::kSave:
            return rights().Update && now != Mode::read;
        case frame::command::kNew:
            return rights().Update && now != Mode::edit && !master_.single;
        case frame::command::kEditMode:
            return rights().Update && (now == Mode::edit || (now == Mode::read && shown_));
        case frame::command::kDeleteLine:
            return rights().Update && now == Mode::read && shown_ && !master_.single && !master_.stays;
        case frame::command::kPrevious:
        case frame::command::kNext:
        case frame::command::kFind:
        case command::kSort:
            return now == Mode::read;
        case command::kWriteFile:
            return rights().Print && now == Mode::read;
        case command::kReadFile:
            return rights().Update && now == Mode::read && !master_.single;
        default:
            return true;
    }
}

void MasterForm::CommandBars1_Execute(int id) {
    if (execute_common(id) || !can_do(id)) return;
    switch (id) {
        case frame::command::kSave:
            if (save()) set_mode(Mode::read);
            break;
        case frame::command::kNew:
            mode() == Mode::read ? begin_new() : leave_entry();
            break;
        case frame::command::kEditMode:
            mode() == Mode::read ? begin_edit() : leave_entry();
            break;
        case frame::command::kDeleteLine:
            remove();
            break;
        case frame::command::kPrevious:
            step_to(dbgrid1.row() - 1);
            break;
        case frame::command::kNext:
            step_to(dbgrid1.row() + 1);
            break;
        case frame::command::kFind:
            list_rows();
            break;
        case command::kSort:
            sort_by_column();
            break;
        case command::kWriteFile:
            write_file();
            break;
        case command::kReadFile:
            read_file();
            break;
        default:
            break;
    }
}

// --- fields and values ---

frame::FieldHint MasterForm::hint_of(const controls::Control& control) const {
    if (&control == &txtsearch) return {"Find"};
    if (&control == &txtfile) return {"CSV file", kTextWidth};
    for (const Place& place : places_) {
        if (place.control.get() != &control) continue;
        const bool is_long = place.field->kind == Field::Kind::long_text;
        const bool is_text = is_long || place.field->kind == Field::Kind::text;
        return {place.field->caption, is_text ? kTextWidth : 0, is_long ? kLongLines : 1};
    }
    return {};
}

const MasterForm::Place* MasterForm::place_of(std::string_view field) const {
    const auto found =
        std::ranges::find_if(places_, [&](const Place& place) { return field == place.field->name; });
    return found == places_.end() ? nullptr : &*found;
}

std::string MasterForm::shown_text(const Field& field, const Value& value) {
    if (value.is_null()) return {};
    if (field.kind == Field::Kind::date && value.is_date()) return date_text(value);
    if (field.kind == Field::Kind::date)
        return kernel::yyyymmdd_to_user_date(value.text(), {context().BRIMLEY_DATE_FORMAT},
                                             kernel().outside());
    if (field.kind == Field::Kind::flag) return is_yes(value) ? "True" : "False";
    if (field.computed && field.kind == Field::Kind::number) return kernel::format_money(value.number());
    return value.text();
}

void MasterForm::put(const Place& place, const Value& value) {
    if (auto* const box = dynamic_cast<controls::CheckBox*>(place.control.get()))
        box->set(is_yes(value));
    else if (auto* const combo = dynamic_cast<controls::ComboBox*>(place.control.get()))
        combo->set_row({shown_text(*place.field, value)});
    else
        static_cast<controls::TextField&>(*place.control).set(shown_text(*place.field, value));
}

std::string MasterForm::text_in(const Place& place) const { return place.control->shown(); }

Value MasterForm::value_in(const Place& place) const {
    const std::string typed = text_in(place);
    switch (place.field->kind) {
        case Field::Kind::flag:
            return typed != "0";
        case Field::Kind::number:
            return typed.empty() ? Value() : Value(kernel::money_value(typed));
        case Field::Kind::date: {
            const auto day = kernel::try_user_date(typed, context().BRIMLEY_DATE_FORMAT);
            return day ? Value(*day) : Value();
        }
        default:
            return typed.empty() ? Value() : Value(typed);
    }
}

std::string MasterForm::text(std::string_view field) const {
    const Place* const place = place_of(field);
    return place == nullptr ? std::string{} : text_in(*place);
}

double MasterForm::number(std::string_view field) const { return kernel::money_value(text(field)); }

std::optional<store::DateTime> MasterForm::date(std::string_view field) const {
    return kernel::try_user_date(text(field), context().BRIMLEY_DATE_FORMAT);
}

std::string MasterForm::name_of_row() const {
    std::string name = master_.one;
    if (master_.single) return name;
    for (const Place& place : places_)
        if (place.field->key && place.field->kind != Field::Kind::flag) name += ' ' + text_in(place);
    return name;
}

// --- the list ---

std::string MasterForm::order_of_keys() const {
    std::string keys;
    for (const Field& field : master_.fields)
        if (field.key) keys += fmt::format("{}[{}]", keys.empty() ? " ORDER BY " : ", ", field.name);
    return keys;
}

std::string MasterForm::order_of_list() const {
    if (sorted_by_ == nullptr) return order_of_keys();
    std::string order = fmt::format(" ORDER BY [{}]{}", sorted_by_->name, downwards_ ? " DESC" : "");
    for (const Field& field : master_.fields)
        if (field.key && &field != sorted_by_) order += fmt::format(", [{}]", field.name);
    return order;
}

void MasterForm::sort_by_column() {
    int column = dbgrid1.column();
    for (const Field& field : master_.fields) {
        if (!field.listed || column-- > 0) continue;
        downwards_ = sorted_by_ == &field && !downwards_;
        sorted_by_ = &field;
        break;
    }
    list_rows();
}

void MasterForm::list_rows() {
    std::string fields;
    for (const Field& field : master_.fields)
        if (field.listed || field.key)
            fields += fmt::format("{}[{}]", fields.empty() ? "" : ", ", field.name);
    const std::string wanted = controls::upper_case(txtsearch.text());
    dbgrid1.array.dimension(kRowsMax);
    listed_.clear();
    step("list_rows", [&] {
        auto rows =
            kernel().read_long(fmt::format("SELECT {} FROM {}{}", fields, master_.table, order_of_list()));
        for (; !rows.at_eof() && static_cast<int>(listed_.size()) < kRowsMax; rows.MoveNext()) {
            std::vector<std::string> texts;
            Key key;
            for (const Field& field : master_.fields) {
                if (field.key) key.push_back(rows.field(field.name));
                if (field.listed) texts.push_back(shown_text(field, rows.field(field.name)));
            }
            const bool has_it = wanted.empty() || std::ranges::any_of(texts, [&](const std::string& text) {
                                    return controls::upper_case(text).find(wanted) != std::string::npos;
                                });
            if (!has_it) continue;
            const int row = static_cast<int>(listed_.size());
            for (std::size_t column = 0; column < texts.size(); ++column)
                dbgrid1.array.set(row, static_cast<int>(column), texts[column]);
            listed_.push_back(std::move(key));
        }
    });
    dbgrid1.go_to(0, 0);
    dbgrid1.rebind();
    show_row(0);
}

void MasterForm::show_row(int row) {
    if (row < 0 || row >= static_cast<int>(listed_.size())) {
        clear_fields();
    } else if (!show_stored(listed_[static_cast<std::size_t>(row)])) {
        clear_fields();
    }
}

bool MasterForm::show_stored(const Key& key) {
    bool found = false;
    step("show a row", [&] {
        const auto row = stored_row(key);
        if (row.at_eof()) return;
        found = true;
        shown_ = key;
        shown_texts_.clear();
        for (const Place& place : places_) {
            put(place, row.field(place.field->name));
            shown_texts_.push_back(text_in(place));
        }
    });
    return found;
}

std::string MasterForm::document_key() const {
    std::string texts;
    if (!shown_) return texts;
    for (const Place& place : places_)
        if (place.field->key) texts += text_in(place) + '\n';
    return texts;
}

controls::Refusal MasterForm::bring_document(const std::string& /*name*/, const std::string& key) {
    std::string_view rest = key;
    for (const Place& place : places_) {
        if (!place.field->key) continue;
        const auto end = std::min(rest.find('\n'), rest.size());
        const std::string text(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (place.field->kind == Field::Kind::flag)
            put(place, text != "0");
        else if (auto* const field = dynamic_cast<controls::TextField*>(place.control.get()))
            field->set(text);
        else
            put(place, text);
    }
    if (show_stored(key_on_screen())) return controls::Refusal::none;
    show_row(dbgrid1.row());
    return controls::Refusal::disabled;
}

bool MasterForm::show_key(const std::string& key) {
    for (std::size_t row = 0; row < listed_.size(); ++row) {
        if (listed_[row].front().text() != key) continue;
        step_to(static_cast<int>(row));
        return true;
    }
    return false;
}

void MasterForm::step_to(int row) {
    if (row < 0 || row >= static_cast<int>(listed_.size())) return;
    dbgrid1.go_to(row, dbgrid1.column());
    dbgrid1.rebind();
    show_row(row);
}

void MasterForm::clear_fields() {
    shown_.reset();
    shown_texts_.clear();
    for (const Place& place : places_) {
        put(place, Value());
        shown_texts_.push_back(text_in(place));
    }
}

// --- modes ---

void MasterForm::open_fields(Mode mode) {
    for (const Place& place : places_) {
        const bool open =
            mode != Mode::read && !place.field->computed && !(mode == Mode::edit && place.field->key);
        place.control->set_locked(!open);
        place.control->set_back_colour(open ? controls::kWhite : controls::kReadOnlyBack);
    }
    txtsearch.set_locked(mode != Mode::read);
}

void MasterForm::set_mode(Mode mode) {
    bars_.set_pressed(frame::command::kNew, mode == Mode::new_entry);
    bars_.set_pressed(frame::command::kEditMode, mode == Mode::edit);
    open_fields(mode);
}

void MasterForm::begin_new() {
    clear_fields();
    set_mode(Mode::new_entry);
}

// As it stands in the table now.
void MasterForm::begin_edit() {
    const std::string name = name_of_row();
    if (!show_stored(Key(*shown_))) {
        tell(fmt::format("The {} no longer exists.", name));
        list_rows();
        return;
    }
    set_mode(Mode::edit);
}

bool MasterForm::is_changed() const {
    for (std::size_t i = 0; i < places_.size(); ++i)
        if (text_in(places_[i]) != shown_texts_.at(i)) return true;
    return false;
}

void MasterForm::leave_entry() {
    if (is_changed() && ask(fmt::format("Do you want to save the {}?", master_.one))) {
        if (!save()) return;
    } else {
        show_row(dbgrid1.row());
    }
    set_mode(Mode::read);
}

// --- what is stored ---

std::string MasterForm::criteria_of(const Key& key) const {
    if (master_.single) return {};
    std::string criteria = master_.of_company ? "[company] = 1" : "";
    std::size_t at = 0;
    for (const Field& field : master_.fields) {
        if (!field.key) continue;
        const Value& value = key.at(at++);
        criteria += fmt::format("{}[{}] = {}", criteria.empty() ? "" : " AND ", field.name, in_query(value));
    }
    return criteria;
}

MasterForm::Key MasterForm::key_on_screen() const {
    Key key;
    for (const Place& place : places_)
        if (place.field->key) key.push_back(value_in(place));
    return key;
}

store::Recordset MasterForm::stored_row(const Key& key) {
    const std::string criteria = criteria_of(key);
    return kernel().change(
        fmt::format("SELECT * FROM {}{}{}", master_.table, criteria.empty() ? "" : " WHERE ", criteria));
}

void MasterForm::hold_masters() {
    auto company = kernel().change("SELECT * FROM COA_config_table");
    if (!company.at_eof()) company.Edit();
}

bool MasterForm::save() {
    if (!is_right()) return false;
    const bool is_new = mode() == Mode::new_entry;
    if (!in_transaction("save a master", [&] { return is_new ? add_row() : change_row(); })) {
        tell_failure(fmt::format("The {} was not saved.", name_of_row()));
        return false;
    }
    const Key key = key_on_screen();
    const std::string name = name_of_row();
    tell(fmt::format("The {} is saved.", name));
    list_rows();
    const auto row =
        std::ranges::find_if(listed_, [&](const Key& each) { return criteria_of(each) == criteria_of(key); });
    if (row != listed_.end())
        step_to(static_cast<int>(row - listed_.begin()));
    else
        (void)show_stored(key);
    return true;
}

store::Recordset MasterForm::made_row() {
    if (!master_.make) {
        auto row = stored_row(key_on_screen());
        row.AddNew();
        if (master_.of_company) row.set("company", static_cast<double>(company::kCompany));
        return row;
    }
    master_.make(kernel(), *this);
    auto row = stored_row(key_on_screen());
    row.Edit();
    return row;
}

bool MasterForm::add_row() {
    hold_masters();
    if (!stored_row(key_on_screen()).at_eof())
        return refuse(fmt::format("The {} exists already.", name_of_row()));
    try {
        auto row = made_row();
        for (const Place& place : places_)
            if (!place.field->computed) row.set(place.field->name, value_in(place));
        row.Update();
    } catch (const company::Refusal& refusal) {
        return refuse(sentence(refusal.what()));
    } catch (const company::UnusableValue& refusal) {
        return refuse(sentence(refusal.what()));
    }
    return (!master_.added || master_.added(kernel(), *this)) && leaves_company_right();
}

bool MasterForm::change_row() {
    auto row = stored_row(*shown_);
    if (row.at_eof()) return refuse(fmt::format("The {} no longer exists.", name_of_row()));
    row.Edit();
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const Field& field = *places_[i].field;
        if (field.computed || field.kind == Field::Kind::flag) continue;
        if (shown_text(field, row.field(field.name)) != shown_texts_.at(i))
            return refuse(fmt::format("The {} has changed since it was shown.", name_of_row()));
    }
    if (!keeps_what_lasts()) return false;
    for (const Place& place : places_)
        if (!place.field->computed && !place.field->key) row.set(place.field->name, value_in(place));
    row.Update();
    return leaves_company_right();
}

void MasterForm::remove() {
    const std::string name = name_of_row();
    if (!ask(fmt::format("Are you sure you want to delete the {}?", name))) return;
    const bool removed = in_transaction("delete a master", [&] {
        hold_masters();
        const std::string by = user_of_row(master_.used_by);
        if (!by.empty()) return refuse(fmt::format("The {} is used by {}.", name, by));
        if (master_.removed && !master_.removed(kernel(), *this)) return false;
        const bool is_gone = kernel().database().Execute(fmt::format(
                                 "DELETE * FROM {} WHERE {}", master_.table, criteria_of(*shown_))) > 0;
        return is_gone && leaves_company_right();
    });
    if (!removed) return tell_failure(fmt::format("The {} was not deleted.", name));
    tell(fmt::format("The {} is deleted.", name));
    list_rows();
}

}  // namespace brimley::masters
