// What acts are known to leave behind that the check of the books reports rightly, worked out from what stood
// on the screen before the act: with exactly this taken back, the books must agree.
//
// - An edit takes off what the screen showed of the former lines, where lines below nothing stand as lines
//   above it; and what is owed counts cents of rows that are too small to be stored.
#pragma once

#include <map>
#include <string>

#include "kernel/store/database.h"

namespace brimley::testing {

class NamedDeviations {
  public:
    // More was added to what a vendor is owed than its stored documents come to.
    void owed_beyond_documents(const std::string& vendor_no, double amount) { owing_[vendor_no] += amount; }

    // Takes all of it back, in the caller's transaction.
    void take_back(store::Database& database) const;
    // How many vendors there are for which something is to be explained.
    [[nodiscard]] int vendors() const;

  private:
    std::map<std::string, double> owing_;
};

}  // namespace brimley::testing
