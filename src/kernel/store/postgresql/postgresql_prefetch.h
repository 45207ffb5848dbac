// Answers that were prefetched, until the call that wants them comes: many questions share one round trip.
//
// An answer can be used once, and only while its row is not written.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kernel/store/engine.h"
#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

class PostgresqlPrefetch {
  public:
    struct Asked {
        bool locks_row = false;
        std::shared_ptr<const std::string> statement;  // its name
        std::vector<Value> parameters;
        LaterAnswer answer;
        std::size_t written_before = 0;
    };

    // The statement is keyed, and has been sent with these parameters.
    void add(const PostgresqlStatement& statement, std::span<const Parameter> parameters, LaterAnswer answer);
    // Whether each row to be locked has been. Everything sent has been answered.
    [[nodiscard]] bool all_locked() const;
    void forget_locks();
    // This workspace writes the row, or has locked it as it stands now.
    void note_written(RowKey key) {
        if (!asked_.empty()) written_.push_back(key);
    }
    void clear();

    // What was prefetched with the statement and these parameters; it is forgotten here.
    [[nodiscard]] std::optional<Asked> take(const PostgresqlStatement& statement,
                                            std::span<const Parameter> parameters);
    // Whether none of the rows answered has been written since. Directly after take().
    [[nodiscard]] bool is_still_true(const Asked& asked) const;

  private:
    std::vector<Asked> asked_;
    std::vector<RowKey> written_;  // since nothing was prefetched
};

}  // namespace brimley::store
