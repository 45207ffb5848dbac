// The store as forms and kernel see it: workspace, database, recordset.
//
//   Workspace  one connection to a company database, and its transaction: "one user".
//   Database   queries and statements on that connection.
//   Recordset  the rows of one query, read or changed one at a time.
//
// Operations have the names that they have had since the forms were first written (OpenRecordset, FindFirst,
// AddNew ...).
//
// Query text is the forms' own dialect: names with or without brackets, TRUE/FALSE, Datevalue('Jan 15,
// 2026'), DELETE * FROM, joins by comma or INNER JOIN, UCASE, MAX, VAL. A text outside the dialect raises
// ErrorKind::syntax with the place; it is never passed on to an engine. Values go into query texts through
// quoted() only. Equal shapes share one prepared statement.
//
// Transactions: BeginTrans opens nothing until the first write or Edit. What somebody else holds (in a file
// everything, on a server the rows that are being written) fails at once with ErrorKind::locked and may be
// tried again. Without BeginTrans each Edit with its Update, each AddNew with its Update and each Execute is
// a transaction of its own. Rollback is harmless when nothing is open.
//
// begin_snapshot is for long reading: until CommitTrans or Rollback everything is read as it was at that
// moment, while others go on writing, and nobody waits for anybody. Writing within it is ErrorKind::state.
//
// Ownership: a Database keeps its Workspace's connection alive, a Recordset that of its Database. None of
// them may be used from two threads at a time.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/connection_watch.h"
#include "kernel/store/error.h"
#include "kernel/store/trail.h"
#include "kernel/store/value.h"

namespace brimley::store {

class Connection;  // one engine connection with its statement cache; private to the store
class Engine;      // what PostgreSQL and SQLite each implement; private to the store

enum class RecordsetKind {
    dynaset = 2,   // changeable: a keyset
    snapshot = 4,  // for reading
};

// Where a row of a recordset was, to come back to it. Belongs to the recordset that gave it.
struct Bookmark {
    std::int64_t position = -1;
};

// The rows of one query.
//
// A snapshot holds the rows as they were when it was opened. A dynaset is a keyset: which rows, and in which
// order, is fixed when it is opened, plus the rows added through it, at the end, even when they do not meet
// its WHERE; each row's fields are read afresh when it is moved to. "SELECT * FROM x" without a WHERE fetches
// no keys until it is walked or, with an ORDER BY, one of its rows is changed; FindFirst on it is one indexed
// look-up. "WHERE 1 = 2" is the empty recordset on which to add rows.
//
// After opening, the first row is current, if there is one. Reading a field without a current row is
// ErrorKind::state.
//
// Changing: AddNew or Edit, set() fields, Update (or CancelUpdate). A dynaset of named columns can be set in
// the other fields of its table, too, which it does not read: they are always written. The row being added or
// edited can be read by field name before Update, and survives whatever other recordsets do. Update writes
// only the fields that changed. After AddNew and Update the current row is what it was before; move to the
// new one by Bookmark(LastModified()).
class Recordset {
  public:
    Recordset();  // holds nothing, as after Close(): everything but assignment, Close and is_open() is
                  // ErrorKind::state
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;
    ~Recordset();

    [[nodiscard]] bool is_open() const { return state_ != nullptr; }
    void Close();

    // EOF of the recordset world; the bare name is a macro of <cstdio>.
    [[nodiscard]] bool at_eof() const;
    // All rows of the recordset, those added through it included.
    [[nodiscard]] std::int64_t RecordCount() const;
    void MoveFirst();  // on an empty recordset: nothing happens
    void MoveLast();
    void MoveNext();  // past the last row: at_eof()

    // Goes to the first row, in the recordset's order, that meets the criteria ("[accno] = '1300' and
    // [company] = 1"). No match: NoMatch() is true and the current row stays. FindNext goes on after the
    // current row with the criteria it is given.
    void FindFirst(std::string_view criteria);
    // FindFirst(all_equal(fields)) without the detour through a text.
    void FindFirst(FieldValues fields);
    void FindNext(std::string_view criteria);
    [[nodiscard]] bool NoMatch() const;

