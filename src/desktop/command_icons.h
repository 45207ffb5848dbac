// The pictures of the toolbars: strokes listed in looks/icons.txt, drawn in the colour of the text around
// them.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace brimley::desktop {

// A picture of strokes, in the colour of buttons' texts.
[[nodiscard]] QIcon stroked_icon(const QString& strokes, const QPalette& palette);
// The program's own, for its windows.
[[nodiscard]] QIcon program_icon();
// The picture that a command has in forms of this class, or else in all of them. One without a picture gets
// the first letter of its caption.
[[nodiscard]] QIcon command_icon(const QString& form, int command, const QString& caption,
                                 const QPalette& palette);

}  // namespace brimley::desktop
