// The captions above a grid's columns: in as many lines as they need, on the grid's own colour, with the
// dividers that the model has.
#pragma once

#include <QHeaderView>

#include "controls/grid.h"

namespace brimley::desktop {

class GridHeader : public QHeaderView {
  public:
    GridHeader(QWidget* parent, const controls::Grid& grid);

    // As high as the caption with the most lines.
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintSection(QPainter* painter, const QRect& place, int column) const override;

  private:
    // What is drawn of a caption in this width: all of it, or its beginning where not even a word fits.
    [[nodiscard]] QString caption_shown(int column, int width) const;

    const controls::Grid& grid_;
};

}  // namespace brimley::desktop
