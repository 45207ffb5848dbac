// A PostgreSQL server of a test's own, which may be stopped, killed and started again, and followed by a
// standby that takes its place.
#pragma once

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "support/temporary_folder.h"

namespace brimley::testing {

class PrivateCluster {
  public:
    explicit PrivateCluster(const std::string& settings = {}) {
        run("start", quoted(file()) + " " + settings);
    }
    // A standby of the other one, which waits with each commit until it is here, too.
    explicit PrivateCluster(const PrivateCluster* primary) {
        run("follow", quoted(primary->file()) + " " + quoted(file()));
    }
    ~PrivateCluster() { (void)std::system(command("stop", quoted(file())).c_str()); }
    PrivateCluster(const PrivateCluster&) = delete;
    PrivateCluster& operator=(const PrivateCluster&) = delete;

    void halt(const std::string& mode = "fast") const { run("halt", quoted(file()) + " " + mode); }
    void kill() const { run("kill", quoted(file())); }
    void resume() const { run("resume", quoted(file())); }
    void promote() const { run("promote", quoted(file())); }

    // As BRIMLEY_TEST_SERVER names it (support/test_server.h).
    [[nodiscard]] std::string file() const { return folder_.file("server"); }
    [[nodiscard]] std::string folder() const {
        std::string options;
        std::getline(std::ifstream(file()), options);
        return options.substr(5, options.find('&') - 5);
    }
    [[nodiscard]] std::string uri(const std::string& database) const {
        return "postgresql:///" + database + "?user=brimley&host=" + folder();
    }

  private:
    static std::string quoted(const std::string& path) { return "'" + path + "'"; }
    static std::string command(const std::string& what, const std::string& arguments) {
        return BRIMLEY_SOURCE_DIR "/tests/support/server-cluster " + what + " " + arguments;
    }
    static void run(const std::string& what, const std::string& arguments) {
        if (std::system(command(what, arguments).c_str()) != 0)
            throw std::runtime_error("the server of the test: " + what + " has failed");
    }

    TemporaryFolder folder_;
};

}  // namespace brimley::testing
