#include "windows/scene_canvas.h"

#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

namespace marlune {

QRegion SceneCanvas::Layer::show(Scene now, double scale) {
    QRegion changed = sceneDifference(scene, now, scale);
    if (changed.isEmpty() && scene.size() == now.size() && !places.empty()) return changed;
    scene = std::move(now);
    places = deviceAreas(scene, scale);
    return changed;
}

QRegion SceneCanvas::show(Scene now) {
    const auto moves =
        std::stable_partition(now.begin(), now.end(), [](const Tile& tile) { return !tile.moves; });
    Scene moving(std::make_move_iterator(moves), std::make_move_iterator(now.end()));
    now.erase(moves, now.end());
    const QRegion changed = rest_.show(std::move(now), scale());
    stale_ += changed;
    return changed + moving_.show(std::move(moving), scale());
}

void SceneCanvas::setSize(QSize size, double scale) {
    if (size == size_ && scale == tiles_.scale()) return;
    size_ = size;
    picture_ = QPixmap(size);
    stale_ = QRect(QPoint(0, 0), size);
    tiles_.setScale(scale);
    for (Layer* layer : {&rest_, &moving_}) layer->places = deviceAreas(layer->scene, scale);
}

void SceneCanvas::renew(const QRegion& due) {
    QPainter painter(&picture_);
    for (const QRect& part : due) tiles_.paint(painter, rest_.scene, rest_.places, part);
    stale_ -= due;
}

void SceneCanvas::paint(QPainter& painter, const QRect& area) {
    const QRegion due = stale_ & area;
    if (!due.isEmpty()) renew(due);
    painter.drawPixmap(area.topLeft(), picture_, area);
    tiles_.paint(painter, moving_.scene, moving_.places, area);
}

Scene SceneCanvas::scene() const {
    Scene all = rest_.scene;
    all.insert(all.end(), moving_.scene.begin(), moving_.scene.end());
    return all;
}

qsizetype SceneCanvas::bytes() const {
    return tiles_.bytes() + qsizetype{4} * size_.width() * size_.height();
}

} // namespace marlune
