#include "support/program_options.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace brimley::testing {

ProgramOptions::ProgramOptions(const std::string& name, const std::string& purpose)
    : name_(name), app_(std::make_unique<CLI::App>(purpose, name)) {}

ProgramOptions::~ProgramOptions() = default;

void ProgramOptions::required(const char* name, std::string& value, const char* meaning) {
    app_->add_option(name, value, meaning)->required();
}

void ProgramOptions::option(const char* name, std::string& value, const char* meaning) {
    app_->add_option(name, value, meaning)->capture_default_str();
}

void ProgramOptions::option(const char* name, int& value, const char* meaning) {
    app_->add_option(name, value, meaning)->capture_default_str();
}

void ProgramOptions::option(const char* name, std::uint64_t& value, const char* meaning) {
    app_->add_option(name, value, meaning)->capture_default_str();
}

void ProgramOptions::flag(const char* name, bool& value, const char* meaning) {
    app_->add_flag(name, value, meaning);
}

int ProgramOptions::run(int argc, char** argv, const std::function<int()>& work) {
    CLI11_PARSE(*app_, argc, argv);
    try {
        return work();
    } catch (const std::exception& failure) {
        std::cerr << name_ << ": " << failure.what() << std::endl;
        return 1;
    }
}

}  // namespace brimley::testing
