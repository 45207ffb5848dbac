// The pictures of the toolbars: strokes listed in looks/icons.txt, drawn whenever they are shown, in the
// colour that buttons' texts have then.
#pragma once

#include <QIcon>
#include <QString>

namespace brimley::desktop {

[[nodiscard]] QIcon stroked_icon(const QString& strokes);
// The program's own, for its windows.
[[nodiscard]] QIcon program_icon();
// The picture that a command has in forms of this class, or else in all of them. One without a picture gets
// the first letter of its caption.
[[nodiscard]] QIcon command_icon(const QString& form, int command, const QString& caption);

}  // namespace brimley::desktop
