// Puts a form's widgets where its look says.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "controls/control.h"
#include "desktop/look.h"
#include "frame/form.h"

class QBoxLayout;
class QDockWidget;
class QLabel;
class QMainWindow;
class QWidget;

namespace brimley::desktop {

// The captions of the fields, for whoever follows the fields' visibility.
struct FieldCaption {
    QLabel* label;
    std::vector<QWidget*> fields;
    const controls::Control* of_form = nullptr;  // the form's own label, which may be hidden by itself
};

struct LaidOut {
    std::vector<FieldCaption> captions;
    std::map<const controls::Control*, QDockWidget*> panes;  // by their frame
};

// Makes the widget of a control; the look names a width, lines and alignment.
using MakeWidget = std::function<QWidget*(controls::Control&, const LookField&)>;

// Fills the window: the fields and the grid in its middle, the panes as docks around. Every control gets its
// widget once, in the order in which Tab shall reach them.
[[nodiscard]] LaidOut lay_out(QMainWindow& window, const controls::ControlSet& controls, const Look& look,
                              const MakeWidget& make_widget);

// The look of a form that has no file: the fields in columns in the order of their declaration, grids below,
// frames as panes with what lies in them.
// hints: what the form says of its fields.
using Hints = std::function<frame::FieldHint(const controls::Control&)>;
[[nodiscard]] Look generic_look(const controls::ControlSet& controls, const QString& title,
                                const Hints& hints);
// What the look leaves out, after what it has.
void add_what_is_left_out(Look& look, const controls::ControlSet& controls, const Hints& hints);

}  // namespace brimley::desktop
