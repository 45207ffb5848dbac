#include "kernel/module_g3.h"

#include <fmt/format.h>

namespace brimley::kernel {

void ModuleG3::tell(const std::string& text) {
    reasons_.refused(text);
    outside_.pump();
    outside_.message(text);
}

bool ModuleG3::refuse(const std::string& why) {
    reasons_.refused(why);
    return false;
}

namespace {

bool try_locked_edit_first(store::Recordset& rows, store::FieldValues fields) {
    try {
        rows.LockEdits(true);
        return rows.try_edit_first(fields);
    } catch (const store::Error& failure) {
        // Looking for it may fail as well, and nothing but a lock goes away by waiting.
        if (failure.kind() != store::ErrorKind::locked) throw;
        return false;
    }
}

}  // namespace

RowTaken edit_first_with_retry(store::Recordset& rows, store::FieldValues fields, Outside& outside,
                               int retries) {
    bool taken = try_locked_edit_first(rows, fields);
    if (!taken && rows.NoMatch()) return RowTaken::there_is_none;
    for (int tries = 0; !taken && tries < retries; ++tries) {
        outside.wait(kLockRetryWait);
        taken = try_locked_edit_first(rows, fields);
    }
    return taken ? RowTaken::yes : RowTaken::somebody_has_it;
}

std::string no_account(std::string_view accno) { return fmt::format("Account {} does not exist", accno); }

AccountSegments segments_of(const store::Recordset& account_row) {
    AccountSegments account;
    account.accno = account_row.text("accno");
    account.acccode = account_row.field("acccode");
    for (std::size_t i = 0; i < kSubaccFields.size(); ++i)
        account.subacc[i] = account_row.field(kSubaccFields[i]);
    return account;
}

}  // namespace brimley::kernel
