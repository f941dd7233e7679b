#pragma once

#include <QGraphicsScene>

/// A scene for reports; it adds nothing to the toolkit's.
class ReportScene : public QGraphicsScene
{
public:
    using QGraphicsScene::QGraphicsScene;
};
