// Draws the pictures of the forms and the run-time icons.
//
// Every glyph is drawn on a logical 32 x 32 canvas and rendered at the size
// its use needs: 32 pixels for actions and window icons, 20 for the race
// emblems beside the shipyard check boxes, 16 for the list and menu icons
// that the program loads from its Icons folder.
//
// Usage: hw_icongen <repository root>

#include <QColor>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QString>
#include <QTextStream>

#include <functional>
#include <vector>

namespace {

using Glyph = std::function<void(QPainter&)>;

const QColor Outline(40, 44, 52);
const QColor Paper(250, 250, 246);
const QColor Folder(236, 184, 64);
const QColor DiskBlue(58, 98, 170);
const QColor Steel(150, 160, 172);
const QColor Hull(118, 136, 160);
const QColor Go(52, 160, 72);
const QColor Stop(200, 52, 44);

QPen outlinePen(qreal width = 1.5)
{
    return QPen(Outline, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

QLinearGradient verticalShade(const QColor& top, qreal y0 = 0, qreal y1 = 32)
{
    QLinearGradient g(0, y0, 0, y1);
    g.setColorAt(0, top.lighter(135));
    g.setColorAt(1, top.darker(115));
    return g;
}

// --- Building blocks -------------------------------------------------------

void drawPage(QPainter& p, const QRectF& r)
{
    const qreal fold = r.width() * 0.3;
    QPainterPath page;
    page.moveTo(r.left(), r.top());
    page.lineTo(r.right() - fold, r.top());
    page.lineTo(r.right(), r.top() + fold);
    page.lineTo(r.right(), r.bottom());
    page.lineTo(r.left(), r.bottom());
    page.closeSubpath();
    p.setPen(outlinePen());
    p.setBrush(Paper);
    p.drawPath(page);
    QPainterPath corner;
    corner.moveTo(r.right() - fold, r.top());
    corner.lineTo(r.right() - fold, r.top() + fold);
    corner.lineTo(r.right(), r.top() + fold);
    p.setBrush(QColor(214, 214, 206));
    p.drawPath(corner);
}

void drawTextLines(QPainter& p, const QRectF& r, int count, const QColor& color = QColor(120, 124, 132))
{
    p.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap));
    const qreal step = r.height() / count;
    for (int i = 0; i < count; ++i) {
        const qreal y = r.top() + step * (i + 0.5);
        const qreal right = (i % 2) ? r.right() - r.width() * 0.25 : r.right();
        p.drawLine(QPointF(r.left(), y), QPointF(right, y));
    }
}

void drawFolder(QPainter& p, const QRectF& r, bool open)
{
    p.setPen(outlinePen());
    QPainterPath back;
    back.moveTo(r.left(), r.bottom());
    back.lineTo(r.left(), r.top());
    back.lineTo(r.left() + r.width() * 0.38, r.top());
    back.lineTo(r.left() + r.width() * 0.48, r.top() + r.height() * 0.16);
    back.lineTo(r.right(), r.top() + r.height() * 0.16);
    back.lineTo(r.right(), r.bottom());
    back.closeSubpath();
    p.setBrush(verticalShade(Folder.darker(110), r.top(), r.bottom()));
    p.drawPath(back);
    QPainterPath front;
    if (open) {
        front.moveTo(r.left(), r.bottom());
        front.lineTo(r.left() + r.width() * 0.18, r.top() + r.height() * 0.38);
        front.lineTo(r.right() + r.width() * 0.08, r.top() + r.height() * 0.38);
        front.lineTo(r.right(), r.bottom());
    } else {
        front.addRect(QRectF(r.left(), r.top() + r.height() * 0.3, r.width(), r.height() * 0.7));
    }
    front.closeSubpath();
    p.setBrush(verticalShade(Folder, r.top(), r.bottom()));
    p.drawPath(front);
}

void drawDisk(QPainter& p, const QRectF& r)
{
    p.setPen(outlinePen());
    QPainterPath body;
    const qreal cut = r.width() * 0.16;
    body.moveTo(r.left(), r.top());
    body.lineTo(r.right() - cut, r.top());
    body.lineTo(r.right(), r.top() + cut);
    body.lineTo(r.right(), r.bottom());
    body.lineTo(r.left(), r.bottom());
    body.closeSubpath();
    p.setBrush(verticalShade(DiskBlue, r.top(), r.bottom()));
    p.drawPath(body);
    // Shutter at the top, label at the bottom.
    p.setBrush(QColor(210, 214, 220));
    p.drawRect(QRectF(r.left() + r.width() * 0.25, r.top(), r.width() * 0.42, r.height() * 0.3));
    p.setBrush(Paper);
    p.drawRect(
        QRectF(r.left() + r.width() * 0.15, r.top() + r.height() * 0.52, r.width() * 0.7, r.height() * 0.48));
    drawTextLines(
        p,
        QRectF(r.left() + r.width() * 0.24, r.top() + r.height() * 0.6, r.width() * 0.52, r.height() * 0.32),
        2);
}

// An arrow from 'from' to 'to' with a filled head.
void drawArrow(QPainter& p, QPointF from, QPointF to, const QColor& color, qreal width = 3.2)
{
    const QLineF line(from, to);
    const qreal head = width * 2.2;
    QLineF back(to, from);
    back.setLength(head);
    const QPointF base = back.p2();
    QLineF normal = back.normalVector();
    normal.setLength(head * 0.8);
    const QPointF offset = normal.p2() - normal.p1();
    p.setPen(QPen(color.darker(130), width, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(from, base);
    p.setPen(QPen(color.darker(150), 1.0));
    p.setBrush(color);
    p.drawPolygon(QPolygonF({to, base + offset, base - offset}));
}

void drawShip(QPainter& p, const QRectF& r)
{
    // Seen from above, nose to the upper right.
    p.save();
    p.translate(r.center());
    p.rotate(-45);
    const qreal s = r.width() / 32.0;
    p.scale(s, s);
    QPainterPath hull;
    hull.moveTo(0, -15);
    hull.cubicTo(4, -9, 5, -2, 5, 4);
    hull.lineTo(13, 10);
    hull.lineTo(13, 13);
    hull.lineTo(4, 11);
    hull.lineTo(3, 14);
    hull.lineTo(-3, 14);
    hull.lineTo(-4, 11);
    hull.lineTo(-13, 13);
    hull.lineTo(-13, 10);
    hull.lineTo(-5, 4);
    hull.cubicTo(-5, -2, -4, -9, 0, -15);
    QLinearGradient shade(-13, 0, 13, 0);
    shade.setColorAt(0, Hull.darker(120));
    shade.setColorAt(0.5, Hull.lighter(140));
    shade.setColorAt(1, Hull.darker(120));
    p.setPen(QPen(Outline, 1.4 / s * 0.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(shade);
    p.drawPath(hull);
    p.setBrush(QColor(120, 200, 240));
    p.drawEllipse(QRectF(-2, -9, 4, 6));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 160, 40));
    p.drawRect(QRectF(-2.5, 14, 5, 2.5));
    p.restore();
}

void drawGear(QPainter& p, QPointF centre, qreal radius, const QColor& color)
{
    const int teeth = 8;
    QPainterPath gear;
    for (int i = 0; i < teeth * 2; ++i) {
        const qreal angle = i * 3.14159265 / teeth;
        const qreal rr = (i % 2) ? radius * 0.78 : radius;
        const qreal half = 3.14159265 / teeth * 0.45;
        const QPointF a(centre.x() + rr * std::cos(angle - half), centre.y() + rr * std::sin(angle - half));
        const QPointF b(centre.x() + rr * std::cos(angle + half), centre.y() + rr * std::sin(angle + half));
        if (i == 0)
            gear.moveTo(a);
        else
            gear.lineTo(a);
        gear.lineTo(b);
    }
    gear.closeSubpath();
    gear.addEllipse(centre, radius * 0.32, radius * 0.32);
    gear.setFillRule(Qt::OddEvenFill);
    p.setPen(outlinePen(1.2));
    p.setBrush(verticalShade(color, centre.y() - radius, centre.y() + radius));
    p.drawPath(gear);
}

void drawWrench(QPainter& p, QPointF head, QPointF tail)
{
    p.setPen(QPen(Outline, 5.0, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(head, tail);
    p.setPen(QPen(Steel.lighter(120), 3.0, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(head, tail);
    p.setPen(outlinePen(1.2));
    p.setBrush(Steel.lighter(120));
    p.drawEllipse(head, 4.2, 4.2);
    p.setBrush(Paper);
    p.drawEllipse(head, 1.6, 1.6);
}

void drawScales(QPainter& p)
{
    p.setPen(outlinePen(1.6));
    p.setBrush(QColor(196, 152, 60));
    p.drawRect(QRectF(14.5, 6, 3, 20));
    p.drawRect(QRectF(9, 26, 14, 3));
    p.drawLine(QPointF(4, 9), QPointF(28, 9));
    for (const qreal x : {7.0, 25.0}) {
        p.drawLine(QPointF(x, 9), QPointF(x - 4, 18));
        p.drawLine(QPointF(x, 9), QPointF(x + 4, 18));
        QPainterPath pan;
        pan.moveTo(x - 6, 18);
        pan.lineTo(x + 6, 18);
        pan.arcTo(QRectF(x - 6, 14, 12, 8), 0, -180);
        p.drawPath(pan);
    }
    p.setBrush(QColor(230, 196, 90));
    p.drawEllipse(QPointF(16, 6), 2.2, 2.2);
}

void drawBars(QPainter& p, const QRectF& r)
{
    const QColor colors[] = {QColor(70, 130, 200), QColor(80, 170, 90), QColor(220, 150, 40)};
    const qreal heights[] = {0.5, 0.85, 0.65};
    const qreal w = r.width() / 3.6;
    p.setPen(outlinePen(1.0));
    for (int i = 0; i < 3; ++i) {
        const qreal h = r.height() * heights[i];
        p.setBrush(colors[i]);
        p.drawRect(QRectF(r.left() + i * w * 1.3, r.bottom() - h, w, h));
    }
}

void drawPlus(QPainter& p, QPointF c, qreal size, const QColor& color)
{
    const qreal t = size * 0.36;
    QPainterPath plus;
    plus.addRect(QRectF(c.x() - size, c.y() - t / 2, size * 2, t));
    plus.addRect(QRectF(c.x() - t / 2, c.y() - size, t, size * 2));
    plus.setFillRule(Qt::WindingFill);
    p.setPen(QPen(color.darker(150), 1.0));
    p.setBrush(color);
    p.drawPath(plus.simplified());
}

void drawCockpit(QPainter& p, const QRectF& r)
{
    p.setPen(outlinePen());
    p.setBrush(verticalShade(Hull, r.top(), r.bottom()));
    p.drawRoundedRect(QRectF(r.left(), r.top() + r.height() * 0.55, r.width(), r.height() * 0.45), 3, 3);
    QPainterPath dome;
    dome.moveTo(r.left() + r.width() * 0.12, r.top() + r.height() * 0.58);
    dome.arcTo(QRectF(r.left() + r.width() * 0.12, r.top(), r.width() * 0.76, r.height() * 1.1), 180, -180);
    dome.closeSubpath();
    QLinearGradient glass(r.topLeft(), r.bottomRight());
    glass.setColorAt(0, QColor(190, 235, 255));
    glass.setColorAt(1, QColor(60, 140, 200));
    p.setBrush(glass);
    p.drawPath(dome);
    p.setPen(QPen(QColor(255, 255, 255, 200), 1.4, Qt::SolidLine, Qt::RoundCap));
    p.drawArc(
        QRectF(r.left() + r.width() * 0.25, r.top() + r.height() * 0.12, r.width() * 0.4, r.height() * 0.6),
        100 * 16, 50 * 16);
}

void drawCube(QPainter& p, const QRectF& r)
{
    const qreal d = r.width() * 0.3;
    const QRectF front(r.left(), r.top() + d, r.width() - d, r.height() - d);
    p.setPen(outlinePen(1.3));
    p.setBrush(QColor(120, 170, 220));
    p.drawRect(front);
    p.setBrush(QColor(160, 200, 240));
    p.drawPolygon(QPolygonF(
        {front.topLeft(), QPointF(r.left() + d, r.top()), QPointF(r.right(), r.top()), front.topRight()}));
    p.setBrush(QColor(80, 130, 190));
    p.drawPolygon(QPolygonF({front.topRight(), QPointF(r.right(), r.top()),
                             QPointF(r.right(), r.bottom() - d), front.bottomRight()}));
}

// --- Glyphs of the actions and windows ------------------------------------

void glyphNew(QPainter& p)
{
    drawPage(p, QRectF(6, 3, 20, 26));
    drawPlus(p, QPointF(22, 23), 6, Go);
}

void glyphOpen(QPainter& p)
{
    drawFolder(p, QRectF(3, 7, 25, 20), true);
}

void glyphSave(QPainter& p)
{
    drawDisk(p, QRectF(4, 4, 24, 24));
}

void glyphSaveAs(QPainter& p)
{
    drawDisk(p, QRectF(2, 2, 22, 22));
    // A pencil across the lower right corner.
    p.save();
    p.translate(22, 22);
    p.rotate(-45);
    p.setPen(outlinePen(1.0));
    p.setBrush(QColor(240, 200, 60));
    p.drawRect(QRectF(-3, -9, 6, 14));
    p.setBrush(QColor(230, 190, 150));
    p.drawPolygon(QPolygonF({QPointF(-3, 5), QPointF(3, 5), QPointF(0, 10)}));
    p.setBrush(QColor(240, 140, 150));
    p.drawRect(QRectF(-3, -11, 6, 2));
    p.restore();
}

void glyphLoadShip(QPainter& p)
{
    // A table of ship lines with an arrow pulling one line out.
    drawPage(p, QRectF(3, 3, 20, 26));
    p.setPen(QPen(QColor(150, 154, 160), 1.0));
    for (qreal y = 10; y < 28; y += 4)
        p.drawLine(QPointF(5, y), QPointF(21, y));
    p.drawLine(QPointF(11, 6), QPointF(11, 28));
    drawArrow(p, QPointF(16, 16), QPointF(30, 16), Go);
}

void glyphWizard(QPainter& p)
{
    p.setPen(QPen(Outline, 4.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(5, 28), QPointF(20, 13));
    p.setPen(QPen(QColor(90, 60, 140), 2.4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(5, 28), QPointF(20, 13));
    p.setPen(QPen(Paper, 2.4, Qt::SolidLine, Qt::FlatCap));
    p.drawLine(QPointF(17.5, 15.5), QPointF(20, 13));
    // Sparkles.
    const QColor gold(250, 200, 40);
    p.setPen(QPen(gold.darker(140), 0.8));
    p.setBrush(gold);
    const QPointF stars[] = {QPointF(24, 8), QPointF(14, 5), QPointF(28, 18)};
    const qreal sizes[] = {5.5, 3.2, 3.2};
    for (int i = 0; i < 3; ++i) {
        const QPointF c = stars[i];
        const qreal s = sizes[i];
        p.drawPolygon(
            QPolygonF({c + QPointF(0, -s), c + QPointF(s * 0.3, -s * 0.3), c + QPointF(s, 0),
                       c + QPointF(s * 0.3, s * 0.3), c + QPointF(0, s), c + QPointF(-s * 0.3, s * 0.3),
                       c + QPointF(-s, 0), c + QPointF(-s * 0.3, -s * 0.3)}));
    }
}

void glyphExit(QPainter& p)
{
    p.setPen(outlinePen());
    p.setBrush(QColor(150, 100, 60));
    p.drawRect(QRectF(4, 3, 16, 26));
    p.setBrush(QColor(40, 30, 24));
    p.drawPolygon(QPolygonF({QPointF(4, 3), QPointF(13, 6), QPointF(13, 29), QPointF(4, 29)}));
    drawArrow(p, QPointF(14, 16), QPointF(30, 16), Stop);
}

void glyphConfig(QPainter& p)
{
    drawGear(p, QPointF(13, 13), 10.5, Steel);
    drawGear(p, QPointF(23.5, 23.5), 7, QColor(200, 160, 80));
}

void glyphManageProfiles(QPainter& p)
{
    // A stack of profile cards.
    for (int i = 2; i >= 0; --i) {
        const QRectF card(3 + i * 3, 5 + i * 3, 20, 18);
        p.setPen(outlinePen(1.2));
        p.setBrush(i == 0 ? Paper : QColor(220, 222, 216));
        p.drawRoundedRect(card, 2, 2);
    }
    drawBars(p, QRectF(6, 9, 14, 11));
}

void glyphExtract(QPainter& p)
{
    // An open crate with an arrow leaving it.
    p.setPen(outlinePen());
    p.setBrush(verticalShade(QColor(190, 140, 80), 14, 30));
    p.drawRect(QRectF(4, 15, 20, 14));
    p.setBrush(QColor(160, 110, 60));
    p.drawPolygon(QPolygonF({QPointF(4, 15), QPointF(0.8, 10), QPointF(10, 10), QPointF(13, 15)}));
    p.drawPolygon(QPolygonF({QPointF(24, 15), QPointF(27.2, 10), QPointF(18, 10), QPointF(15, 15)}));
    drawArrow(p, QPointF(14, 22), QPointF(27, 3), Go);
}

void glyphBalance(QPainter& p)
{
    drawScales(p);
}

void glyphConfigureShip(QPainter& p)
{
    drawShip(p, QRectF(0, 0, 28, 28));
    drawWrench(p, QPointF(24, 24), QPointF(17, 17));
}

void glyphShip(QPainter& p)
{
    drawShip(p, QRectF(1, 1, 30, 30));
}

void glyphProfile(QPainter& p)
{
    drawPage(p, QRectF(5, 3, 22, 26));
    drawBars(p, QRectF(9, 11, 14, 15));
}

void glyphDetails(QPainter& p)
{
    drawPage(p, QRectF(3, 3, 20, 26));
    drawTextLines(p, QRectF(6, 9, 12, 16), 5);
    p.setPen(QPen(Outline, 4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(23, 23), QPointF(29, 29));
    p.setPen(outlinePen(1.6));
    p.setBrush(QColor(200, 230, 250, 200));
    p.drawEllipse(QPointF(19, 19), 6, 6);
}

void glyphSelectShip(QPainter& p)
{
    p.setPen(outlinePen(1.2));
    p.setBrush(Paper);
    p.drawRect(QRectF(2, 4, 28, 24));
    p.setBrush(QColor(150, 190, 240));
    p.drawRect(QRectF(2, 14, 28, 6));
    drawTextLines(p, QRectF(14, 6, 13, 20), 4);
    drawShip(p, QRectF(0, 6, 16, 16));
}

void glyphVariant(QPainter& p)
{
    drawShip(p, QRectF(0, 0, 20, 20));
    drawShip(p, QRectF(12, 12, 20, 20));
    p.setPen(QPen(QColor(90, 60, 140), 1.6, Qt::DashLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(6, 6, 20, 20), 0, 90 * 16);
}

void glyphDummy(QPainter& p)
{
    // Mount points on a frame: the dummies of a ship.
    p.setPen(QPen(Steel.darker(130), 1.6, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(6, 6, 20, 20));
    const QPointF points[] = {QPointF(6, 6), QPointF(26, 6), QPointF(6, 26), QPointF(26, 26),
                              QPointF(16, 16)};
    for (const QPointF& c : points) {
        p.setPen(outlinePen(1.2));
        p.setBrush(c == QPointF(16, 16) ? Stop : QColor(70, 130, 200));
        p.drawEllipse(c, 3.6, 3.6);
    }
}

void glyphLanguage(QPainter& p)
{
    p.setPen(outlinePen());
    p.setBrush(QColor(250, 250, 230));
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(2, 3, 26, 19), 5, 5);
    QPainterPath tail;
    tail.moveTo(8, 20);
    tail.lineTo(6, 29);
    tail.lineTo(15, 21);
    p.drawPath(bubble.united(tail));
    drawTextLines(p, QRectF(7, 7, 16, 11), 3, QColor(70, 110, 170));
}

// --- Race emblems ------------------------------------------------------------

void emblemBase(QPainter& p, const QColor& color)
{
    QPainterPath shield;
    shield.moveTo(16, 30);
    shield.cubicTo(5, 24, 3, 16, 3, 4);
    shield.lineTo(29, 4);
    shield.cubicTo(29, 16, 27, 24, 16, 30);
    p.setPen(outlinePen(1.8));
    p.setBrush(verticalShade(color, 4, 30));
    p.drawPath(shield);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 255, 255, 235));
}

void emblemArgon(QPainter& p)
{
    emblemBase(p, QColor(40, 90, 190));
    QPolygonF star;
    for (int i = 0; i < 10; ++i) {
        const qreal angle = -3.14159265 / 2 + i * 3.14159265 / 5;
        const qreal r = (i % 2) ? 4.2 : 10;
        star << QPointF(16 + r * std::cos(angle), 15 + r * std::sin(angle));
    }
    p.drawPolygon(star);
}

void emblemBoron(QPainter& p)
{
    emblemBase(p, QColor(30, 160, 170));
    p.setPen(QPen(QColor(255, 255, 255, 235), 2.6, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    for (const qreal y : {11.0, 18.0}) {
        QPainterPath wave;
        wave.moveTo(7, y);
        wave.cubicTo(10, y - 4, 13, y - 4, 16, y);
        wave.cubicTo(19, y + 4, 22, y + 4, 25, y);
        p.drawPath(wave);
    }
}

void emblemParanid(QPainter& p)
{
    emblemBase(p, QColor(120, 50, 160));
    p.drawPolygon(QPolygonF({QPointF(16, 6), QPointF(25, 23), QPointF(7, 23)}));
    p.setBrush(QColor(120, 50, 160));
    p.drawEllipse(QPointF(16, 17), 2.4, 2.4);
}

void emblemTeladi(QPainter& p)
{
    emblemBase(p, QColor(200, 150, 30));
    // A reptile eye.
    QPainterPath eye;
    eye.moveTo(6, 15);
    eye.quadTo(16, 4, 26, 15);
    eye.quadTo(16, 26, 6, 15);
    p.drawPath(eye);
    p.setBrush(QColor(40, 30, 10));
    p.drawEllipse(QPointF(16, 15), 1.8, 5.2);
}

void emblemSplit(QPainter& p)
{
    emblemBase(p, QColor(190, 40, 36));
    p.drawPolygon(QPolygonF({QPointF(20, 5), QPointF(9, 17), QPointF(15, 17), QPointF(11, 27),
                             QPointF(23, 13), QPointF(17, 13)}));
}

void emblemPirate(QPainter& p)
{
    emblemBase(p, QColor(50, 50, 56));
    p.drawEllipse(QRectF(10, 6, 12, 11));
    p.drawRect(QRectF(12.5, 15, 7, 4));
    p.setBrush(QColor(50, 50, 56));
    p.drawEllipse(QPointF(13.5, 11.5), 1.8, 2.0);
    p.drawEllipse(QPointF(18.5, 11.5), 1.8, 2.0);
    p.setPen(QPen(QColor(255, 255, 255, 235), 2.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(9, 20), QPointF(23, 26));
    p.drawLine(QPointF(23, 20), QPointF(9, 26));
}

void emblemFriend(QPainter& p)
{
    emblemBase(p, QColor(60, 150, 80));
    QPainterPath heart;
    heart.moveTo(16, 25);
    heart.cubicTo(4, 17, 7, 6, 16, 11);
    heart.cubicTo(25, 6, 28, 17, 16, 25);
    p.drawPath(heart);
}

void emblemXenon(QPainter& p)
{
    emblemBase(p, QColor(90, 100, 90));
    QPolygonF hexagon;
    for (int i = 0; i < 6; ++i) {
        const qreal angle = i * 3.14159265 / 3;
        hexagon << QPointF(16 + 8.5 * std::cos(angle), 15 + 8.5 * std::sin(angle));
    }
    p.drawPolygon(hexagon);
    p.setBrush(QColor(220, 30, 30));
    p.drawEllipse(QPointF(16, 15), 3.4, 3.4);
}

// --- Run-time list and menu icons -------------------------------------------

void iconAdd(QPainter& p)
{
    drawPlus(p, QPointF(16, 16), 13, Go);
}

void iconRemove(QPainter& p)
{
    p.setPen(QPen(Stop.darker(150), 1.0));
    p.setBrush(Stop);
    p.drawRect(QRectF(3, 12, 26, 8));
}

void iconEdit(QPainter& p)
{
    p.save();
    p.translate(16, 16);
    p.rotate(45);
    p.setPen(outlinePen(1.6));
    p.setBrush(QColor(240, 200, 60));
    p.drawRect(QRectF(-5, -15, 10, 22));
    p.setBrush(QColor(230, 190, 150));
    p.drawPolygon(QPolygonF({QPointF(-5, 7), QPointF(5, 7), QPointF(0, 15)}));
    p.setBrush(QColor(240, 140, 150));
    p.drawRect(QRectF(-5, -15, 10, 4));
    p.restore();
}

void iconTrash(QPainter& p)
{
    p.setPen(outlinePen(1.8));
    p.setBrush(verticalShade(Steel, 8, 30));
    p.drawPolygon(QPolygonF({QPointF(7, 9), QPointF(25, 9), QPointF(23, 30), QPointF(9, 30)}));
    p.drawRect(QRectF(4, 5, 24, 4));
    p.drawRect(QRectF(12, 2, 8, 3));
    p.setPen(QPen(Outline, 1.6));
    for (const qreal x : {12.5, 16.0, 19.5})
        p.drawLine(QPointF(x, 13), QPointF(x, 26));
}

void iconSwitch(QPainter& p)
{
    drawArrow(p, QPointF(4, 10), QPointF(29, 10), QColor(70, 130, 200), 4.0);
    drawArrow(p, QPointF(28, 22), QPointF(3, 22), QColor(220, 150, 40), 4.0);
}

void iconImport(QPainter& p)
{
    p.setPen(outlinePen(1.8));
    p.setBrush(verticalShade(Steel, 18, 30));
    p.drawPolygon(QPolygonF({QPointF(2, 18), QPointF(8, 18), QPointF(10, 23), QPointF(22, 23),
                             QPointF(24, 18), QPointF(30, 18), QPointF(30, 30), QPointF(2, 30)}));
    drawArrow(p, QPointF(16, 1), QPointF(16, 22), Go, 4.4);
}

void iconImportDir(QPainter& p)
{
    drawFolder(p, QRectF(1, 10, 28, 20), false);
    drawArrow(p, QPointF(21, 0), QPointF(21, 20), Go, 4.0);
}

void iconModel(QPainter& p)
{
    drawCube(p, QRectF(2, 2, 28, 28));
}

void iconSaveDir(QPainter& p)
{
    drawFolder(p, QRectF(1, 6, 30, 24), false);
    p.setPen(QPen(Folder.darker(200), 2.0));
    p.drawLine(QPointF(7, 20), QPointF(25, 20));
    p.drawLine(QPointF(7, 25), QPointF(20, 25));
}

void iconOther(QPainter& p)
{
    drawPage(p, QRectF(5, 2, 22, 28));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(110, 120, 130));
    for (const qreal x : {10.0, 16.0, 22.0})
        p.drawEllipse(QPointF(x, 19), 2.2, 2.2);
}

void iconScript(QPainter& p)
{
    drawPage(p, QRectF(4, 2, 24, 28));
    p.setPen(QPen(QColor(60, 120, 60), 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(13, 12), QPointF(9, 17), QPointF(13, 22)}));
    p.drawPolyline(QPolygonF({QPointF(19, 12), QPointF(23, 17), QPointF(19, 22)}));
}

void iconText(QPainter& p)
{
    drawPage(p, QRectF(4, 2, 24, 28));
    drawTextLines(p, QRectF(8, 10, 16, 17), 4, QColor(70, 110, 170));
}

void iconCockpit(QPainter& p)
{
    drawCockpit(p, QRectF(2, 5, 28, 24));
}

void iconTexture(QPainter& p)
{
    p.setPen(Qt::NoPen);
    const int cells = 4;
    const qreal size = 28.0 / cells;
    for (int y = 0; y < cells; ++y)
        for (int x = 0; x < cells; ++x) {
            p.setBrush(((x + y) % 2) ? QColor(200, 120, 60) : QColor(250, 220, 150));
            p.drawRect(QRectF(2 + x * size, 2 + y * size, size, size));
        }
    p.setPen(outlinePen(1.4));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(2, 2, 28, 28));
}

// --- Output ------------------------------------------------------------------

struct Picture
{
    QString file;
    int size;
    Glyph glyph;
};

QImage render(const Picture& picture)
{
    QImage image(picture.size, picture.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(picture.size / 32.0, picture.size / 32.0);
    picture.glyph(p);
    p.end();
    return image;
}

bool writeAll(const QString& dir, const std::vector<Picture>& pictures)
{
    bool ok = true;
    for (const Picture& picture : pictures) {
        const QString path = dir + "/" + picture.file;
        if (!render(picture).save(path, "PNG")) {
            QTextStream(stderr) << "cannot write " << path << "\n";
            ok = false;
        }
    }
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: hw_icongen <repository root>\n";
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);

    const int action = 32;
    const int emblem = 20;
    const std::vector<Picture> formImages = {
        {"new.png", action, glyphNew},
        {"open.png", action, glyphOpen},
        {"save.png", action, glyphSave},
        {"saveas.png", action, glyphSaveAs},
        {"loadship.png", action, glyphLoadShip},
        {"wizard.png", action, glyphWizard},
        {"exit.png", action, glyphExit},
        {"config.png", action, glyphConfig},
        {"profiles.png", action, glyphManageProfiles},
        {"extract.png", action, glyphExtract},
        {"balance.png", action, glyphBalance},
        {"configship.png", action, glyphConfigureShip},
        {"ship.png", action, glyphShip},
        {"profile.png", action, glyphProfile},
        {"details.png", action, glyphDetails},
        {"selectship.png", action, glyphSelectShip},
        {"variant.png", action, glyphVariant},
        {"dummy.png", action, glyphDummy},
        {"language.png", action, glyphLanguage},
        {"argon.png", emblem, emblemArgon},
        {"boron.png", emblem, emblemBoron},
        {"paranid.png", emblem, emblemParanid},
        {"teladi.png", emblem, emblemTeladi},
        {"split.png", emblem, emblemSplit},
        {"pirate.png", emblem, emblemPirate},
        {"friend.png", emblem, emblemFriend},
        {"xenon.png", emblem, emblemXenon},
    };
    const int list = 16;
    const std::vector<Picture> runTimeIcons = {
        {"add.png", list, iconAdd},
        {"remove.png", list, iconRemove},
        {"edit.png", list, iconEdit},
        {"trash.png", list, iconTrash},
        {"switch.png", list, iconSwitch},
        {"import.png", list, iconImport},
        {"importdir.png", list, iconImportDir},
        {"model.png", list, iconModel},
        {"savedir.png", list, iconSaveDir},
        {"other.png", list, iconOther},
        {"script.png", list, iconScript},
        {"text.png", list, iconText},
        {"ship.png", list, glyphShip},
        {"cockpit.png", list, iconCockpit},
        {"texture.png", list, iconTexture},
        {"profile.png", list, glyphProfile},
    };

    const bool ok =
        writeAll(root + "/src/forms/images", formImages) && writeAll(root + "/data/Icons", runTimeIcons);
    return ok ? 0 : 1;
}
