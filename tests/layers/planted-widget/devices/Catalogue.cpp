#include "devices/Catalogue.h"
#include <QWidget>
