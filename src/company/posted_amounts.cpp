#include "company/posted_amounts.h"

#include <algorithm>

namespace brimley::company {

namespace {

// By account and side; whether the amount is right is another check's question.
bool takes_back(const GlLine& line, const GlLine& posted) {
    return line.accno == posted.accno && line.amount * posted.amount <= 0 &&
           line.base_amount * posted.base_amount <= 0;
}

// Those before the reversal, which follow in the order of what they take back.
std::span<const GlLine> without_reversal(std::span<const GlLine> lines) {
    const auto posted = lines.first(lines.size() / 2);
    return std::ranges::equal(lines.subspan(posted.size()), posted, takes_back) ? posted : lines;
}

}  // namespace

PostedAmounts::PostedAmounts(const Books& books, Reversed reversed) {
    books.each_gl_document([&](std::span<const GlLine> lines) {
        const std::string& fkey = lines.front().fkey;
        if (reversed == Reversed::left_out) lines = without_reversal(lines);
        for (const GlLine& line : lines) {
            PostedAmount& sum = sums_[fkey][line.accno];
            sum.amount += line.amount;
            sum.base_amount += line.base_amount;
        }
    });
}

PostedAmount PostedAmounts::on(const std::string& gl_fkey, const std::string& accno) const {
    const auto document = sums_.find(gl_fkey);
    if (document == sums_.end()) return {};
    const auto sum = document->second.find(accno);
    return sum == document->second.end() ? PostedAmount{} : sum->second;
}

}  // namespace brimley::company
