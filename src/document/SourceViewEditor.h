#pragma once
// The QScintilla editor inside a SourceView, for the control's own files and tests only: everything else
// reaches the control through SourceView. It hands its key, mouse and paint events to the control's
// handling, which delivers the control's events around QScintilla's own.

#include "document/SourceView.h"

#include <Qsci/qsciscintilla.h>

class SourceViewEditor : public QsciScintilla {
    Q_OBJECT
public:
    explicit SourceViewEditor(SourceView& view);

    static SourceViewEditor& of(SourceView& view) { return *view.editor_; }
    static const SourceViewEditor& of(const SourceView& view) { return *view.editor_; }
    SourceView& view() const { return view_; }

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    SourceView& view_;
};
