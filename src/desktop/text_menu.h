// Undo, Cut, Copy, Paste and Select all, in a menu: they work on the field, note or cell that is typed in.
#pragma once

class QMenu;

namespace brimley::desktop {

// Adds them below what the menu has. Each is grey while there is nothing for it to do. Their keys are the
// toolkit's own within a field, and only shown here.
void add_text_acts(QMenu& menu);

}  // namespace brimley::desktop
