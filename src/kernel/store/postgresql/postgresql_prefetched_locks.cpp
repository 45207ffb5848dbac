#include "kernel/store/postgresql/postgresql_prefetched_locks.h"

namespace brimley::store {

void PostgresqlPrefetchedLocks::begin() {
    if (open_) return;
    savepoint_.set();
    open_ = true;
}

void PostgresqlPrefetchedLocks::end(PostgresqlPrefetch& prefetch) {
    if (!open_) return;
    open_ = false;
    if (session_.unanswered() > 0) (void)session_.finish();
    if (session_.has_failed_transaction() || session_.is_lost()) return;
    if (!prefetch.all_locked()) {
        prefetch.forget_locks();
        savepoint_.go_back();
    }
    savepoint_.release();
}

}  // namespace brimley::store
