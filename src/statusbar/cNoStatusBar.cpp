#include "statusbar/cNoStatusBar.h"

#include "platform/Failure.h"
#include "platform/SystemColors.h"
#include "platform/Twips.h"
#include "core/Settings.h"
#include "statusbar/StatusLayout.h"

#include <utility>

namespace {

QString barSource() { return applicationName() + QStringLiteral(".vbalStatusBar"); }

Failure invalidIndex(const QString& given) {
    return Failure(kInvalidPanelIndexError, QStringLiteral("Invalid Panel Index: ") + given, barSource());
}

}  // namespace

cNoStatusBar::cNoStatusBar(IconSource& icons) : icons_(icons) {}

cNoStatusBar::~cNoStatusBar() {
    for (StatusPanel& p : panels_)
        destroyIcon(p);
}

void cNoStatusBar::destroyIcon(StatusPanel& p) {
    if (p.hIcon != 0) {
        icons_.destroyIcon(p.hIcon);
        p.hIcon = 0;
    }
}

void cNoStatusBar::SimpleMode(bool bSimple) {
    simpleMode_ = bSimple;
    Draw();
}

void cNoStatusBar::SimpleText(const QString& sText) {
    simpleText_ = sText;
    if (simpleMode_)
        Draw();
}

void cNoStatusBar::SizeGrip(bool bSizeGrip) {
    sizeGrip_ = bSizeGrip;
    Draw();
}

qint32 cNoStatusBar::AddPanel(qint32 eStyle, const QString& sText, qint32 iImgIndex, qint32 lMinWidth, bool bSpring,
                              bool bFitContents, qint32 lItemData, const QString& sKey,
                              const std::optional<PanelRef>& vKeyBefore) {
    if (PanelCount() >= kMaxPanels)
        throw Failure(kTooManyPanelsError, QStringLiteral("Too many panels."), barSource());
    // Resolved before anything changes, so a bad value leaves the list as it was.
    const qint32 position = vKeyBefore ? PanelIndex(*vKeyBefore) : PanelCount() + 1;
    // A fresh record: the panel it pushes along keeps its own icon.
    panels_.insert(panels_.begin() + (position - 1), StatusPanel{});

    if (bSpring) {
        for (StatusPanel& p : panels_)
            p.bSpring = false;
    }
    StatusPanel& p = panels_[size_t(position - 1)];
    p.eStyle = eStyle;
    p.bFitContents = bFitContents;
    p.bSpring = bSpring;
    p.lItemData = lItemData;
    p.iImgIndex = iImgIndex;
    p.lMinWidth = lMinWidth;
    p.sKey = sKey;
    p.sText = sText;

    MeasurePanels(position, -1);
    LayoutPanels();
    PanelText(position, sText);
    PanelIcon(position, iImgIndex);
    Draw();
    return position;
}

void cNoStatusBar::RemovePanel(const PanelRef& vKey) {
    const qint32 position = PanelIndex(vKey);
    // Positions behind it move; the Draw below paints every panel anyway.
    pending_.clear();
    destroyIcon(panels_[size_t(position - 1)]);
    panels_.erase(panels_.begin() + (position - 1));
    Draw();
}

void cNoStatusBar::SetLeftTopOffsets(qint32 lLeft, qint32 lTop) {
    leftOffset_ = lLeft;
    topOffset_ = lTop;
}

void cNoStatusBar::ImageList(const ImageListValue& vThis) {
    imageList_ = 0;
    if (const auto* object = std::get_if<ImageListObject*>(&vThis); object && *object) {
        // An object that cannot make its list leaves the bar without one, and says nothing.
        ImageListHandle handle = 0;
        try {
            (*object)->drawFirstImage();
            handle = (*object)->hImageList();
        } catch (const Failure&) {
            return;
        }
        imageList_ = handle;
        iconSize_ = icons_.iconWidth(imageList_);
    } else if (const auto* handle = std::get_if<qint32>(&vThis)) {
        imageList_ = ImageListHandle(*handle);
        iconSize_ = icons_.iconWidth(imageList_);
    } else {
        throw Failure(kImageListError,
                      QStringLiteral("ImageList property expects ImageList object or long hImageList handle."),
                      barSource());
    }
}

