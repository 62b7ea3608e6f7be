#pragma once
// The frame's status picture (`picStatus`): a widget that shows what the bar painted into its pixmap.
// Its paint and resize reach the frame through the signals Paint and Resized; the frame calls Draw.

#include "statusbar/IconTable.h"
#include "statusbar/PixmapTarget.h"

#include <QWidget>

class StatusPicture : public QWidget {
    Q_OBJECT
public:
    explicit StatusPicture(QWidget* parent = nullptr);

    PixmapTarget& target() { return target_; }
    // The icons the target can draw; give it to the bar, which must not outlive this widget.
    IconTable& icons() { return icons_; }

signals:
    // Every paint starts with this: the frame paints the changes it held back.
    void Painting();
    // A paint with nothing new in the picture: the frame draws the bar.
    void Paint();
    // The picture has its new size and is blank: the frame draws the bar.
    void Resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    IconTable icons_;
    PixmapTarget target_;
    bool painting_ = false;
};
