// The sample company, of which tests and harnesses take their copies.
#pragma once

#include <string>

#include "company/create.h"
#include "support/company_copy.h"

namespace brimley::testing {

inline CompanyOriginal& sample_original() {
    static CompanyOriginal original([](const std::string& company) {
        company::create_company_file(company, company::SampleCompany{"anna"});
    });
    return original;
}

}  // namespace brimley::testing
