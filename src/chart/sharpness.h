#pragma once

#include <QtGlobal>

class QPainter;
class QPen;

/// How many pixels of the device cover one unit of what is painted: 1 in a view at 100 %, 2 at
/// 200 %. On paper as many as make 300 to the inch.
qreal getPixelsPerUnit(const QPainter *painter);

/// False on paper, where drawings stay drawings.
bool isPainterOnPixels(const QPainter *painter);

/// As a screen shows thin dashes: there, they have no caps, which paper draws into the gaps.
QPen keepThinDashesApart(QPen pen, const QPainter *painter);
