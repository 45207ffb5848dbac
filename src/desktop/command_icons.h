// The pictures of the toolbars: strokes told in looks/icons.txt, drawn in the colour of the text around them.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace brimley::desktop {

// A command without a picture gets the first letter of its caption.
[[nodiscard]] QIcon command_icon(int command, const QString& caption, const QPalette& palette);

}  // namespace brimley::desktop
