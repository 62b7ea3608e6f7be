#pragma once
// Icons and image lists of pixmaps, behind handles. The table issues every handle once and never again,
// so a handle that is used after it was destroyed finds nothing.

#include "statusbar/IconSource.h"

#include <QList>
#include <QPixmap>

#include <map>

class IconTable : public IconSource {
public:
    IconHandle getIcon(ImageListHandle list, int index) override;
    int iconWidth(ImageListHandle list) override;
    void destroyIcon(IconHandle icon) override;

    // A new icon of the caller's, e.g. for PanelhIcon set; the one who gets the handle destroys it.
    IconHandle addIcon(const QPixmap& pixmap);
    // Null for a handle that is not (or no longer) an icon.
    const QPixmap* icon(IconHandle icon) const;
    qsizetype liveIcons() const { return qsizetype(icons_.size()); }
    // Destroys of handles that were never issued or already destroyed.
    int strayDestroys() const { return strayDestroys_; }

    ImageListHandle addImageList(const QList<QPixmap>& images);
    void removeImageList(ImageListHandle list);

private:
    quint32 next_ = 0;
    std::map<IconHandle, QPixmap> icons_;
    std::map<ImageListHandle, QList<QPixmap>> lists_;
    int strayDestroys_ = 0;
};

// An image list object of pixmaps: its handle exists once its first image has been drawn.
class PixmapImageList : public ImageListObject {
public:
    PixmapImageList(IconTable& table, QList<QPixmap> images) : table_(table), images_(std::move(images)) {}
    ~PixmapImageList() override;
    PixmapImageList(const PixmapImageList&) = delete;
    PixmapImageList& operator=(const PixmapImageList&) = delete;

    void drawFirstImage() override;
    ImageListHandle hImageList() const override { return handle_; }

private:
    IconTable& table_;
    QList<QPixmap> images_;
    ImageListHandle handle_ = 0;
};
