#include "frame/page_setup.h"

#include <algorithm>

#include "kernel/money.h"
#include "presentation/pickers.h"
#include "printing/report_format.h"

namespace brimley::frame {

using controls::ComboBox;
using controls::TextField;
using printing::kNamedPapers;
using printing::kUserDefinedPaper;
using printing::NamedPaper;

namespace {

constexpr FormIdentity kIdentity{"Form_report_format", "Page Setup", ""};

constexpr const char* kPortrait = "Portrait";
constexpr const char* kLandscape = "Landscape";
// What is shown before the first save. It is none of the entries, and so chooses none of them.
constexpr const char* kFirstPaper = "Letter (8.5x11 in.)";

std::vector<ComboBox::Row> items(std::initializer_list<const char*> texts) {
    std::vector<ComboBox::Row> rows;
    for (const char* text : texts)
        rows.push_back({text});
    return rows;
}

}  // namespace

Form_report_format::Form_report_format(HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                       Desk& desk, std::string report_form)
    : Form(kIdentity, std::move(context), std::move(kernel), desk), report_form_(std::move(report_form)) {
    cmbpaper.on_item_select = [this] { cmbpaper_ItemSelect(); };
    cmdsave.on_click = [this] { cmdsave_Click(); };
}

void Form_report_format::Form_Load() {
    init_fontcolor();
    presentation::cColorsCombo::Init(cmbfont_color);
    presentation::cColorsCombo::Init(cmbback_color);
    presentation::cFontsCombo::Init(cmbitfont_print, [this] { return desk().font_families(); });
    cmbitfont_print.set("Arial");
    init_control();
    step("get_report_format", [&] { get_report_format(); });
}

void Form_report_format::init_control() {
    cmborient.set_items(items({kPortrait, kLandscape}));
    std::vector<ComboBox::Row> papers;
    for (const NamedPaper& paper : kNamedPapers)
        papers.push_back({paper.entry});
    papers.push_back({kUserDefinedPaper});
    cmbpaper.set_items(std::move(papers));
    cmbunit.set_items(items({"mm", "inch"}));
    cmbfont_size_print.set_items(items({"8", "9", "10", "10.5", "11", "12", "14", "16", "18", "20", "22",
                                        "24", "28", "32", "36", "40", "44", "48"}));
    cmbsplit_page.set_items(items({"1", "2", "3", "4"}));
}

// The fields whose texts are stored as they are shown. Null is shown as an empty text.
std::vector<std::pair<const char*, TextField*>> Form_report_format::typed_fields() {
    return {{"top_margin", &txttop},     {"bottom_margin", &txtbottom}, {"left_margin", &txtleft},
            {"right_margin", &txtright}, {"Width", &txtwidth},          {"Height", &txtheight}};
}

std::vector<std::pair<const char*, ComboBox*>> Form_report_format::chosen_fields() {
    return {{"font_size", &cmbfont_size_print},
            {"row_height", &cmbrow_hi},
            {"split_page", &cmbsplit_page},
            {"PaperSize", &cmbpaper},
            {"unit", &cmbunit}};
}

std::vector<std::pair<const char*, controls::CheckBox*>> Form_report_format::switches() {
    return {{"disabled_evenrow_color", &chkdisable_even_row},
            {"Bold", &chkbold},
            {"use_grid_font", &chkuse_grid_font},
            {"column_divider", &chkcoldivider}};
}

void Form_report_format::get_report_format() {
    const auto row =
        kernel().find("Report_format_table", {{"user", context().BRIMLEY_USER}, {"form_name", report_form_}});
    if (!row.at_eof()) return show(row);
    cmbpaper.set(kFirstPaper);
    txtwidth.set("8.5");
    txtheight.set("11");
    cmbunit.set("inch");
}

void Form_report_format::show(const store::Recordset& row) {
    if (!row.field("font_name").is_null()) cmbitfont_print.set(row.text("font_name"));
    show_colour(cmbfont_color, row.field("font_color"));
    show_colour(cmbback_color, row.field("evenrow_color"));
    for (const auto& [field, control] : typed_fields())
        control->set(row.text(field));
    for (const auto& [field, control] : chosen_fields())
        control->set(row.text(field));
    for (const auto& [field, control] : switches())
        control->set(row.flag(field));
    cmborient.set(row.text("Orientation") == "1" ? kPortrait : kLandscape);
}

// A number that is none of the named colours chooses none of them.
void Form_report_format::show_colour(ComboBox& picker, const store::Value& stored) {
    if (stored.is_null()) return;
    const auto number = kernel::whole_number(stored.number(), 0, controls::kWhite);
    picker.set(presentation::colour_code(static_cast<controls::Colour>(number)));
    if (picker.list_index() < 0) picker.clear_choice();
}

void Form_report_format::cmbpaper_ItemSelect() {
    if (cmbpaper.empty()) return;
    const bool own_size = cmbpaper.text() == kUserDefinedPaper;
    txtwidth.set_locked(!own_size);
    txtheight.set_locked(!own_size);
    const auto paper = std::find_if(kNamedPapers.begin(), kNamedPapers.end(),
                                    [&](const NamedPaper& each) { return cmbpaper.text() == each.entry; });
    if (paper == kNamedPapers.end()) return;
    txtwidth.set(paper->width);
    txtheight.set(paper->height);
    cmbunit.set(paper->unit);
}

void Form_report_format::cmdsave_Click() {
    if (!has_database()) return;
    if (cmbfont_size_print.empty()) cmbfont_size_print.set("10");
    if (cmbrow_hi.empty()) cmbrow_hi.set("20");
    if (kernel::money_value(cmbrow_hi.text()) <= kernel::money_value(cmbfont_size_print.text()))
        return tell("row height must > font size");
    try {
        store_format();
    } catch (const store::Error& error) {
        return tell(error.what());
    }
    tell("Save format complete");
}

void Form_report_format::store_format() {
    auto row = kernel().find_to_change("Report_format_table",
                                       {{"user", context().BRIMLEY_USER}, {"form_name", report_form_}});
    if (row.at_eof()) {
        row.AddNew();
        row.set("user", context().BRIMLEY_USER);
        row.set("form_name", report_form_);
    } else {
        row.Edit();
    }
    if (!cmborient.empty()) row.set("Orientation", cmborient.text() == kPortrait ? "1" : "2");
    row.set("font_name", cmbitfont_print.text());
    store_colour(row, "font_color", cmbfont_color);
    store_colour(row, "evenrow_color", cmbback_color);
    for (const auto& [field, control] : typed_fields())
        row.set(field, control->text());
    for (const auto& [field, control] : chosen_fields())
        row.set(field, control->text());
    for (const auto& [field, control] : switches())
        row.set(field, control->is_set());
    row.Update();
}

// Without a choice the stored number stays.
void Form_report_format::store_colour(store::Recordset& row, const char* field, const ComboBox& picker) {
    if (picker.list_index() >= 0)
        row.set(field, static_cast<double>(presentation::HTMLToRGB(picker.text())));
    else if (row.field(field).is_null())
        row.set(field, 0);
}

}  // namespace brimley::frame
