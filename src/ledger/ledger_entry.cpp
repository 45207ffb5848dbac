#include "ledger/ledger_entry.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/people.h"
#include "kernel/money.h"

namespace brimley::ledger {

namespace command = frame::command;
using frame::Mode;

namespace {

constexpr frame::FormIdentity kEntryIdentity{"Ledger_entry", "Journal entries", ""};
constexpr int kRemarkWidth = 40;  // characters

}  // namespace

Ledger_entry::Ledger_entry(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                           frame::Desk& desk)
    : LedgerForm(kEntryIdentity, std::move(context), std::move(kernel), desk) {
    set_caption(txtdocno, "Entry no");
    set_caption(txtdate, "Date");
    set_caption(txtremark, "Text", kRemarkWidth);
    set_caption(txtperiod, "Period");
    set_caption(txtuser, "Entered by");
    set_caption(txtdescription, "Reversal", kRemarkWidth);
    set_caption(txtdebit, "Debit");
    set_caption(txtcredit, "Credit");
    add_column(dbgrid1, "Account", Look::text);
    add_column(dbgrid1, "Name", Look::wide_text);
    add_column(dbgrid1, "Debit", Look::money);
    add_column(dbgrid1, "Credit", Look::money);
    for (controls::TextField* const field : {&txtperiod, &txtuser, &txtdescription, &txtdebit, &txtcredit})
        lock(*field);
    accounts_list_ = {{"Account", "Name"}, {1700, 3600}, rows_of(kAccountList)};
    dbgrid1.columns.front().drop_down = &accounts_list_;
    dbgrid1.on_after_update = [this](int column) {
        if (column == 0)
            dbgrid1.set_cell(dbgrid1.row(), "Name",
                             accounts().name_of(dbgrid1.cell(dbgrid1.row(), "Account")));
        show_sums();
        dbgrid1.rebind();
    };
    txtdocno.on_enter = [this] {
        if (mode() == Mode::read) (void)show_number(txtdocno.text());
    };
}

std::vector<controls::Command> Ledger_entry::own_commands() const {
    using Bars = std::vector<std::string>;
    return {
        {command::kSave, "&Save", "", "", Bars{"File", "Standard"}, 'S'},
        {command::kNew, "&New", "", "New entry", Bars{"Edit", "Standard"}},
        {kReverse, "&Reverse", "", "Take the entry back by another one", Bars{"Edit", "Standard"}},
        {command::kPrevious, "&Previous", "", "", Bars{"Record", "Standard"}},
        {command::kNext, "&Next", "", "", Bars{"Record", "Standard"}},
        {command::kLast, "&Last", "", "", Bars{"Record", "Standard"}},
        {command::kGlRecord, "&G/L record", "", "Show it as the ledger has it", Bars{"Record", "Standard"}}};
}

void Ledger_entry::show_first_values() {
    read_accounts();
    clear();
    set_mode(Mode::read);
}

void Ledger_entry::read_rights_of(kernel::UserRights& rights) {
    Form::read_rights_of(rights);
    if (rights.Update) return;
    const bool may = company::has_every_right(kernel().database(), context().BRIMLEY_USER);
    rights = {may, may, rights.form_design};
}

bool Ledger_entry::can_do(int id) const {
    const bool reads = mode() == Mode::read;
    switch (id) {
        case command::kSave:
            return rights().Update && !reads;
        case command::kNew:
            return rights().Update;
        case kReverse:
            return rights().Update && reads && can_be_reversed_;
        case command::kPrevious:
        case command::kNext:
        case command::kLast:
            return reads;
        case command::kGlRecord:
            return reads && !shown_.empty();
        default:
            return true;
    }
}

void Ledger_entry::execute_own(int id) {
    switch (id) {
        case command::kSave:
            (void)save();
            break;
        case command::kNew:
            mode() == Mode::read ? begin_new() : leave_entry();
            break;
        case kReverse:
            reverse();
            break;
        case command::kPrevious:
            walk(Way::back);
            break;
        case command::kNext:
            walk(Way::on);
            break;
        case command::kLast:
            walk(Way::last);
            break;
        case command::kGlRecord:
            notify(kLedgerReview, shown_);
            break;
        default:
            break;
    }
}

// --- modes ---

void Ledger_entry::set_mode(Mode mode) {
    const bool enters = mode == Mode::new_entry;
    bars_.set_pressed(command::kNew, enters);
    for (controls::TextField* const field :
         {static_cast<controls::TextField*>(&txtdate), &txtremark, &txtdocno}) {
        const bool open = enters != (field == &txtdocno);
        field->set_locked(!open);
        field->set_back_colour(open ? controls::kWhite : controls::kReadOnlyBack);
    }
    for (const char* const column : {"Account", "Debit", "Credit"})
        dbgrid1.columns[static_cast<std::size_t>(dbgrid1.get_column(column))].locked = !enters;
    dbgrid1.allow_update = enters;
    dbgrid1.rebind();
}

void Ledger_entry::clear() {
    shown_.clear();
    can_be_reversed_ = false;
    for (controls::TextField* const field : {static_cast<controls::TextField*>(&txtdate), &txtdocno,
                                             &txtremark, &txtperiod, &txtuser, &txtdescription})
        field->set("");
    dbgrid1.array.dimension(kEntryLinesMax);
    show_sums();
    dbgrid1.rebind();
}

void Ledger_entry::begin_new() {
    read_accounts();
    clear();
    txtdate.set(date_text(desk().now().date_only()));
    set_mode(Mode::new_entry);
}

bool Ledger_entry::anything_entered() const { return !txtremark.empty() || dbgrid1.array.used_rows() > 0; }

void Ledger_entry::leave_entry() {
    if (anything_entered() && ask("Do you want to save new entry?")) {
        (void)save();
        return;
    }
    clear();
    set_mode(Mode::read);
}

// --- what is shown ---

const std::vector<Ledger_entry::Known>& Ledger_entry::known() {
    if (known_) return *known_;
    known_.emplace();
    step("read the entries", [&] {
        auto rows = kernel().read_long(
            "SELECT docno, fkey FROM GL_header_table WHERE Source = 'GL-ENTRY' ORDER BY docno");
        for (; !rows.at_eof(); rows.MoveNext())
            known_->push_back({rows.text("docno"), rows.text("fkey")});
    });
    return *known_;
}

void Ledger_entry::walk(Way way) {
    known_.reset();  // other desks enter, too
    const auto& all = known();
    if (all.empty()) return tell("There is no journal entry.");
    auto at = std::ranges::find(all, shown_, &Known::fkey);
    if (way == Way::last || at == all.end())
        at = all.end() - 1;
    else if (way == Way::back && at != all.begin())
        --at;
    else if (way == Way::on && at + 1 != all.end())
        ++at;
    show_key(at->fkey);
}

bool Ledger_entry::show_number(const std::string& docno) {
    const std::string before = shown_;
    known_.reset();
    const auto& all = known();
    const auto found = std::ranges::find(all, docno, &Known::docno);
    if (found == all.end()) {
        tell(fmt::format("There is no journal entry {}.", docno));
        before.empty() ? clear() : show_key(before);
        return false;
    }
    show_key(found->fkey);
    return true;
}

void Ledger_entry::show_key(const std::string& fkey) {
    clear();
    step("show an entry", [&] {
        const auto header = kernel().find("GL_header_table", {{"fkey", fkey}});
        if (header.at_eof()) return;
        shown_ = fkey;
        txtdocno.set(header.text("docno"));
        txtdate.set(date_text(header.field("gldate")));
        txtremark.set(header.text("remark"));
        txtperiod.set(fmt::format("{}/{}", header.text("period"), header.text("fyear")));
        txtuser.set(header.text("user_created"));
        txtdescription.set(header.text("Description"));
        // One that was taken back says so, and so does one that takes another back.
        can_be_reversed_ = !header.flag("Reverse") && txtdescription.empty();
        show_lines(fkey);
    });
    show_sums();
    dbgrid1.go_to(0, 0);
    dbgrid1.rebind();
}

void Ledger_entry::show_lines(const std::string& fkey) {
    auto lines = kernel().read(fmt::format(
        "SELECT * FROM GL_transaction_table WHERE fkey = {} ORDER BY lineno", store::quoted(fkey)));
    dbgrid1.array.dimension(std::max(static_cast<int>(lines.RecordCount()), kEntryLinesMax));
    for (int row = 0; !lines.at_eof(); lines.MoveNext(), ++row) {
        const std::string accno = lines.text("accno");
        const double debit = accounts().debit_of(accno, base_amount_of(lines));
        dbgrid1.set_cell(row, "Account", accno);
        dbgrid1.set_cell(row, "Name", accounts().name_of(accno));
        dbgrid1.set_cell(row, "Debit", debit_text(debit));
        dbgrid1.set_cell(row, "Credit", credit_text(debit));
    }
}

void Ledger_entry::show_sums() {
    const auto sum_of = [&](const char* column) {
        double sum = 0;
        for (int row = 0; row < dbgrid1.array.used_rows(); ++row)
            sum += kernel::money_value(dbgrid1.cell(row, column));
        return kernel::format_money(sum);
    };
    txtdebit.set(sum_of("Debit"));
    txtcredit.set(sum_of("Credit"));
}

}  // namespace brimley::ledger