void cNoStatusBar::Create(DrawingTarget* objThis) {
    target_ = objThis;
    drawn_.reset();
    bool usable = target_ != nullptr;
    if (usable) {
        try {
            (void)target_->scaleWidth();
            (void)target_->scaleHeight();
        } catch (const Failure&) {
            usable = false;
        }
    }
    if (!usable) {
        target_ = nullptr;
        throw Failure(kInvalidObjectError, QStringLiteral("Invalid object passed to Create."),
                      applicationName() + QStringLiteral(".cNoStatusBar"));
    }
    measureBarHeight();
}

void cNoStatusBar::measureBarHeight() {
    barHeight_ = barHeightFor(target_->measureText(QStringLiteral("Xy")).height());
}

void cNoStatusBar::Font(const BarFont& fntThis) {
    target_->setFont(fntThis);
    measureBarHeight();
}

BarFont cNoStatusBar::Font() const { return target_->font(); }

qint32 cNoStatusBar::Height() const { return Height(screenDpiY()); }

qint32 cNoStatusBar::Height(double dpiY) const { return heightInTwips(barHeight_, dpiY); }

BarRect cNoStatusBar::GetPanelRect(const PanelRef& vKey) const { return panel(vKey).rect; }

void cNoStatusBar::checkPosition(qint32 lIndex) const {
    if (lIndex < 1 || lIndex > PanelCount())
        throw invalidIndex(QString::number(lIndex));
}

QString cNoStatusBar::PanelKey(qint32 lIndex) const {
    checkPosition(lIndex);
    return panels_[size_t(lIndex - 1)].sKey;
}

void cNoStatusBar::PanelKey(qint32 lIndex, const PanelRef& vKey) {
    checkPosition(lIndex);
    panels_[size_t(lIndex - 1)].sKey = vKey.text();
}

qint32 cNoStatusBar::PanelIndex(const PanelRef& vKey) const {
    if (const auto position = vKey.position()) {
        if (*position > 0 && *position <= PanelCount())
            return qint32(*position);
        throw invalidIndex(vKey.text());
    }
    const QString key = vKey.text();
    for (size_t i = 0; i < panels_.size(); ++i) {
        if (panels_[i].sKey == key)
            return qint32(i + 1);
    }
    throw invalidIndex(key);
}

void cNoStatusBar::PanelText(const PanelRef& vKey, const QString& sText) {
    const qint32 position = PanelIndex(vKey);
    QString& text = panels_[size_t(position - 1)].sText;
    const bool same = text == sText;
    text = sText;
    // A caret move sets two panel texts: repainting the whole bar for each was most of its cost.
    if (!drawOnlyPanel(same ? 0 : position))
        Draw();
}

QString cNoStatusBar::PanelText(const PanelRef& vKey) const { return panel(vKey).sText; }

void cNoStatusBar::PanelTextWiden(const PanelRef& vKey, const QString& sText) {
    StatusPanel& p = panel(vKey);
    p.sText = sText;
    const qint32 now = p.bFitContents ? p.lIdealWidth : p.lMinWidth;
    const qint32 needed = idealWidth(target_->measureText(sText).width(), p.lMinWidth);
    if (needed > now) {
        p.lIdealWidth = needed;
        p.bFitContents = true;
        Draw();
        return;
    }
    if (!drawOnlyPanel(PanelIndex(vKey)))
        Draw();
}

bool cNoStatusBar::PanelTextLater(const PanelRef& vKey, const QString& sText, bool widen) {
    const qint32 position = PanelIndex(vKey);
    StatusPanel& p = panels_[size_t(position - 1)];
    if (p.sText == sText)
        return false;
    p.sText = sText;
    for (auto& [at, w] : pending_) {
        if (at == position) {
            w = w || widen;
            return true;
        }
    }
    pending_.emplace_back(position, widen);
    return true;
}

