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

}  // namespace brimley::frame
