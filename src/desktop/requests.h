// What the desktop does when a form asks for something outside itself (APclass::NotifyClients).
//
// Forms of the module are opened and steered by APclass; papers and lists to look at get windows of the
// desktop's own; what belongs to another module is shown in the status line.
#pragma once

#include <QString>
#include <functional>

#include "host/apclass.h"

class QWidget;

namespace brimley::desktop {

class ListWindow;

class Requests {
  public:
    explicit Requests(host::APclass& ap) : ap_(ap) {}

    // Carries the request out. The status line says when it is unknown.
    void answer(const std::string& formx, const std::string& docnox, const std::string& arg2);

    // A window of the desktop's own goes to the screen; whoever shows it owns it.
    std::function<void(QWidget*)> show_window;
    // A line of text that needs no answer.
    std::function<void(const QString&)> tell;
    // The form whose Exit led here has gone; the next window comes up.
    std::function<void()> next_window;
    // A payment was begun for the user: the document and the vendor that it pays.
    std::function<void(const std::string& docno, const std::string& vendor)> payment_begun;

  private:
    [[nodiscard]] bool open_form(const std::string& formx, const std::string& docnox);
    [[nodiscard]] bool open_window(const std::string& formx, const std::string& docnox,
                                   const std::string& arg2);
    // The list opens its rows in this master.
    ListWindow* opening_master(ListWindow* list, const std::string& master);
    void pay_invoice(const std::string& docno_and_vendor);
    void show_invoice(const std::string& document, const std::function<void()>& go_to);
    void show_payment(const std::string& docno);
    void show_prepayment(const std::string& docno);
    void show_card_payment(const std::string& docno);

    host::APclass& ap_;
};

}  // namespace brimley::desktop
