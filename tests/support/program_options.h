// The command line of a program of the tests: CLI11 in few words, compiled once for all of them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace brimley::testing {

class ProgramOptions {
  public:
    ProgramOptions(const std::string& name, const std::string& purpose);
    ~ProgramOptions();
    ProgramOptions(const ProgramOptions&) = delete;
    ProgramOptions& operator=(const ProgramOptions&) = delete;

    // What must be given, by its place. The values outlive this.
    void required(const char* name, std::string& value, const char* meaning);
    // What has a value already.
    void option(const char* name, std::string& value, const char* meaning);
    void option(const char* name, int& value, const char* meaning);
    void option(const char* name, std::uint64_t& value, const char* meaning);
    void flag(const char* name, bool& value, const char* meaning);

    // Reads the command line and does the work, unless help was asked for or the line is wrong. The status to
    // end with; 1 with its message for an exception.
    [[nodiscard]] int run(int argc, char** argv, const std::function<int()>& work);

  private:
    std::string name_;
    std::unique_ptr<CLI::App> app_;
};

}  // namespace brimley::testing
