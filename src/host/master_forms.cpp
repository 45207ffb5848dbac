// The host's method of the masters.
#include "frame/desk.h"
#include "host/apclass.h"
#include "masters/master_form.h"

namespace brimley::host {

// Their requests need no answer: nobody but the user acts on them.
void APclass::showform_Master(const std::string& class_name, const std::optional<std::string>& key) {
    const masters::Master* const master = masters::find_master(class_name);
    if (master == nullptr) return;
    const bool is_open = frm_master && frm_master->is_open() && &frm_master->master() == master &&
                         frm_master->mode() == frame::Mode::read;
    if (!is_open)
        frm_master = std::make_shared<masters::MasterForm>(
            *master, static_cast<const frame::HostContext&>(*this), kernel_of_database(), desk_);
    frm_master->show();
    if (key && frm_master->is_whole()) frm_master->show_key(*key);
}

}  // namespace brimley::host
