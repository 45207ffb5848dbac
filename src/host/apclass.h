// APclass: the only public class of the module, and the only way in.
//
// A host creates one, fills in the host context, and calls show methods. Each makes a new form (never reuses
// an open one), copies the context into it, and shows it without blocking; goto methods then steer the newest
// form of a kind. The one way back is NotifyClients. The class holds no business logic, validates nothing and
// reports nothing itself.
//
// A form reference stays set after its form was unloaded, and a second show of the same kind replaces it: the
// older form stays on screen and goes on working, but its requests no longer reach the host.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/host_context.h"

// Whoever acts on a form includes its header as well.
namespace brimley::invoices {
class APform_invoice;
class APreport_recur_inquiry;
}  // namespace brimley::invoices
namespace brimley::payments {
class APform_creditcard_payment;
class APform_misc_payment;
class APform_payment;
class APform_prepayment;
class APform_void_check;
}  // namespace brimley::payments
namespace brimley::revaluation {
class APform_revalue;
}
namespace brimley::inquiries {
class APreport_aging;
class APreport_inquiry;
class APreport_payhistory;
}  // namespace brimley::inquiries
namespace brimley::masters {
class MasterForm;
}
namespace brimley::ledger {
class Ledger_entry;
class Ledger_journal;
class Ledger_trial_balance;
}  // namespace brimley::ledger
namespace brimley::kernel {
class ModuleG3;
}
namespace brimley::frame {
class Desk;
}

namespace brimley::host {

template <class FormClass>
class FormSlot;

class APclass : public frame::HostContext {
  public:
    explicit APclass(frame::Desk& desk) : desk_(desk) {}
    // Forms that are still on the screen go on working; their requests no longer reach anybody.
    ~APclass() = default;
    APclass(const APclass&) = delete;
    APclass& operator=(const APclass&) = delete;

    // --- aliases: each writes the member of the long name ---
    void dbwkspace(std::shared_ptr<store::Workspace> workspace) { dbe = std::move(workspace); }
    void db(std::shared_ptr<store::Database> database) { abcdb = std::move(database); }
    void OPENdb(std::string path) { OPEN_DATABASE = std::move(path); }
    void basecurrency(std::string code) { BASE_CURRENCY = std::move(code); }
    void BRuser(std::string user) { BRIMLEY_USER = std::move(user); }
    void BRtheme(std::any theme) { BRIMLEY_THEME = std::move(theme); }

    // --- the event of the class ---
    std::function<void(const std::string& formx, const std::string& docnox, const std::string& arg2)>
        NotifyClients;

    // --- show methods ---

    void showform_APform_invoice(const std::optional<std::string>& doctypex = {});
    void showform_APform_payment(const std::optional<std::string>& docnox = {});
    void showform_APform_prepayment(const std::optional<std::string>& docnox = {});
    void showform_APform_misc();
    void showform_APform_creditcard_payment();
    void showform_APform_payhistory(const std::optional<std::string>& docnox = {});
    void showform_APform_inquiry();
    void showform_APform_aging(const std::optional<std::string>& overdue = {});
    void showform_APform_void_check();
    void showform_APform_revalue();
    void showform_APreport_recur_inquiry();
    // A master by the name of its form's class, such as Master_vendor, at the row of this key. One that
    // stands in Read comes to the front. Another name shows nothing.
    void showform_Master(const std::string& class_name, const std::optional<std::string>& key = {});
    // The ledger: the journal of this account, the trial balance, the journal entry of this number.
    void showform_Ledger_journal(const std::optional<std::string>& accno = {});
    void showform_Ledger_trial_balance();
    void showform_Ledger_entry(const std::optional<std::string>& docnox = {});

    // --- navigation: the matching show method has run before ---
    void switch_APform_invoice(const std::string& doctypex);
    void APform_invoice_goto_fkey(const std::string& fkeyx);
    void APform_invoice_goto_docno(const std::string& docnox);
    void APform_payment_goto_docno(const std::string& docnox);
    void APform_prepayment_goto_docno(const std::string& docnox);
    void APform_misc_goto_docno(const std::string& docnox);
    void APform_creditcard_goto_docno(const std::string& docnox);
    void APform_revalue_goto_docno(const std::string& docnox);
    void pay_this_invoice(const std::string& docnox, const std::string& vendorx);

