// Requests that a company cannot take. what() is one line for the user.
#pragma once

#include <stdexcept>

namespace brimley::company {

// What stands in the company is in the way: a year that exists, a folder without a file to load.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The request makes no sense in any company: a year that is no year, a code that is no currency.
class UnusableValue : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace brimley::company
