// What an engine does for the store: the only place where engines differ.
//
// A Connection owns one Engine and speaks to it in statements of the engine's own SQL, which the dialect's
// translator has written with the engine's Flavour. Values travel as typed parameters and typed cells only.
//
// Every call is complete in itself: query() hands each row to a function and has released the statement when
// it returns, so that no cursor ever pins an old state of the data. A call made while the function runs sees
// the same state.
//
// Failures are store::Error. What the store can foresee is an answer instead: begin_write() and lock_row()
// return false when another workspace is in the way, and nothing has changed then.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/connection_watch.h"
#include "kernel/store/dialect/statement_text.h"
#include "kernel/store/error.h"
#include "kernel/store/row.h"
#include "kernel/store/value.h"

namespace brimley::store {

// The hidden key of a row: given when the row is added, growing, never shown, unchanged while the row exists.
using RowKey = std::int64_t;

// A parameter's value; texts are only looked at during the call. Null fits every parameter.
using Parameter = std::variant<std::monostate, std::string_view, double, std::int64_t, bool, DateTime>;

// A statement that the engine has prepared. Usable with the engine that made it, while that lives.
class EngineStatement {
  public:
    virtual ~EngineStatement() = default;

    // True while its query runs: a statement cannot run a second time within that.
    bool is_running = false;
};

// One row of a running query. Valid only inside the function that it is handed to.
class EngineRow {
  public:
    virtual ~EngineRow() = default;
    // Only when the statement is keyed.
    [[nodiscard]] virtual RowKey key() const = 0;
    // Replaces what the row holds by the typed columns.
    virtual void read(Row& into) const = 0;
    // Whether its dates are what read() makes of them, to the second: others were not written here.
    [[nodiscard]] virtual bool has_whole_seconds() const = 0;
};

// Returns whether to go on with the next row.
using RowSink = std::function<bool(const EngineRow&)>;

struct WriteResult {
    std::int64_t rows = 0;  // changed, added or deleted
    RowKey key = 0;         // of the row added, after an INSERT
};

class Engine {
  public:
    virtual ~Engine() = default;

    [[nodiscard]] virtual const dialect::Flavour& flavour() const = 0;
    [[nodiscard]] virtual std::unique_ptr<EngineStatement> prepare(const StatementText& text) = 0;
    virtual void query(EngineStatement& statement, std::span<const Parameter> parameters,
                       const RowSink& sink) = 0;
    // INSERT, UPDATE, DELETE. Outside begin_write() it is a transaction of its own. Inside one, an engine
    // that has to be waited for may report the failure of a write that nothing but the machine can refuse at
    // a later call; commit() at the latest.
    virtual WriteResult write(EngineStatement& statement, std::span<const Parameter> parameters) = 0;

    // Begins a transaction that may write, at once or not at all. A lock of somebody else may still be in the
    // way of what it writes.
    [[nodiscard]] virtual bool begin_write() = 0;
    // The same, and no other workspace writes anything until its end.
    [[nodiscard]] virtual bool begin_write_alone() = 0;
    // Begins a transaction that only reads, and sees from now on what stands at this moment.
    virtual void begin_read() = 0;
    virtual void commit() = 0;
    // commit() after these entries were appended to the trail, each by the parameters of
    // Translator::next_entry(): for an engine that computes their hashes. First it waits until nobody else
    // appends to the trail, and keeps others from it until the end of the transaction; the last lock of a
    // transaction. Throws ErrorKind::locked when it takes too long.
    virtual void commit_with_entries(EngineStatement& /*next_entry*/,
                                     std::span<const std::vector<Parameter>> /*entries*/) {
        throw Error(ErrorKind::state, "this engine computes no hashes");
    }
    // Never fails: an engine that cannot say so any more has lost the transaction already.
    virtual void rollback() noexcept = 0;
    // Whether a transaction begun here is still open. An engine may have ended it by itself when the disk
    // failed.
    [[nodiscard]] virtual bool in_transaction() const = 0;

