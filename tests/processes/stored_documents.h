// What savers have reported as stored, held against the company.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::testing {

class StoredDocuments {
  public:
    // A line of a saver's. False for a line that tells of nothing stored.
    bool take(const std::string& line);
    [[nodiscard]] int told() const { return told_; }

    // What does not hold: the findings of the check of the books, what was told and is not stored, and
    // numbers that came twice or were left out.
    [[nodiscard]] std::vector<std::string> findings(const store::OpenCompany& company) const;

  private:
    std::map<std::string, std::vector<std::string>> documents_;  // by what was told of them
    int told_ = 0;
};

}  // namespace brimley::testing
