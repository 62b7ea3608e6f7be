#pragma once
// Icons and image lists as handles. A handle is issued by an IconSource and must go back to it exactly
// once; a panel that holds one owns it.

#include <QtGlobal>

using IconHandle = quint32;       // 0 = no icon
using ImageListHandle = quint32;  // 0 = no image list

class IconSource {
public:
    virtual ~IconSource() = default;
    // A new icon made from image `index` of the list, owned by the caller; 0 if there is no such image.
    virtual IconHandle getIcon(ImageListHandle list, int index) = 0;
    // The width of the list's images in pixels; 0 for an unknown list.
    virtual int iconWidth(ImageListHandle list) = 0;
    virtual void destroyIcon(IconHandle icon) = 0;
};

// An image list as an object: it makes its handle only once one of its images has been drawn.
class ImageListObject {
public:
    virtual ~ImageListObject() = default;
    // May throw Failure, e.g. for a list without images.
    virtual void drawFirstImage() = 0;
    virtual ImageListHandle hImageList() const = 0;
};
