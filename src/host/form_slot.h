// What the host does with the forms of one kind, through its reference to the newest of them. Only the
// sources that hold the host's methods of a form include this and the form's header.
#pragma once

#include "host/apclass.h"

namespace brimley::host {

template <class FormClass>
class FormSlot {
  public:
    FormSlot(APclass& host, std::shared_ptr<FormClass>& newest) : host_(host), newest_(newest) {}

    // A new form with the host's context in it takes the place of the newest. The one before stays on the
    // screen, but nobody listens to it any more. `prepare` gets it before it is shown. One that could not be
    // read whole is not shown, and everything stays as it was.
    template <class Prepare>
    void show(APclass::Forward forward, const Prepare& prepare) {
        const std::shared_ptr<FormClass> before = newest_;
        const auto listener = before ? before->NotifyClients : nullptr;
        const std::shared_ptr<FormClass> form = create(forward);  // an event may show yet another one
        form->ensure_loaded();
        if (form->is_whole()) prepare(*form);
        form->show();
        if (form->is_whole()) return;
        newest_ = before;
        if (before) before->NotifyClients = listener;
    }
    void show(APclass::Forward forward) {
        show(forward, [](FormClass&) {});
    }
    // With this document, when one is named.
    void show_document(APclass::Forward forward, const std::optional<std::string>& docnox) {
        show(forward, [&](FormClass& form) {
            if (!docnox) return;
            form.txtdocno.set(*docnox);
            form.Recordx();
        });
    }

    void go_to_docno(const std::string& docnox) {
        if (!newest_) return;
        newest_->txtdocno.set(docnox);
        newest_->Recordx();
    }

    void exit() {
        if (newest_) newest_->unload_form();
    }

  private:
    std::shared_ptr<FormClass> create(APclass::Forward forward) {
        if (newest_) newest_->NotifyClients = nullptr;
        newest_ = std::make_shared<FormClass>(static_cast<const frame::HostContext&>(host_),
                                              host_.kernel_of_database(), host_.desk_);
        newest_->NotifyClients = [&host = host_, listening = std::weak_ptr(host_.listening_), forward](
                                     const std::string& formx, const std::string& docnox,
                                     const std::string& arg2) {
            if (!listening.expired()) (host.*forward)(formx, docnox, arg2);
        };
        return newest_;
    }

    APclass& host_;
    std::shared_ptr<FormClass>& newest_;
};

}  // namespace brimley::host