bool cNoStatusBar::DrawPending() {
    if (pending_.empty())
        return false;
    bool whole = false;
    for (const auto& [position, widen] : pending_) {
        if (!widen || position > PanelCount())
            continue;
        StatusPanel& p = panels_[size_t(position - 1)];
        const qint32 now = p.bFitContents ? p.lIdealWidth : p.lMinWidth;
        const qint32 needed = idealWidth(target_->measureText(p.sText).width(), p.lMinWidth);
        if (needed > now) {
            p.lIdealWidth = needed;
            p.bFitContents = true;
            whole = true;
        }
    }
    const auto pending = std::exchange(pending_, {});
    for (const auto& [position, widen] : pending) {
        if (whole || position > PanelCount() || !drawOnlyPanel(position)) {
            Draw();
            break;
        }
    }
    return true;
}

void cNoStatusBar::PanelSpring(const PanelRef& vKey, bool bState) {
    const qint32 position = PanelIndex(vKey);
    if (panels_[size_t(position - 1)].bSpring == bState)
        return;
    for (StatusPanel& p : panels_)
        p.bSpring = false;
    panels_[size_t(position - 1)].bSpring = bState;
    MeasurePanels(position, -1);
    LayoutPanels();
}

bool cNoStatusBar::PanelSpring(const PanelRef& vKey) const { return panel(vKey).bSpring; }

void cNoStatusBar::PanelFitToContents(const PanelRef& vKey, bool bState) {
    const qint32 position = PanelIndex(vKey);
    StatusPanel& p = panels_[size_t(position - 1)];
    if (p.bFitContents == bState)
        return;
    p.bFitContents = bState;
    MeasurePanels(position, -1);
    LayoutPanels();
}

bool cNoStatusBar::PanelFitToContents(const PanelRef& vKey) const { return panel(vKey).bFitContents; }

qint32 cNoStatusBar::PanelIcon(const PanelRef& vKey) const { return panel(vKey).iImgIndex; }

void cNoStatusBar::PanelIcon(const PanelRef& vKey, qint32 iImgIndex) {
    StatusPanel& p = panel(vKey);
    destroyIcon(p);
    p.iImgIndex = iImgIndex;
    if (iImgIndex > -1)
        p.hIcon = icons_.getIcon(imageList_, iImgIndex);
    Draw();
}

IconHandle cNoStatusBar::PanelhIcon(const PanelRef& vKey) const { return panel(vKey).hIcon; }

void cNoStatusBar::PanelhIcon(const PanelRef& vKey, IconHandle hIcon) {
    StatusPanel& p = panel(vKey);
    // Handing a panel the icon it already owns must not destroy it under its feet.
    if (p.hIcon != hIcon) {
        destroyIcon(p);
        p.hIcon = hIcon;
    }
    Draw();
}

void cNoStatusBar::PanelStyle(const PanelRef& vKey, qint32 eStyle) {
    panel(vKey).eStyle = eStyle;
    Draw();
}

qint32 cNoStatusBar::PanelStyle(const PanelRef& vKey) const { return panel(vKey).eStyle; }

qint32 cNoStatusBar::PanelMinWidth(const PanelRef& vKey) const { return panel(vKey).lMinWidth; }

qint32 cNoStatusBar::PanelIdealWidth(const PanelRef& vKey) const { return panel(vKey).lIdealWidth; }

void cNoStatusBar::PanelIdealWidth(const PanelRef& vKey, qint32 lWidth) {
    panel(vKey).lIdealWidth = lWidth;
    LayoutPanels();
}

