#include "statusbar/IconTable.h"

#include "platform/Failure.h"

IconHandle IconTable::getIcon(ImageListHandle list, int index) {
    const auto it = lists_.find(list);
    if (it == lists_.end() || index < 0 || index >= it->second.size())
        return 0;
    return addIcon(it->second.at(index));
}

int IconTable::iconWidth(ImageListHandle list) {
    const auto it = lists_.find(list);
    if (it == lists_.end() || it->second.isEmpty())
        return 0;
    const QPixmap& first = it->second.front();
    return qRound(first.width() / first.devicePixelRatio());
}

void IconTable::destroyIcon(IconHandle icon) {
    if (icons_.erase(icon) == 0)
        ++strayDestroys_;
}

IconHandle IconTable::addIcon(const QPixmap& pixmap) {
    const IconHandle h = ++next_;
    icons_.emplace(h, pixmap);
    return h;
}

const QPixmap* IconTable::icon(IconHandle icon) const {
    const auto it = icons_.find(icon);
    return it == icons_.end() ? nullptr : &it->second;
}

ImageListHandle IconTable::addImageList(const QList<QPixmap>& images) {
    const ImageListHandle h = ++next_;
    lists_.emplace(h, images);
    return h;
}

void IconTable::removeImageList(ImageListHandle list) { lists_.erase(list); }

PixmapImageList::~PixmapImageList() {
    if (handle_ != 0)
        table_.removeImageList(handle_);
}

void PixmapImageList::drawFirstImage() {
    if (images_.isEmpty())
        throw Failure(35600, QStringLiteral("Index out of bounds"));
    if (handle_ == 0)
        handle_ = table_.addImageList(images_);
}
