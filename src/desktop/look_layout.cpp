#include "desktop/look_layout.h"

#include <QApplication>
#include <QDockWidget>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QScrollArea>
#include <QTableView>

#include "controls/date_range.h"
#include "controls/fields.h"
#include "controls/grid.h"
#include "desktop/flow_layout.h"
#include "desktop/model_view.h"
#include "desktop/tabs_view.h"

namespace brimley::desktop {

namespace {

constexpr int kGenericRows = 6;  // of a column of fields
constexpr int kLeastRows = 4;    // of a grid that takes what room there is
constexpr int kRowInView = 26;   // pixels that a row takes where the look counts rows
constexpr int kColumnSpacing = 18;
constexpr int kGroupSpacing = 16;

Qt::DockWidgetArea area_of(const QString& place) {
    if (place == "bottom") return Qt::BottomDockWidgetArea;
    if (place == "top") return Qt::TopDockWidgetArea;
    return place == "left" ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea;
}

// Where there is no room for all of its content it scrolls, and follows the focus.
class Scrolled : public QScrollArea {
  public:
    explicit Scrolled(QWidget* content) {
        setWidget(content);
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* now) {
            if (now != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now, kMargin, kMargin);
        });
    }
    // As large as its content; the toolkit would have it no larger than some lines of text.
    [[nodiscard]] QSize sizeHint() const override { return widget()->sizeHint(); }

  private:
    static constexpr int kMargin = 12;  // pixels around what has the focus
};

class Layouter {
  public:
    Layouter(QMainWindow& window, const controls::ControlSet& controls, const MakeWidget& make_widget)
        : window_(window), controls_(controls), make_widget_(make_widget) {}

    LaidOut lay_out(const Look& look) {
        auto* const centre = new QWidget(&window_);
        auto* const whole = new QVBoxLayout(centre);
        whole->setContentsMargins(8, 6, 8, 6);
        whole->setSpacing(6);
        auto* const head = new FlowLayout(kColumnSpacing, Qt::AlignLeft);
        whole->addLayout(head);
        for (const LookPart& part : look.parts)
            add_part(part, *head, *whole);
        window_.setCentralWidget(new Scrolled(centre));
        return std::move(result_);
    }

  private:
    void add_part(const LookPart& part, FlowLayout& head, QVBoxLayout& whole) {
        switch (part.kind) {
            case LookPart::Kind::column:
                head.add_layout(columns_of(part));
                break;
            case LookPart::Kind::grid:
                add_grid(part.name, part.rows, whole);
                break;
            case LookPart::Kind::tabs:
                add_tabs(part, whole);
                break;
            case LookPart::Kind::foot:
                whole.addLayout(line_of(part, Qt::AlignRight));
                break;
            case LookPart::Kind::pane:
                add_pane(part);
                break;
        }
    }

    QWidget* widget_of(const LookField& field) {
        controls::Control* const control = controls_.find(typed(field.control));
        return control == nullptr ? nullptr : make_widget_(*control, field);
    }

    QLabel* caption_of(const QString& caption, const std::vector<QWidget*>& fields) {
        if (caption.startsWith('@')) {
            const QString name = caption.mid(1);
            auto* const label = static_cast<QLabel*>(widget_of({name}));
            result_.captions.push_back({label, fields, controls_.find(typed(name))});
            return label;
        }
        auto* const label = new QLabel(caption);
        label->setBuddy(fields.empty() ? nullptr : fields.front());
        result_.captions.push_back({label, fields});
        return label;
    }

    // Adds a row's fields to the line, each after its caption, and returns them.
    std::vector<QWidget*> add_fields(const LookRow& row, QHBoxLayout& line) {
        std::vector<QWidget*> widgets;
        for (const LookField& field : row.fields) {
            QWidget* const widget = widget_of(field);
            if (widget == nullptr) continue;
            if (!field.caption.isEmpty()) line.addWidget(caption_of(field.caption, {widget}));
            line.addWidget(widget);
            widgets.push_back(widget);
        }
        return widgets;
    }

