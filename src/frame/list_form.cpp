#include "frame/list_form.h"

namespace brimley::frame {

using controls::Command;

namespace {

std::vector<Command> list_commands() {
    using Bars = std::vector<std::string>;
    return {
        {command::kPageSetup, "Page Set&up", "Setup", "Page Setup", Bars{"File", "Standard"}, 'U'},
        {command::kPreview, "&Preview", "Preview", "", Bars{"File", "Standard"}, 'P'},
        {command::kFind, "&Find", "Find", "", Bars{"Run", "Standard"}},
        {command::kPrintColumn, "Print &Column", "Columns", "Print Column", Bars{"Option", "Standard"}},
    };
}

}  // namespace

ListForm::ListForm(const FormIdentity& identity, const ReportNames& report, HostContext context,
                   std::shared_ptr<kernel::ModuleG3> kernel, Desk& desk)
    : GridForm(identity, std::move(context), std::move(kernel), desk), names_(report) {
    Progress1.set_visible(false);
    // There is no command for the frame of the font bar: it comes and goes with the bar.
    bars_.on_font_bar = [this](bool visible) { font_bar.frame_font.set_visible(visible); };
    font_bar.frame_font.on_close = [this] { bars_.show_font_bar(false); };
    dbgrid1.on_row_col_change = [this](int, int old_column) { font_bar.follow_column(old_column); };
}

void ListForm::Form_Load() {
    clear_list();
    show_first_values();
    step("get_user_rights", [&] { read_rights(); });
    set_BRIMLEY_COLOR();
    init_toolbar();
    init_fontcolor();
    step("initform_control", [&] {
        initform_control();
        font_bar.fill();
    });
    step("init_form_property", [&] {
        init_form_property();
        font_bar.frame_font.set_visible(bars_.font_bar_visible);
    });
    step("init_report", [&] { init_report(); });
    dbgrid1.header_colour = palette_[presentation::kHeaderSlot];
}

void ListForm::add_list_commands(std::vector<Command> own) {
    for (Command& command : list_commands())
        own.push_back(std::move(command));
    add_commands(std::move(own),
                 {command::kSave, command::kNew, command::kEditMode, command::kPrevious, command::kNext,
                  command::kLast, command::kInsertLine, command::kDeleteLine, command::kGlRecord,
                  command::kRefresh, command::kAccountMaster, command::kItemMaster, command::kVendorMaster,
                  command::kSystemHelp, command::kAbout});
}

void ListForm::CommandBars1_Execute(int id) {
    if (execute_of_grid_form(id)) return;
    switch (id) {
        case command::kPageSetup:
            show_page_setup(identity().class_name);
            break;
        case command::kPreview:
            if (rights().Print) create_acrobat();
            break;
        case command::kFind:
            SEL_record();
            break;
        case command::kClear:
            clear_box();
            break;
        case command::kPrintColumn:
            print_columns.toggle();
            break;
        default:
            execute_own(id);
    }
}

void ListForm::create_acrobat() {
    auto report = report_.begin(names_, identity().class_name);
    if (!report) return;
    const bool in_a_fill = Progress1.visible();
    if (!in_a_fill) Progress1.set(0);
    Progress1.set_visible(true);
    report->grids.push_back({columns_to_print(), &dbgrid1.array});
    report_.print(*report, names_);
    Progress1.set_visible(in_a_fill);
}

// In the order of the pane. Whether the grid shows a column does not matter.
std::vector<printing::PrintedColumn> ListForm::columns_to_print() {
    std::vector<printing::PrintedColumn> columns;
    for (const std::string& caption : print_columns.ticked()) {
        const int column = dbgrid1.get_column(caption);
        if (column >= 0) columns.push_back(printing::printed_column(dbgrid1, column));
    }
    return columns;
}

void ListForm::save_grid() {
    GridForm::save_grid();
    print_columns.save();
}

}  // namespace brimley::frame
