#pragma once

#include "pictures/Picture.h"

namespace fxhost {

// The picture at a lower resolution, as a host hands it over for previews: each pixel is the mean of a block
// of across x down pixels (fewer at the right and lower edge), colours weighted by alpha. Extents are rounded
// up.
Picture Reduced(const Picture& picture, unsigned across, unsigned down);

} // namespace fxhost