    // The field of the current row or of the row being added or edited. A name that several columns have is
    // the first of them. No such field: ErrorKind::name.
    [[nodiscard]] Value field(std::string_view name) const;
    [[nodiscard]] bool has_field(std::string_view name) const;
    // Null when no column has that name.
    [[nodiscard]] Value field_or_null(std::string_view name) const;
    [[nodiscard]] std::string text(std::string_view name) const;
    [[nodiscard]] double number(std::string_view name) const { return field(name).number(); }
    [[nodiscard]] bool flag(std::string_view name) const { return field(name).flag(); }
    // The columns in order, as the query names them.
    [[nodiscard]] int column_count() const;
    [[nodiscard]] const std::string& column_name(int column) const;
    [[nodiscard]] FieldType column_type(int column) const;
    [[nodiscard]] Value column(int column) const;
    // As column(column).text(), in place of what `into` holds, whose memory is used again.
    void read_text(int column, std::string& into) const;
    // Many of them at once, as numbers: empty for null, throws as Value::number().
    void numbers(std::span<const int> columns, std::span<std::optional<double>> into) const;
    // Where a field stands among the columns, for callers that read or set many fields of row after row. No
    // such field: ErrorKind::name.
    [[nodiscard]] int column_of(std::string_view name) const;
    // Only for setting: also a field of the table that is none of the columns.
    [[nodiscard]] int column_to_set(std::string_view name) const;

    void AddNew();
    // Locks the row, at once or not at all, whatever LockEdits says. Outside a transaction it is held until
    // Update, CancelUpdate or the next move, inside one until it ends. Throws ErrorKind::locked when another
    // workspace holds it, ErrorKind::state when the row is gone. The row's fields are read again once it is
    // held.
    void Edit();
    // As Edit, but a row that is held by another workspace is an answer: false, and nothing has changed.
    [[nodiscard]] bool try_edit();
    // FindFirst and Edit in one look at the table. No match: NoMatch() is true, and nothing is edited.
    void edit_first(FieldValues fields);
    // As edit_first; false when there is no match, and when another workspace holds the row, which is the
    // current one then.
    [[nodiscard]] bool try_edit_first(FieldValues fields);
    // Prefetches the row that FindFirst, or edit_first, with these fields will ask for within the
    // transaction, so that many rows cost one round trip to a server. Rows to be edited that are prefetched
    // one after the other are held from then on all together, or none of them when one is refused. Changes
    // nothing else. Until then nothing may be written that would make another row the first match of that
    // FindFirst.
    void prefetch_first(FieldValues fields);
    void prefetch_edit_first(FieldValues fields);
    // Stores into the row being added or edited. A number into a text field becomes plain digits ("3", not
    // "3.0"); a text into a number field must be a number, an empty text is null there; an 8-digit text into
    // a date field is that date. Anything else is ErrorKind::conversion, and the field keeps its value.
    void set(std::string_view name, const Value& value);
    template <std::convertible_to<std::string_view> Text>
    void set(std::string_view name, const Text& text) {
        set_text(name, text);
    }
    void set(std::string_view name, std::same_as<double> auto number) { set_number(name, number); }
    void set_column(int column, const Value& value);
    void set_numbers(std::span<const int> columns, std::span<const double> numbers);
    void Update();
    void CancelUpdate();
    void LockEdits(bool pessimistic);

    [[nodiscard]] store::Bookmark Bookmark() const;
    void Bookmark(store::Bookmark where);
    // The row last added or changed through this recordset.
    [[nodiscard]] store::Bookmark LastModified() const;

  private:
    friend class Database;
    class State;
    explicit Recordset(std::unique_ptr<State> state);
    void set_text(std::string_view name, std::string_view text);
    void set_number(std::string_view name, double number);
    [[nodiscard]] State& state() const;
    std::unique_ptr<State> state_;
};

using Pause = std::function<void()>;

class Database {
  public:
    explicit Database(std::shared_ptr<Connection> connection);
    ~Database();

