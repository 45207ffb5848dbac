// What acts are known to leave behind that the check of the books tells rightly, worked out from what stood
// on the screen before the act: such a finding ends no session.
//
// - An edit takes off what the screen showed of the former lines, where lines below nothing stand as lines
//   above it; and what is owed counts cents of rows that are too small to be stored.
// - A refused amount empties its cell and leaves total, base amount and balance as they were.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace brimley::testing {

// A payment as it stood on the screen when it was saved.
struct ShownPayment {
    struct Row {
        double open = 0, pay = 0, discount = 0, writeoff = 0, balance = 0;
        double base = 0;
        [[nodiscard]] bool stored() const { return pay != 0 || discount != 0 || writeoff != 0; }
    };
    std::string fkey;
    std::vector<Row> rows;
    bool has_total = false;
    double total = 0;
    double total_base = 0;
};

class NamedDeviations {
  public:
    // More was added to what a vendor is owed than its stored documents come to.
    void owed_beyond_documents(const std::string& vendor_no, double amount) { owing_[vendor_no] += amount; }
    void payment_saved(const ShownPayment& payment);

    [[nodiscard]] bool explains(const std::string& finding) const;
    // How many vendors and payments there are for which something is to be explained.
    [[nodiscard]] int vendors() const;
    [[nodiscard]] int payments() const { return static_cast<int>(payments_.size()); }

  private:
    [[nodiscard]] bool explains_owing(const std::string& finding) const;

    std::map<std::string, double> owing_;
    std::set<std::string> findings_;  // word for word
    std::set<std::string> starts_;    // up to the value that the check expects
    std::set<std::string> payments_;
};

}  // namespace brimley::testing
