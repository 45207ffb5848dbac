// The ledger document of a run, in its period, and the same with opposite signs in the next.
#pragma once

#include "frame/document_part.h"

namespace brimley::revaluation {

class APform_revalue;

class RevaluationPosting : public frame::DocumentPart {
  public:
    explicit RevaluationPosting(APform_revalue& form);

    // Posts what stands in the ledger summary; txtglfkey is the key of the document afterwards. False, after
    // the message, if there is one, when it cannot be posted. Inside the caller's transaction.
    [[nodiscard]] bool insert_GL_record(store::DateTime gldate);

  private:
    [[nodiscard]] kernel::GlDocument document(store::DateTime gldate) const;
    [[nodiscard]] bool add_summary(kernel::GlPosting& posting) const;
    // The reverse of the document with this key.
    [[nodiscard]] bool insert_GL_reverse_revalue(const std::string& fkey) const;
    [[nodiscard]] kernel::FiscalPeriod next_period() const;

    APform_revalue& form_;
};

}  // namespace brimley::revaluation
