#pragma once
// The images of the project tree and the browse dialog: one strip of 16 x 16
// images drawn here, magenta (255, 0, 255) being the transparent colour.

#include "core/NodeImageIds.h"

#include <QIcon>
#include <QImage>

namespace rqshell {

namespace image = rq::image;

// The strip as drawn, with the magenta background still in place.
QImage nodeImageStrip();
// Image `index` of the strip with magenta made transparent.
QIcon nodeIcon(int index);

} // namespace rqshell