    // Captions to the left, fields to the right.
    QLayout* columns_of(const LookPart& part) {
        auto* const grid = new QGridLayout;
        grid->setHorizontalSpacing(6);
        grid->setVerticalSpacing(3);
        int at = 0;
        for (const LookRow& row : part.fields) {
            auto* const line = new QHBoxLayout;
            line->setSpacing(4);
            const auto fields = add_fields(row, *line);
            line->addStretch(1);
            if (!row.caption.isEmpty()) {
                if (QLabel* const label = caption_of(row.caption, fields)) grid->addWidget(label, at, 0);
            }
            grid->addLayout(line, at++, 1);
        }
        grid->setRowStretch(at, 1);
        return grid;
    }

    // In one line, or in several where there is no room for one.
    QLayout* line_of(const LookPart& part, Qt::Alignment side) {
        auto* const whole = new FlowLayout(kGroupSpacing, side);
        for (const LookRow& row : part.fields) {
            auto* const line = new QHBoxLayout;
            line->setSpacing(6);
            const auto fields = add_fields(row, *line);
            if (QLabel* const label = caption_of(row.caption, fields)) line->insertWidget(0, label);
            whole->add_layout(line);
        }
        return whole;
    }

    // As the captions below it; null for a grid without one.
    [[nodiscard]] QLabel* grid_title(const QString& name) const {
        const auto* const grid = dynamic_cast<const controls::Grid*>(controls_.find(typed(name)));
        if (grid == nullptr || grid->title.empty()) return nullptr;
        auto* const label = new QLabel(shown(grid->title));
        const QColor back = back_colour(grid->header_colour, label->palette());
        QPalette colours = label->palette();
        colours.setColor(QPalette::Window, back);
        colours.setColor(QPalette::WindowText, readable_on(back));
        label->setPalette(colours);
        label->setAutoFillBackground(true);
        label->setAlignment(Qt::AlignCenter);
        label->setFont(QFont("Arial", 9));
        return label;
    }

    // Below its title, if it has one.
    void add_grid(const QString& name, int rows, QVBoxLayout& whole) {
        QWidget* const grid = widget_of({name});
        if (grid == nullptr) return;
        auto* const below_title = new QVBoxLayout;
        below_title->setSpacing(0);
        if (QLabel* const title = grid_title(name)) below_title->addWidget(title);
        if (rows > 0)
            grid->setFixedHeight((rows + 1) * kRowInView);
        else
            grid->setMinimumHeight((kLeastRows + 1) * kRowInView);
        below_title->addWidget(grid);
        whole.addLayout(below_title, rows > 0 ? 0 : 1);
    }

    void add_tabs(const LookPart& part, QVBoxLayout& whole) {
        auto* const tabs = dynamic_cast<TabsView*>(widget_of({part.name}));
        if (tabs == nullptr) return;
        for (const QString& name : part.grids) {
            auto* const page = new QWidget;
            auto* const content = new QVBoxLayout(page);
            content->setContentsMargins(0, 0, 0, 0);
            content->setSpacing(0);
            add_grid(name, 0, *content);
            tabs->add_page(*page);
        }
        whole.addWidget(tabs, 1);
    }

    void add_pane(const LookPart& part) {
        controls::Control* const control = controls_.find(typed(part.name));
        const auto* const frame = dynamic_cast<controls::Frame*>(control);
        if (frame == nullptr) return;
        auto* const dock = new QDockWidget(shown(frame->caption()), &window_);
        dock->setObjectName(part.name);
        auto* const content = new QWidget(dock);
        auto* const whole = new QVBoxLayout(content);
        whole->setContentsMargins(6, 2, 6, 4);
        const bool across = part.place == "top" || part.place == "bottom";
        if (!part.fields.empty()) whole->addLayout(across ? line_of(part, Qt::AlignLeft) : columns_of(part));
        for (const QString& name : part.grids) {
            QWidget* const grid = widget_of({name});
            if (grid == nullptr) continue;
            if (QLabel* const title = grid_title(name)) whole->addWidget(title);
            if (part.rows > 0) grid->setMinimumHeight((part.rows + 1) * kRowInView);
            whole->addWidget(grid, 1);
        }
        if (part.grids.isEmpty() && !across) whole->addStretch(1);
        dock->setWidget(new Scrolled(content));
        window_.addDockWidget(area_of(part.place), dock);
        result_.panes[control] = dock;
    }

