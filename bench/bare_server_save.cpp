#include "bare_server_save.h"

#include <fmt/format.h>
#include <libpq-fe.h>

#include <bit>
#include <chrono>
#include <regex>
#include <stdexcept>
#include <vector>

#include "bare_statements.h"

namespace brimley::bench {

namespace {

std::string server_spelling(std::string sql) {
    sql = std::regex_replace(sql, std::regex("\\?([0-9])"), "$$$1");
    if (sql.starts_with("SELECT")) sql += " FOR UPDATE";
    return std::regex_replace(sql, std::regex("ifnull"), "coalesce");
}

struct ServerText {
    std::string operator()(std::string_view text) const { return std::string(text); }
    std::string operator()(double number) const { return fmt::format("{}", number); }
    std::string operator()(bool flag) const { return flag ? "t" : "f"; }
    std::string operator()(store::DateTime date) const { return date.iso(); }
};

// An int8 or a float8 as it comes over the wire, the highest byte first.
double wire_number(const PGresult* result, int column) {
    constexpr Oid kInt8 = 20;
    if (PQgetisnull(result, 0, column)) return 0;
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i)
        bits = bits << 8 | static_cast<unsigned char>(PQgetvalue(result, 0, column)[i]);
    if (PQftype(result, column) == kInt8) return static_cast<double>(static_cast<std::int64_t>(bits));
    return std::bit_cast<double>(bits);
}

}  // namespace

struct BareServerSave::Parts : BareRunner {
    PGconn* server = nullptr;
    bool pipelined = false;
    int unanswered = 0;
    // A run after this one begins higher: no key is written twice.
    std::int64_t next = std::chrono::system_clock::now().time_since_epoch() / std::chrono::milliseconds(1);

    void require(PGresult* result) const {
        const ExecStatusType status = PQresultStatus(result);
        const bool good = status == PGRES_COMMAND_OK || status == PGRES_PIPELINE_SYNC;
        const std::string reason = good ? "" : PQerrorMessage(server);
        PQclear(result);
        if (!good) throw std::runtime_error(reason);
    }
    void send(const char* name, const std::vector<std::string>& texts) {
        std::vector<const char*> values;
        for (const std::string& text : texts)
            values.push_back(text.c_str());
        const int count = static_cast<int>(values.size());
        if (!pipelined)
            return require(PQexecPrepared(server, name, count, values.data(), nullptr, nullptr, 1));
        if (PQsendQueryPrepared(server, name, count, values.data(), nullptr, nullptr, 1) != 1)
            throw std::runtime_error(PQerrorMessage(server));
        ++unanswered;
    }
    static std::vector<std::string> texts_of(std::span<const BareValue> values) {
        std::vector<std::string> texts;
        for (const BareValue& value : values)
            texts.push_back(std::visit(ServerText{}, value));
        return texts;
    }
    void run(Bare statement, std::span<const BareValue> values) override {
        send(("w" + std::to_string(statement)).c_str(), texts_of(values));
    }
    std::vector<double> read(Bare statement, std::span<const BareValue> values) override {
        const std::string text = texts_of(values).at(0);
        const char* const value = text.c_str();
        PGresult* const result =
            PQexecPrepared(server, ("w" + std::to_string(statement)).c_str(), 1, &value, nullptr, nullptr, 1);
        std::vector<double> row;
        for (int i = 0; PQntuples(result) == 1 && i < PQnfields(result); ++i)
            row.push_back(wire_number(result, i));
        PQclear(result);
        if (row.empty()) throw std::runtime_error(std::string("no row to read: ") + PQerrorMessage(server));
        return row;
    }
    void save(BareSums sums) {
        send("b", {});
        run_bare_save(*this, next++, sums);
        send("c", {});
    }
    void answer() {
        PQpipelineSync(server);
        for (; unanswered > 0; --unanswered) {
            require(PQgetResult(server));
            PQclear(PQgetResult(server));
        }
        require(PQgetResult(server));
    }
};

BareServerSave::BareServerSave(const std::string& uri) : parts_(std::make_unique<Parts>()) {
    Parts& p = *parts_;
    p.server = PQconnectdb(uri.c_str());
    p.require(PQexec(p.server, "SET search_path = brimley"));
    p.require(PQprepare(p.server, "b", "BEGIN", 0, nullptr));
    p.require(PQprepare(p.server, "c", "COMMIT", 0, nullptr));
    const auto texts = bare_statements();
    for (std::size_t i = 0; i < texts.size(); ++i)
        p.require(PQprepare(p.server, ("w" + std::to_string(i)).c_str(), server_spelling(texts[i]).c_str(), 0,
                            nullptr));
}

BareServerSave::~BareServerSave() { PQfinish(parts_->server); }

void BareServerSave::save(BareSums sums) { parts_->save(sums); }

void BareServerSave::save_in_a_pipeline() {
    Parts& p = *parts_;
    PQenterPipelineMode(p.server);
    p.pipelined = true;
    p.save(BareSums::in_the_engine);
    p.answer();
    p.pipelined = false;
    PQexitPipelineMode(p.server);
}

}  // namespace brimley::bench