    // --- exit: take the newest form of a kind down without saving ---
    void frm_invoice_Exit();
    void frm_payment_Exit();
    void frm_prepayment_Exit();
    void frm_misc_Exit();
    void frm_creditcard_Exit();
    void frm_recur_inquiry_Exit();
    void frm_revalue_Exit();
    void frm_void_check_Exit();
    void frm_aging_Exit();
    void frm_inquiry_Exit();
    void frm_payhistory_Exit();

    // --- forward: raise the class event, then let the host handle its events once ---
    void frm_invoice_NotifyClients(const std::string& formx, const std::string& docnox,
                                   const std::string& arg2);
    void frm_payment_NotifyClients(const std::string& formx, const std::string& docnox,
                                   const std::string& arg2);
    void frm_prepayment_NotifyClients(const std::string& formx, const std::string& docnox,
                                      const std::string& arg2);
    void frm_misc_NotifyClients(const std::string& formx, const std::string& docnox, const std::string& arg2);
    void frm_creditcard_NotifyClients(const std::string& formx, const std::string& docnox,
                                      const std::string& arg2);
    void frm_recur_inquiry_NotifyClients(const std::string& formx, const std::string& docnox,
                                         const std::string& arg2);
    void frm_revalue_NotifyClients(const std::string& formx, const std::string& docnox,
                                   const std::string& arg2);
    void frm_void_check_NotifyClients(const std::string& formx, const std::string& docnox,
                                      const std::string& arg2);
    void frm_aging_NotifyClients(const std::string& formx, const std::string& docnox,
                                 const std::string& arg2);
    void frm_inquiry_NotifyClients(const std::string& formx, const std::string& docnox,
                                   const std::string& arg2);
    void frm_payhistory_NotifyClients(const std::string& formx, const std::string& docnox,
                                      const std::string& arg2);

    void frm_ledger_NotifyClients(const std::string& formx, const std::string& docnox,
                                  const std::string& arg2);

    // Releases the database and the workspace, in this order; forms and cnx stay.
    void class_terminate();

    // --- form references ---
    std::shared_ptr<invoices::APform_invoice> frm_invoice;
    std::shared_ptr<invoices::APreport_recur_inquiry> frm_recur_inquiry;
    std::shared_ptr<payments::APform_payment> frm_payment;
    std::shared_ptr<payments::APform_prepayment> frm_prepayment;
    std::shared_ptr<payments::APform_creditcard_payment> frm_creditcard;
    std::shared_ptr<payments::APform_misc_payment> frm_misc;
    std::shared_ptr<payments::APform_void_check> frm_void_check;
    std::shared_ptr<revaluation::APform_revalue> frm_revalue;
    std::shared_ptr<inquiries::APreport_aging> frm_aging;
    std::shared_ptr<inquiries::APreport_inquiry> frm_inquiry;
    std::shared_ptr<inquiries::APreport_payhistory> frm_payhistory;
    std::shared_ptr<masters::MasterForm> frm_master;
    std::shared_ptr<ledger::Ledger_journal> frm_journal;
    std::shared_ptr<ledger::Ledger_trial_balance> frm_trial_balance;
    std::shared_ptr<ledger::Ledger_entry> frm_entry;

  private:
    // One of the forward methods.
    using Forward = void (APclass::*)(const std::string&, const std::string&, const std::string&);
    template <class FormClass>
    friend class FormSlot;

    [[nodiscard]] std::shared_ptr<kernel::ModuleG3> kernel_of_database();
    void raise(const std::string& formx, const std::string& docnox, const std::string& arg2);

    frame::Desk& desk_;
    std::shared_ptr<kernel::ModuleG3> kernel_;  // shared by all forms on the database of abcdb
    // Forms hold it weakly: gone with the host, nobody listens to them any more.
    std::shared_ptr<bool> listening_ = std::make_shared<bool>(true);
};

// The methods of APclass by name, for hosts that are driven by text. An unknown name or a wrong number of
// arguments calls nothing; the outcome says so.
enum class CallOutcome { done, no_such_method, wrong_arguments };
[[nodiscard]] CallOutcome call_by_name(APclass& ap, const std::string& method,
                                       const std::vector<std::string>& arguments);
[[nodiscard]] std::vector<std::string> method_names();

}  // namespace brimley::host
