#include "company/posted_amounts.h"

namespace brimley::company {

PostedAmounts::PostedAmounts(const Books& books) {
    books.each_gl_line([&](const GlLine& line) {
        PostedAmount& sum = sums_[line.fkey][line.accno];
        sum.amount += line.amount;
        sum.base_amount += line.base_amount;
    });
}

PostedAmount PostedAmounts::on(const std::string& gl_fkey, const std::string& accno) const {
    const auto document = sums_.find(gl_fkey);
    if (document == sums_.end()) return {};
    const auto sum = document->second.find(accno);
    return sum == document->second.end() ? PostedAmount{} : sum->second;
}

}  // namespace brimley::company