void cNoStatusBar::MeasurePanels(qint32 first, qint32 last) {
    if (panels_.empty())
        return;
    if (last < first)
        last = first;
    for (qint32 i = first; i <= last; ++i) {
        StatusPanel& p = panels_[size_t(i - 1)];
        p.lIdealWidth = idealWidth(target_->measureText(p.sText).width(), p.lMinWidth);
    }
}

void cNoStatusBar::LayoutPanels() {
    if (panels_.empty())
        return;
    BarRect client = target_->clientRect();
    client.left += leftOffset_;
    client.top += topOffset_;
    layoutPanels(panels_, client, iconSize_);
}

void cNoStatusBar::Draw() {
    const BarRect client = target_->clientRect();
    target_->fillRect(client, systemColor(kColorButtonFace));
    LayoutPanels();

    drawn_.reset();
    pending_.clear();
    if (simpleMode_) {
        target_->drawText(simpleText_, client, kTextPanel);
    } else {
        for (const StatusPanel& p : panels_) {
            bool last = false;
            paintPanel(p, paintRect(p.rect, client.right, last));
            if (last)
                break;
        }
        Drawn d{client, {}, iconSize_, target_->font()};
        for (const StatusPanel& p : panels_)
            d.rects.push_back(p.rect);
        drawn_ = std::move(d);
    }
    if (sizeGrip_)
        drawGrip(client);
}

void cNoStatusBar::paintPanel(const StatusPanel& p, BarRect r) {
    if (p.hIcon == 0) {
        target_->drawPanel(r, p.sText, p.eStyle);
        return;
    }
    target_->drawPanel(r, QString(), p.eStyle);
    const BarPoint at = iconOrigin(r, iconSize_);
    target_->drawIcon(at.x, at.y, p.hIcon, iconSize_, iconSize_);
    if (!p.sText.isEmpty()) {
        r.left += iconSize_ + 4;
        target_->drawText(p.sText, r, kTextPanel);
    }
}

// Paints panel `position` (none for 0) over what the last whole Draw left, with the same calls that Draw
// makes for it. False when that picture no longer holds: the layout, the font or the surface has changed
// since, or the bar shows its simple text. Then only a whole Draw shows the bar right.
bool cNoStatusBar::drawOnlyPanel(qint32 position) {
    if (!drawn_ || simpleMode_ || drawn_->rects.size() != panels_.size())
        return false;
    const BarRect client = target_->clientRect();
    if (client != drawn_->client || iconSize_ != drawn_->iconSize || !(target_->font() == drawn_->font))
        return false;
    LayoutPanels();
    for (size_t i = 0; i < panels_.size(); ++i) {
        if (panels_[i].rect != drawn_->rects[i])
            return false;
    }
    for (qint32 i = 1; i <= position; ++i) {
        bool last = false;
        const BarRect r = paintRect(panels_[size_t(i - 1)].rect, client.right, last);
        if (i == position) {
            target_->fillRect(r, systemColor(kColorButtonFace));
            paintPanel(panels_[size_t(i - 1)], r);
            // The grip lies over the corner: a panel that reaches it is painted under it again.
            const qint32 height = client.bottom - client.top;
            if (sizeGrip_ && r.right > client.right - 2 * height)
                drawGrip(client);
        }
        if (last)
            break;
    }
    return true;
}

void cNoStatusBar::drawGrip(const BarRect& client) {
    const BarFont saved = target_->font();
    BarFont glyphs = saved;
    glyphs.name = QString::fromLatin1(kGripFontName);
    glyphs.size = saved.size * 4 / 3;
    target_->setFont(glyphs);
    target_->setForeColor(systemColor(kColor3DHighlight));
    const BarRect corner = offsetRect(client, -2, -1);
    target_->drawText(QString::fromLatin1(kGripHighlightGlyph), corner, kTextGrip);
    target_->setForeColor(systemColor(kColorShadow));
    target_->drawText(QString::fromLatin1(kGripShadowGlyph), corner, kTextGrip);
    target_->setFont(saved);
    target_->setForeColor(systemColor(kColorWindowText));
}
