// Lays its items out in a row, and in further rows where the width does not hold them all.
#pragma once

#include <QLayout>
#include <vector>

namespace brimley::desktop {

class FlowLayout : public QLayout {
  public:
    // `spacing` in pixels between items and between rows; the rows stand on this side.
    FlowLayout(int spacing, Qt::Alignment side) : side_(side) { setSpacing(spacing); }
    ~FlowLayout() override;
    FlowLayout(const FlowLayout&) = delete;
    FlowLayout& operator=(const FlowLayout&) = delete;

    // Takes the layout over as one item.
    void add_layout(QLayout* layout);

    void addItem(QLayoutItem* item) override { items_.append(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override { return items_.value(index); }
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    // All in one row.
    [[nodiscard]] QSize sizeHint() const override;
    // As narrow as the widest item.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& place) override;

  private:
    struct Row {
        std::vector<QLayoutItem*> items;
        QSize size;
    };
    [[nodiscard]] std::vector<Row> rows_in(int width) const;

    QList<QLayoutItem*> items_;
    Qt::Alignment side_;
};

}  // namespace brimley::desktop