    // `between` is called every so often while a long snapshot is read, so that a host stays alive. It may
    // read and write through this database.
    [[nodiscard]] Recordset OpenRecordset(std::string_view query, RecordsetKind kind,
                                          const Pause& between = {});
    // UPDATE, DELETE. Returns the number of rows changed.
    std::int64_t Execute(std::string_view statement);
    [[nodiscard]] const Catalog& catalog() const;
    // The path or URI it was opened with.
    [[nodiscard]] const std::string& name() const;

    // Why nothing can be written into the company, as a sentence without its full stop: it is damaged, or its
    // log is missing. Empty when it can. Whatever writes all the same throws ErrorKind::io with this text.
    [[nodiscard]] std::string reading_only_because() const;
    // Whom the company's server takes this connection for; empty for a company in a file. Asks the server.
    [[nodiscard]] std::optional<ServerRole> role() const;
    // What that role of the company's server may do with each table, by whatever way it has come to that; in
    // the order of the catalog. Throws ErrorKind::name when there is no such role, state for a company in a
    // file.
    [[nodiscard]] std::vector<TableRights> rights_of_role(const std::string& role) const;
    // Within a transaction: gives the role these rights in the company, and takes from it all others that it
    // was given there itself. What it may do as a member of another role stays. Throws as rights_of_role(),
    // and io when whoever is connected may not give rights.
    void give_rights(const std::string& role, std::span<const TableRights> rights);
    // Whether another workspace may commit something between two reads of the open transaction, so that the
    // second one sees it: on a server, not in a file.
    [[nodiscard]] bool others_write_meanwhile() const;
    // What is wrong with the company's file, whatever its rows say: one sentence a fault. Reads all of it. A
    // server keeps watch over its own disks, and there is nothing to say about a company on it.
    [[nodiscard]] std::vector<std::string> faults_of_storage() const;
    // --- the trail (trail.h) ---
    // The number and hash of its last entry; empty for a company that has no trail.
    [[nodiscard]] std::optional<TrailEntry> end_of_trail() const;
    // Within the transaction that fills a company with what another one holds, trail and all: it appends no
    // entry of its own.
    void bring_trail_along();
    // What the company has that its trail does not say, or the other way round, and entries that were
    // changed: one sentence a fault, the oldest first. Reads all watched rows. sealed: an entry that was
    // noted elsewhere; number 0 for none. A company without a trail is at fault only
    // when one was sealed.
    [[nodiscard]] std::vector<std::string> faults_of_trail(const TrailEntry& sealed = {}) const;

    // Copies the company file as it stands at one moment to a new file, while others go on writing. False,
    // and nothing is made, for a company on a server. Throws ErrorKind::state when something is at that path,
    // io; a failure leaves nothing behind.
    [[nodiscard]] bool copy_file(const std::string& to) const;

  private:
    std::shared_ptr<Connection> connection_;
};

class Workspace {
  public:
    explicit Workspace(std::shared_ptr<Connection> connection);
    ~Workspace();  // rolls back what is open

    void BeginTrans();
    // As BeginTrans, and nobody else writes anything until its end. Throws ErrorKind::locked when somebody is
    // writing already; then nothing is open.
    void begin_alone();
    // Takes no lock. ErrorKind::state within a transaction or while a row is being edited.
    void begin_snapshot();
    void CommitTrans();
    void Rollback();
    // The user has nothing to do for a while: brings what was saved into the company file itself, so that a
    // copy of the file alone is whole. Nothing happens within a transaction or while another program writes.
    void tidy();
    // False: whatever would write is refused from now on, with ErrorKind::state, as if the company could only
    // be read.
    void let_write(bool may_write);
    // Signs the entries of the company's trail from now on.
    void sign(Signature signature);
    // A snapshot counts.
    [[nodiscard]] bool in_transaction() const;
    [[nodiscard]] ConnectionState connection_state() const;

