#pragma once
// A status bar without a window of its own: an ordered list of panels, painted on a target that
// somebody else owns. Panels are numbered from 1. Failures reach the caller as Failure.

#include "statusbar/DrawingTarget.h"
#include "statusbar/IconSource.h"
#include "statusbar/PanelRef.h"
#include "statusbar/StatusPanel.h"

#include <QString>

#include <optional>
#include <variant>
#include <vector>

inline constexpr long kTooManyPanelsError = qint32(0x8004041Bu);
inline constexpr long kInvalidPanelIndexError = qint32(0x8004041Au);
inline constexpr long kImageListError = qint32(0x80040419u);
inline constexpr long kInvalidObjectError = 9;
inline constexpr qint32 kMaxPanels = 255;

// What ImageList set accepts: an image list object or a handle. Anything else (nothing, a text) fails.
using ImageListValue = std::variant<std::monostate, ImageListObject*, qint32, QString>;

class cNoStatusBar {
public:
    // Panel icons are taken from and given back to `icons`, which must outlive the bar.
    explicit cNoStatusBar(IconSource& icons);
    ~cNoStatusBar();
    cNoStatusBar(const cNoStatusBar&) = delete;
    cNoStatusBar& operator=(const cNoStatusBar&) = delete;

    bool SimpleMode() const { return simpleMode_; }
    void SimpleMode(bool bSimple);
    QString SimpleText() const { return simpleText_; }
    void SimpleText(const QString& sText);
    bool SizeGrip() const { return sizeGrip_; }
    void SizeGrip(bool bSizeGrip);

    // Gives the new panel's position.
    qint32 AddPanel(qint32 eStyle = 0, const QString& sText = {}, qint32 iImgIndex = -1, qint32 lMinWidth = 64,
                    bool bSpring = false, bool bFitContents = false, qint32 lItemData = 0,
                    const QString& sKey = {}, const std::optional<PanelRef>& vKeyBefore = std::nullopt);
    void Draw();
    void RemovePanel(const PanelRef& vKey);
    void SetLeftTopOffsets(qint32 lLeft, qint32 lTop);
    void ImageList(const ImageListValue& vThis);
    // Binds the bar to `objThis`, which must outlive it or be replaced by another Create.
    void Create(DrawingTarget* objThis);
    void Font(const BarFont& fntThis);
    BarFont Font() const;
    // Twips, at the screen's Y resolution; the other form takes the resolution.
    qint32 Height() const;
    qint32 Height(double dpiY) const;
    qint32 PanelCount() const { return qint32(panels_.size()); }
    BarRect GetPanelRect(const PanelRef& vKey) const;

    QString PanelKey(qint32 lIndex) const;
    void PanelKey(qint32 lIndex, const PanelRef& vKey);
    qint32 PanelIndex(const PanelRef& vKey) const;
    void PanelText(const PanelRef& vKey, const QString& sText);
    QString PanelText(const PanelRef& vKey) const;
    // PanelText set, and a panel too narrow for the new text fits to its contents from then on: it widens
    // to what the text needs and never narrows again, so the panels beside it don't move with every change.
    void PanelTextWiden(const PanelRef& vKey, const QString& sText);
    // PanelText set (or PanelTextWiden for `widen`) without painting: the panel is painted by the next
    // DrawPending or Draw, so a window can paint once for many changes. False when the text is the same.
    bool PanelTextLater(const PanelRef& vKey, const QString& sText, bool widen);
    // Paints the panels whose texts changed since the last painting: each alone, or the whole bar when a
    // panel widened. Gives whether anything was painted.
    bool DrawPending();
    void PanelSpring(const PanelRef& vKey, bool bState);
    bool PanelSpring(const PanelRef& vKey) const;
    void PanelFitToContents(const PanelRef& vKey, bool bState);
    bool PanelFitToContents(const PanelRef& vKey) const;
    qint32 PanelIcon(const PanelRef& vKey) const;
    void PanelIcon(const PanelRef& vKey, qint32 iImgIndex);
    IconHandle PanelhIcon(const PanelRef& vKey) const;
    void PanelhIcon(const PanelRef& vKey, IconHandle hIcon);
    void PanelStyle(const PanelRef& vKey, qint32 eStyle);
    qint32 PanelStyle(const PanelRef& vKey) const;
    qint32 PanelMinWidth(const PanelRef& vKey) const;
    qint32 PanelIdealWidth(const PanelRef& vKey) const;
    void PanelIdealWidth(const PanelRef& vKey, qint32 lWidth);

private:
    StatusPanel& panel(const PanelRef& vKey) { return panels_[size_t(PanelIndex(vKey) - 1)]; }
    const StatusPanel& panel(const PanelRef& vKey) const { return panels_[size_t(PanelIndex(vKey) - 1)]; }
    void checkPosition(qint32 lIndex) const;
    void destroyIcon(StatusPanel& p);
    void measureBarHeight();
    void MeasurePanels(qint32 first, qint32 last);
    void LayoutPanels();
    void drawGrip(const BarRect& client);
    void paintPanel(const StatusPanel& p, BarRect r);
    bool drawOnlyPanel(qint32 position);

    IconSource& icons_;
    DrawingTarget* target_ = nullptr;
    std::vector<StatusPanel> panels_;
    bool sizeGrip_ = false;
    ImageListHandle imageList_ = 0;
    qint32 iconSize_ = 0;
    qint32 leftOffset_ = 0, topOffset_ = 0;
    qint32 barHeight_ = 0;
    bool simpleMode_ = false;
    QString simpleText_;
    // What the last whole Draw left on the target, so that a text change can repaint one panel alone.
    struct Drawn {
        BarRect client;
        std::vector<BarRect> rects;
        qint32 iconSize = 0;
        BarFont font;
    };
    std::optional<Drawn> drawn_;
    std::vector<std::pair<qint32, bool>> pending_;  // position, widen
};
