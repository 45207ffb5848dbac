#include "bare_server_save.h"

#include <fmt/format.h>
#include <libpq-fe.h>

#include <regex>
#include <stdexcept>
#include <vector>

#include "bare_statements.h"

namespace brimley::bench {

namespace {

std::string server_spelling(std::string sql) {
    sql = std::regex_replace(sql, std::regex("\\?([0-9])"), "$$$1");
    return std::regex_replace(sql, std::regex("ifnull"), "coalesce");
}

struct ServerText {
    std::string operator()(std::string_view text) const { return std::string(text); }
    std::string operator()(double number) const { return fmt::format("{}", number); }
    std::string operator()(bool flag) const { return flag ? "t" : "f"; }
    std::string operator()(store::DateTime date) const { return date.iso(); }
};

}  // namespace

struct BareServerSave::Parts : BareRunner {
    PGconn* server = nullptr;
    bool pipelined = false;
    int unanswered = 0;
    std::int64_t next = 1'000'000;

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
    void run(Bare statement, std::span<const BareValue> values) override {
        std::vector<std::string> texts;
        for (const BareValue& value : values)
            texts.push_back(std::visit(ServerText{}, value));
        send(("w" + std::to_string(statement)).c_str(), texts);
    }
    void save() {
        send("b", {});
        run_bare_save(*this, next++);
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

void BareServerSave::save() { parts_->save(); }

void BareServerSave::save_in_a_pipeline() {
    Parts& p = *parts_;
    PQenterPipelineMode(p.server);
    p.pipelined = true;
    p.save();
    p.answer();
    p.pipelined = false;
    PQexitPipelineMode(p.server);
}

}  // namespace brimley::bench