    // --- a company on a server, whose connection can be lost ---
    // Told from now on what happens to the connection; null: nobody is.
    void watch(std::shared_ptr<ConnectionWatch> watch);
    [[nodiscard]] bool can_reconnect() const;
    // To be called before an act of the user begins, never within one: a connection that was lost is made
    // again, to the same company, and a change that was in doubt is looked up, never repeated. Recordsets
    // that are open go on; a row being edited was lost. Nothing happens while the connection is good. True
    // when it is good afterwards.
    bool reconnect();
    // How many calls have failed because the connection was lost. Whoever reads with failures ignored finds
    // out by it that something is missing.
    [[nodiscard]] std::int64_t lost_calls() const;
    // Those that nobody else needs to know of are not counted any more.
    void forgive_lost_calls(std::int64_t calls);
    // How many changes have been in doubt so far: each number stands for one.
    [[nodiscard]] int doubts() const;
    // What became of that change, as of the last reconnect(). Only the last one is remembered; of others
    // nothing is known.
    [[nodiscard]] Doubt doubt(int number) const;

  private:
    std::shared_ptr<Connection> connection_;
};

// A workspace with the database open on it: what a host puts into dbe and abcdb.
struct OpenCompany {
    std::shared_ptr<Workspace> workspace;
    std::shared_ptr<Database> database;
};

// Wraps the engine of a connection; tests put failures in that way.
using EngineDecorator = std::function<std::unique_ptr<Engine>(std::unique_ptr<Engine>)>;

// Whether a company is named by the URI of a server ("postgresql://..." or "postgres://..."), and not by the
// path of a file. On a server every company is a database of its own.
[[nodiscard]] bool is_on_server(std::string_view company);
// The database that such a URI names, as part of a file name.
[[nodiscard]] std::string database_name(const std::string& uri);
// The role that such a URI connects as.
[[nodiscard]] std::string role_name(const std::string& uri);
// Such a URI with this password instead of the one in it.
[[nodiscard]] std::string with_password(const std::string& uri, std::string_view password);
// The company as it may be shown and remembered: its URI without the passwords in it, a path as it is.
[[nodiscard]] std::string without_password(std::string_view company);

// Opens an existing company by its path or URI. The catalog must outlive it. Throws: not_a_company (absent,
// foreign, of another layout), locked, no_password, io (a server that cannot be reached, or does not keep
// what is saved).
[[nodiscard]] OpenCompany open_company(const std::string& company, const Catalog& catalog,
                                       const EngineDecorator& decorate = {});

// Puts the first rows into a company that is being made, inside the transaction of create_company.
using CompanyFiller = std::function<void(Database&)>;

// Makes a new company with every table and index of the catalog, readable by its owner alone, and opens it.
// On a server it makes the database where there is none; nobody sees the company before it is filled. Refuses
// a company that exists (state). A failure leaves nothing behind.
[[nodiscard]] OpenCompany create_company(const std::string& company, const Catalog& catalog,
                                         const CompanyFiller& fill = {});

// Brings a company of an older layout to that of the catalog, in one transaction: makes the tables that came
// since, and where it had no trail begins one with all that stands in it. False, and nothing has changed,
// when it has that layout already. first: called before anything is changed, while nobody writes any more;
// what it throws leaves the company as it is. Throws ErrorKind::locked when others work in it.
[[nodiscard]] bool upgrade_company(const std::string& company, const Catalog& catalog,
                                   const Signature& signature, const std::function<void()>& first = {});

// A value as it stands in a query text, between single quotes. A value that holds a single quote gives a text
// that the dialect never accepts, so that the query fails as a broken text does and can never mean anything
// else. Write it store::quoted: for a std::string the bare name finds the standard library's own.
[[nodiscard]] std::string quoted(std::string_view value);
// Criteria that each field holds its value: "[accno] = '1300' and [company] = '1'", the values as by
// quoted().
[[nodiscard]] std::string all_equal(FieldValues fields);
// Datevalue('Jan 15, 2026') for a query text.
[[nodiscard]] std::string date_value(DateTime date);

}  // namespace brimley::store
