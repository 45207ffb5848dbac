// Forms that this version does not have yet: nothing is shown, and nothing to steer or to close. The lines of
// a form that is built move to the source of its room.
#include "host/apclass.h"

namespace brimley::host {

void APclass::showform_APreport_recur_inquiry() {}

void APclass::frm_recur_inquiry_Exit() {}

}  // namespace brimley::host
