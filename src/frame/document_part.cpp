#include "frame/document_part.h"

#include "frame/working_period.h"

namespace brimley::frame {

bool DocumentPart::currency_is_in_use() const {
    const std::string& currency = form_.cmbcurrency.text();
    if (currency.empty()) return refuse("please specify currency");
    if (!foreign()) return true;
    return kernel().exists("Working_currency_table", {{"Currency", currency}}) ||
           refuse(currency + " is not a working currency.");
}

bool DocumentPart::period_is_open() const {
    if (form_.cmbperiod.empty()) return refuse("please specify period");
    if (form_.cmbfyear.empty()) return refuse("please specify fiscal year");
    return frame::period_is_open(kernel(), form_.cmbfyear.text(),
                                 store::Value(form_.cmbperiod.text()).number());
}

void DocumentPart::stamp_created(store::Recordset& row) const {
    const store::DateTime now = desk().now();
    row.set("date_created", now.date_only());
    row.set("time_created", now.time_text());
    row.set("user_created", context().BRIMLEY_USER);
}

}  // namespace brimley::frame
