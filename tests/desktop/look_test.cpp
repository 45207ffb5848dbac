// The look of a form as a text file, and a form without one.
#include "desktop/look.h"

#include <QCheckBox>

#include "desktop/command_icons.h"
#include "desktop/live_desk.h"
#include "desktop/look_layout.h"
#include "invoices/recurring_run/apreport_recur_inquiry.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/misc/apform_misc_payment.h"
#include "payments/prepayment/apform_prepayment.h"
#include "payments/void_check/apform_void_check.h"
#include "revaluation/apform_revalue.h"

namespace brimley::testing {

using desktop::Look;
using desktop::parse_look;
using desktop::shown;

class Looks : public LiveDesk {
  protected:
    // The names in the look that are no control of the form.
    static std::string strangers(frame::Form& form) {
        const controls::ControlSet& controls = form.controls();
        const auto look = desktop::look_of(form.identity().class_name);
        if (!look) return "there is no look";
        std::string names;
        const auto check = [&](const QString& name) {
            if (!name.isEmpty() && controls.find(name.toStdString()) == nullptr)
                names += name.toStdString() + " ";
        };
        for (const auto& part : look->parts) {
            check(part.name);
            for (const QString& grid : part.grids)
                check(grid);
            for (const auto& row : part.fields) {
                if (row.caption.startsWith('@')) check(row.caption.mid(1));
                for (const auto& field : row.fields)
                    check(field.control);
            }
        }
        return names;
    }
    static std::string faults(const QString& text) {
        try {
            static_cast<void>(parse_look(text));
        } catch (const desktop::LookFault& fault) {
            return fault.what();
        }
        return "none";
    }
};

TEST_F(Looks, NameOnlyControlsThatTheirFormsHave) {
    ap.showform_APform_invoice();
    EXPECT_EQ(strangers(*ap.frm_invoice), "");
    ap.showform_APform_payment();
    EXPECT_EQ(strangers(*ap.frm_payment), "");
    ap.showform_APform_prepayment();
    EXPECT_EQ(strangers(*ap.frm_prepayment), "");
    ap.showform_APform_misc();
    EXPECT_EQ(strangers(*ap.frm_misc), "");
    ap.showform_APform_creditcard_payment();
    EXPECT_EQ(strangers(*ap.frm_creditcard), "");
    ap.showform_APform_void_check();
    EXPECT_EQ(strangers(*ap.frm_void_check), "");
    ap.showform_APform_revalue();
    EXPECT_EQ(strangers(*ap.frm_revalue), "");
    ap.showform_APreport_recur_inquiry();
    EXPECT_EQ(strangers(*ap.frm_recur_inquiry), "");
}

TEST_F(Looks, CommandOfAFormMayHaveAPictureOfItsOwn) {
    const auto picture = [](const char* form, int command) {
        return desktop::command_icon(form, command, "Due").pixmap(20).toImage();
    };
    EXPECT_NE(picture("APreport_recur_inquiry", 1001), picture("APreport_inquiry", 1001));
    EXPECT_NE(picture("APreport_recur_inquiry", 1001), picture("APreport_recur_inquiry", 1002));
    EXPECT_EQ(picture("APreport_recur_inquiry", 100), picture("APreport_inquiry", 100));
    EXPECT_NE(picture("APreport_inquiry", 100), picture("APreport_inquiry", 1001));
}

TEST_F(Looks, EveryControlOfAFormHasAWidget) {
    desktop::FormWindow& invoice = show_invoice();
    for (const controls::Control* control : invoice.form().controls().all()) {
        if (dynamic_cast<const controls::Frame*>(control) != nullptr) continue;
        EXPECT_NE(invoice.view(*control), nullptr) << control->name();
    }
}

TEST_F(Looks, FormWithoutAFileShowsItsControlsInTheirOrder) {
    ap.showform_APform_payment();
    const controls::ControlSet& controls = ap.frm_payment->controls();
    const Look look =
        desktop::generic_look(controls, "Payments", [](const auto&) { return frame::FieldHint{}; });
    for (const controls::Control* control : controls.all()) {
        const auto* const frame = dynamic_cast<const controls::Frame*>(control);
        if (frame != nullptr && frame->caption().empty()) continue;
        EXPECT_TRUE(look.names(shown(control->name()))) << control->name();
    }
}

TEST_F(Looks, RowsTellCaptionsWidthsAndSeveralFields) {
    const Look look =
        parse_look("column  # one\n  \"Period\" cmbperiod 5 + cmbfyear 8\n  txtsum 14 amount\n");
    ASSERT_EQ(look.parts.size(), 1U);
    ASSERT_EQ(look.parts[0].fields.size(), 2U);
    EXPECT_EQ(look.parts[0].fields[0].caption, "Period");
    ASSERT_EQ(look.parts[0].fields[0].fields.size(), 2U);
    EXPECT_EQ(look.parts[0].fields[0].fields[1].control, "cmbfyear");
    EXPECT_EQ(look.parts[0].fields[0].fields[1].width, 8);
    EXPECT_TRUE(look.parts[0].fields[1].fields[0].amount);
}

TEST_F(Looks, FieldsOfARowMayHaveCaptionsAndTheTitleAControl) {
    const Look look =
        parse_look("title \"Invoice\" txtdocno\ncolumn\n\"Net\" txtterm 4 + \"Early\" txtearly 4\n");
    EXPECT_EQ(look.title, "Invoice");
    EXPECT_EQ(look.title_control, "txtdocno");
    ASSERT_EQ(look.parts.at(0).fields.at(0).fields.size(), 2U);
    EXPECT_EQ(look.parts[0].fields[0].caption, "Net");
    EXPECT_EQ(look.parts[0].fields[0].fields[1].caption, "Early");
}

TEST_F(Looks, NoCaptionOfAFormIsCutOff) {
    for (const bool payment : {false, true}) {
        payment ? ap.showform_APform_payment() : ap.showform_APform_invoice();
        window().resize(1366, 700);
        QApplication::processEvents();
        for (const QLabel* const caption : window().findChildren<QLabel*>())
            if (caption->isVisible()) {
                EXPECT_GE(caption->width(), caption->sizeHint().width()) << caption->text().toStdString();
            }
        for (const QAbstractButton* const box : window().findChildren<QCheckBox*>()) {
            EXPECT_GE(box->width(), box->sizeHint().width()) << box->text().toStdString();
        }
    }
}

TEST_F(Looks, PeriodAndFiscalYearHaveTheirCaptions) {
    for (const bool payment : {false, true}) {
        payment ? ap.showform_APform_payment() : ap.showform_APform_invoice();
        std::map<const QWidget*, std::string> captions;
        for (const QLabel* const caption : window().findChildren<QLabel*>())
            if (caption->isVisible()) captions[caption->buddy()] = caption->text().toStdString();
        EXPECT_EQ(captions[&field("cmbperiod")], "Period");
        EXPECT_EQ(captions[&field("cmbfyear")], "Fiscal year");
    }
}

TEST_F(Looks, FaultIsToldWithItsLine) {
    EXPECT_EQ(faults("txtremark"), "line 1: a field stands in no column");
    EXPECT_EQ(faults("column\n\"Remark\""), "line 2: CONTROL is missing");
    EXPECT_EQ(faults("pane frame_tax bottom rows many"), "line 1: ROWS is no number");
    EXPECT_EQ(faults("grid dbgrid1 wide"), "line 1: too many words: wide");
}

}  // namespace brimley::testing
