#include "rom/map_grid.h"

void MapGrid::rebuild(bool fixed)
{
    texts_.fill(QString());
    colors_.fill(std::nullopt);
    fixedColumn = fixed;
}

QString MapGrid::text(int r, int c) const
{
    return inside(r, c) ? texts_[std::size_t(index(r, c))] : QString();
}

std::optional<vexorin::rom::Rgb> MapGrid::color(int r, int c) const
{
    return inside(r, c) ? colors_[std::size_t(index(r, c))] : std::nullopt;
}

void MapGrid::setText(int r, int c, const QString& t)
{
    if (inside(r, c))
        texts_[std::size_t(index(r, c))] = t;
}

void MapGrid::setColor(int r, int c, vexorin::rom::Rgb rgb)
{
    if (inside(r, c))
        colors_[std::size_t(index(r, c))] = rgb;
}