    QMainWindow& window_;
    const controls::ControlSet& controls_;
    const MakeWidget& make_widget_;
    LaidOut result_;
};

bool has_caption_of_its_own(const controls::Control& control) {
    return dynamic_cast<const controls::CheckBox*>(&control) != nullptr ||
           dynamic_cast<const controls::OptionButton*>(&control) != nullptr ||
           dynamic_cast<const controls::PushButton*>(&control) != nullptr ||
           dynamic_cast<const controls::Label*>(&control) != nullptr;
}

// The name of a field without the letters for its kind.
QString caption_from(const QString& name) {
    const bool has_kind = name.startsWith("txt") || name.startsWith("cmb");
    return name.mid(has_kind ? 3 : 0).replace('_', ' ');
}

LookRow row_of(const controls::Control& control, const frame::FieldHint& hint) {
    const bool has_caption = has_caption_of_its_own(control);
    const int usual = dynamic_cast<const controls::DateRange*>(&control) != nullptr ? 12
                      : has_caption                                                 ? 0
                                                                                    : 18;
    LookField field{shown(control.name()), hint.width > 0 ? hint.width : usual};
    field.lines = hint.lines;
    const QString caption = hint.caption.empty() ? caption_from(shown(control.name())) : shown(hint.caption);
    return {has_caption ? QString() : caption, {field}};
}

// The part that a control comes to lie in: its frame's pane, or the last column that has room.
LookPart& part_for(Look& look, const controls::Control& control) {
    if (const controls::Control* const frame = control.container()) {
        for (LookPart& part : look.parts)
            if (part.holds_grids() && part.name == shown(frame->name())) return part;
    }
    LookPart* last = look.parts.empty() ? nullptr : &look.parts.back();
    const bool has_room =
        last != nullptr && last->kind == LookPart::Kind::column && last->fields.size() < kGenericRows;
    return has_room ? *last : look.parts.emplace_back();
}

}  // namespace

LaidOut lay_out(QMainWindow& window, const controls::ControlSet& controls, const Look& look,
                const MakeWidget& make_widget) {
    return Layouter(window, controls, make_widget).lay_out(look);
}

void add_what_is_left_out(Look& look, const controls::ControlSet& controls, const Hints& hints) {
    for (const controls::Control* control : controls.all()) {
        const auto* const frame = dynamic_cast<const controls::Frame*>(control);
        if (frame == nullptr || frame->caption().empty() || look.names(shown(control->name()))) continue;
        look.parts.push_back({LookPart::Kind::pane, shown(control->name()), "right"});
    }
    for (const controls::Control* control : controls.all())
        if (dynamic_cast<const controls::TabControl*>(control) != nullptr &&
            !look.names(shown(control->name())))
            look.parts.push_back({LookPart::Kind::tabs, shown(control->name())});
    std::vector<const controls::Control*> grids;  // below the fields
    for (const controls::Control* control : controls.all()) {
        const bool is_frame = dynamic_cast<const controls::Frame*>(control) != nullptr;
        const bool is_grid = dynamic_cast<const controls::Grid*>(control) != nullptr;
        if (is_frame || look.names(shown(control->name()))) continue;
        if (is_grid)
            grids.push_back(control);
        else
            part_for(look, *control).fields.push_back(row_of(*control, hints(*control)));
    }
    for (const controls::Control* const grid : grids) {
        if (grid->container() != nullptr)
            part_for(look, *grid).grids.append(shown(grid->name()));
        else
            look.parts.push_back({LookPart::Kind::grid, shown(grid->name())});
    }
}

Look generic_look(const controls::ControlSet& controls, const QString& title, const Hints& hints) {
    Look look;
    look.title = title;
    add_what_is_left_out(look, controls, hints);
    return look;
}

}  // namespace brimley::desktop
