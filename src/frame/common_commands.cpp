// The commands that the forms have in common: the set that a form takes, without those that it does not have.
#include <algorithm>

#include "frame/grid_form.h"

namespace brimley::frame {

using controls::Command;

namespace {

std::vector<Command> common_commands() {
    using Bars = std::vector<std::string>;
    return {
        {command::kExit, "&Exit", "Exit", "", Bars{"File", "Standard"}, 'X'},
        {command::kSave, "&Save", "Save", "Save as", Bars{"File", "Standard", "Popup"}, 'S'},
        {command::kPreview, "&Preview", "Preview", "", Bars{"File", "Standard", "Popup"}, 'P'},
        {command::kNew, "&New", "New", "", Bars{"Edit", "Standard", "Popup"}},
        {command::kEditMode, "&Edit mode", "Edit", "Edit mode", Bars{"Edit", "Standard", "Popup"}},
        {command::kPrevious, "&Previous record", "Previous", "Previous record", Bars{"Record", "Standard"}},
        {command::kNext, "&Next record", "Next", "Next record", Bars{"Record", "Standard"}},
        {command::kLast, "&Last record", "Last", "Last record", Bars{"Record", "Standard"}},
        {command::kInsertLine, "&Insert Line", "", "", Bars{"Popup"}},
        {command::kDeleteLine, "&Delete Line", "", "", Bars{"Popup"}},
        {command::kGlRecord, "&G/L Record", "G/L", "G/L Record", Bars{"Link", "Standard"}},
        {command::kRefresh, "&Refresh record", "Refresh", "Refresh Order", Bars{"Record", "Standard"}},
        {command::kAccountMaster, "Account Master", "", "", Bars{"Popup", "Master"}},
        {command::kItemMaster, "Item Master", "", "", Bars{"Popup", "Master"}},
        {command::kVendorMaster, "Vendor Master", "", "", Bars{"Popup", "Master"}},
        {command::kSystemHelp, "Account Payable System Help", "", "", Bars{"Help"}},
        {command::kAbout, "About Brimley Works", "", "", Bars{"Help"}},
        {command::kShowText, "&Show Text below Icon", "", "", Bars{"Option"}},
        {command::kSaveFont, "Save Font", "", "", Bars{"Font"}},
        {command::kRestoreFont, "Restore Font", "", "", Bars{"Font"}},
        {command::kBold, "Bold", "", "", Bars{"Font"}},
        {command::kItalic, "Italic", "", "", Bars{"Font"}},
        {command::kUnderline, "Underline", "", "", Bars{"Font"}},
        {command::kAlignLeft, "Align Left", "", "", Bars{"Font"}},
        {command::kAlignCentre, "Align Center", "", "", Bars{"Font"}},
        {command::kAlignRight, "Align Right", "", "", Bars{"Font"}},
    };
}

}  // namespace

void GridForm::add_commands(std::vector<Command> own, std::initializer_list<int> without) {
    for (Command& common : common_commands()) {
        const bool replaced = std::any_of(own.begin(), own.end(),
                                          [&](const Command& command) { return command.id == common.id; });
        const bool left_out = std::find(without.begin(), without.end(), common.id) != without.end();
        if (!replaced && !left_out) own.push_back(std::move(common));
    }
    std::sort(own.begin(), own.end(), [](const Command& a, const Command& b) { return a.id < b.id; });
    for (Command& command : own)
        bars_.add(std::move(command));
}

}  // namespace brimley::frame