    // Within a transaction: takes the row that the statement (SelectTranslation::held_row) finds until the
    // end of the transaction, and hands it over as it stands now. At once or not at all: false when another
    // workspace holds it, and when it is gone.
    [[nodiscard]] virtual bool lock_row(EngineStatement& statement, std::span<const Parameter> parameters,
                                        const RowSink& sink) = 0;
    // Prefetches the answer to query() or lock_row() with this keyed statement and these parameters, which
    // will follow within the transaction. An engine that has to be waited for asks at once, together with
    // what else is on its way, and has the answer ready for that call. The rows for lock_row() that are
    // prefetched one after the other are held from then on all together, or none of them. What this workspace
    // writes into a row until then is seen all the same; for query() it must not write what makes another row
    // the answer.
    virtual void prefetch(EngineStatement& /*statement*/, std::span<const Parameter> /*parameters*/) {}
    // Whether prefetch() does anything now.
    [[nodiscard]] virtual bool can_prefetch() const { return false; }
    // Whether what is read within the open transaction stays true until this workspace writes: it keeps every
    // other workspace from writing, or does not see what they write.
    [[nodiscard]] virtual bool reads_stay_true() const = 0;

    // Nothing is to be done for a while: leaves the company as one that nobody works with. Outside of
    // transactions; what cannot be done now is left for the next time.
    virtual void tidy() noexcept {}
    // Why nothing can be written into this company, as a sentence without its full stop; empty when it can.
    // Who writes all the same gets an Error that says so.
    [[nodiscard]] virtual std::string reading_only_because() const { return {}; }
    // Empty for a company in a file.
    [[nodiscard]] virtual std::optional<ServerRole> role() { return std::nullopt; }
    // What that role of the company's server may do with each table, by whatever way it has come to that; in
    // the order of the catalog. Throws ErrorKind::name when there is no such role, state for a file.
    [[nodiscard]] virtual std::vector<TableRights> rights_of_role(const std::string& /*role*/) {
        throw Error(ErrorKind::state, "a company in a file has no roles");
    }
    // Gives the role these rights in the company, and takes from it all others that it was given there
    // itself. The rights of other roles that it belongs to stay. Within begin_write().
    virtual void give_rights(const std::string& /*role*/, std::span<const TableRights> /*rights*/) {
        throw Error(ErrorKind::state, "a company in a file has no roles");
    }
    // What is wrong with the storage itself, whatever the rows say: one sentence a fault. Reads the whole
    // company. An engine that keeps its own watch over its disks has nothing to say.
    [[nodiscard]] virtual std::vector<std::string> faults_of_storage() { return {}; }
    // Within begin_write_alone(): makes the tables that came after the company's layout, as the catalog has
    // them, and says so in it. At the commit it is a company of the catalog's layout, and whoever works with
    // it by the older one can write no more. Throws ErrorKind::locked when that cannot be kept from them.
    virtual void upgrade(const Catalog& catalog) = 0;
    // Copies the company as it stands at one moment to a new file, while others go on writing. False, and
    // nothing is made, when the company is not in a file.
    [[nodiscard]] virtual bool copy_file(const std::string& /*to*/) { return false; }

    // --- a connection that can be lost: a company on a server ---
    // Null: nobody. It must outlive the engine, or the next call of this.
    virtual void watch(ConnectionWatch* /*watch*/) {}
    // Whether the connection has broken while nothing was asked of it, as far as this side can see.
    [[nodiscard]] virtual bool is_broken() { return false; }
    // Whether a lost connection can be made again.
    [[nodiscard]] virtual bool can_reconnect() const { return false; }
    // After it was lost: connects again to the same company, with nothing open. Statements stay usable. False
    // when it cannot be reached now; throws not_a_company when another one stands in its place.
    [[nodiscard]] virtual bool reconnect() { return false; }
    // After reconnect(): whether the server still works for the connection that was lost, so that a commit in
    // doubt may still be carried out.
    [[nodiscard]] virtual bool lost_one_is_at_work() { return false; }
};

// A company that has been opened, with the catalog as companies of its layout have it.
struct OpenedEngine {
    std::unique_ptr<Engine> engine;
    const Catalog* catalog;
};

}  // namespace brimley::store
