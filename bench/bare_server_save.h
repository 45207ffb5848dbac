// The same row writes with bare prepared statements of PostgreSQL: each waited for, or all of one save in a
// pipeline.
#pragma once

#include <memory>
#include <string>

#include "bare_statements.h"

namespace brimley::bench {

class BareServerSave {
  public:
    explicit BareServerSave(const std::string& uri);
    ~BareServerSave();
    void save(BareSums sums);
    // Only without reading anything.
    void save_in_a_pipeline();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace brimley::bench
