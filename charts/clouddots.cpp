// SPDX-License-Identifier: GPL-3.0-or-later
#include "clouddots.h"

#include "dotlayout.h"
#include "dotsprites.h"

#include <QGraphicsScene>
#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGTexture>
#include <QSGTextureMaterial>

#include <memory>

namespace {

constexpr int kVerticesPerDot = 6; // two triangles

// All dots of a layer in one geometry, which is drawn at once.
class DotsNode : public QSGGeometryNode
{
public:
    DotsNode()
        : m_geometry(QSGGeometry::defaultAttributes_TexturedPoint2D(), 0)
    {
        m_geometry.setDrawingMode(QSGGeometry::DrawTriangles);
        setGeometry(&m_geometry);
        setMaterial(&m_material);
    }

    // Draws the sprites only if the colour or the scale of the screen has changed.
    void setSprites(QQuickWindow &window, const QColor &color)
    {
        const qreal ratio = window.effectiveDevicePixelRatio();
        if (m_sprites && m_color == color && m_ratio == ratio) {
            return;
        }
        m_color = color;
        m_ratio = ratio;
        m_sprites = std::make_unique<ork2::DotSprites>(color, ratio);
        m_texture.reset(
            window.createTextureFromImage(m_sprites->image, QQuickWindow::TextureHasAlphaChannel));
        m_material.setTexture(m_texture.get());
        m_material.setFlag(QSGMaterial::Blending);
        markDirty(DirtyMaterial);
    }

    [[nodiscard]] int diameter() const { return m_sprites->diameter; }

    // The origin of the item is in device pixels of the window.
    void setDots(const QList<ork2::Dot> &dots, QPointF origin)
    {
        m_geometry.allocate(static_cast<int>(dots.size()) * kVerticesPerDot);
        auto *vertex = m_geometry.vertexDataAsTexturedPoint2D();
        const QPoint glow(m_sprites->glowWidth, m_sprites->glowWidth);
        for (const ork2::Dot &dot : dots) {
            const QRect sprite = dot.glows ? m_sprites->glowing : m_sprites->plain;
            const QPointF corner = (dot.glows ? dot.corner - glow : dot.corner) - origin;
            vertex = setQuad(vertex, QRectF(corner / m_ratio, QSizeF(sprite.size()) / m_ratio),
                m_texture->convertToNormalizedSourceRect(sprite));
        }
        markDirty(DirtyGeometry);
    }

private:
    using Vertex = QSGGeometry::TexturedPoint2D;

    static Vertex *setQuad(Vertex *vertex, const QRectF &place, const QRectF &source)
    {
        const auto set = [&vertex](QPointF at, QPointF from) {
            vertex->set(static_cast<float>(at.x()), static_cast<float>(at.y()),
                static_cast<float>(from.x()), static_cast<float>(from.y()));
            ++vertex;
        };
        set(place.topLeft(), source.topLeft());
        set(place.topRight(), source.topRight());
        set(place.bottomLeft(), source.bottomLeft());
        set(place.bottomLeft(), source.bottomLeft());
        set(place.topRight(), source.topRight());
        set(place.bottomRight(), source.bottomRight());
        return vertex;
    }

    QSGGeometry m_geometry;
    QSGTextureMaterial m_material;
    std::unique_ptr<QSGTexture> m_texture;
    std::unique_ptr<ork2::DotSprites> m_sprites;
    QColor m_color;
    qreal m_ratio = 1;
};

} // namespace

CloudDots::CloudDots(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void CloudDots::setSeries(QScatterSeries *series)
{
    if (m_series == series) {
        return;
    }
    if (m_series != nullptr) {
        m_series->disconnect(this);
    }
    m_series = series;
    if (series != nullptr) {
        connect(series, &QScatterSeries::pointAdded, this, &QQuickItem::update);
        connect(series, &QScatterSeries::pointReplaced, this, &QQuickItem::update);
        connect(series, &QScatterSeries::pointRemoved, this, &QQuickItem::update);
        connect(series, &QScatterSeries::pointsRemoved, this, &QQuickItem::update);
        connect(series, &QScatterSeries::pointsReplaced, this, &QQuickItem::update);
        connect(series, &QScatterSeries::colorChanged, this, &QQuickItem::update);
        connect(series, &QScatterSeries::visibleChanged, this, &QQuickItem::update);
        connect(series, &QObject::destroyed, this, &QQuickItem::update);
    }
    update();
    Q_EMIT seriesChanged();
}

void CloudDots::setHiddenChart(QQuickItem *chart)
{
    if (m_hiddenChart == chart) {
        return;
    }
    m_hiddenChart = chart;
    if (chart != nullptr) {
        chart->setFlag(ItemHasContents, false);
        // Each change of the scene would draw it into a picture.
        if (const auto *scene = chart->findChild<QGraphicsScene *>()) {
            scene->disconnect(chart);
        }
    }
    Q_EMIT hiddenChartChanged();
}

void CloudDots::setLatest(qreal time)
{
    if (m_latest != time) {
        m_latest = time;
        update();
        Q_EMIT latestChanged();
    }
}

void CloudDots::setTimeScale(qreal scale)
{
    if (m_timeScale != scale) {
        m_timeScale = scale;
        update();
        Q_EMIT timeScaleChanged();
    }
}

void CloudDots::setLowest(qreal height)
{
    if (m_lowest != height) {
        m_lowest = height;
        update();
        Q_EMIT lowestChanged();
    }
}

void CloudDots::setHighest(qreal height)
{
    if (m_highest != height) {
        m_highest = height;
        update();
        Q_EMIT highestChanged();
    }
}

QSGNode *CloudDots::updatePaintNode(QSGNode *node, UpdatePaintNodeData *data)
{
    Q_UNUSED(data)
    std::unique_ptr<DotsNode> dots(static_cast<DotsNode *>(node));
    if (m_series == nullptr || !m_series->isVisible()) {
        return nullptr;
    }
    if (!dots) {
        dots = std::make_unique<DotsNode>();
    }
    dots->setSprites(*window(), m_series->color());

    const qreal ratio = window()->effectiveDevicePixelRatio();
    const ork2::PlotArea area{.latest = m_latest,
        .timeScale = m_timeScale,
        .lowest = m_lowest,
        .highest = m_highest,
        .corner = mapToScene(QPointF()) * ratio,
        .size = size() * ratio};
    const QList<ork2::Dot> shown = ork2::dotsInArea(m_series->points(), area, dots->diameter());
    if (shown.isEmpty()) {
        return nullptr;
    }
    dots->setDots(shown, area.corner);
    return dots.release();
}

void CloudDots::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void CloudDots::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}
