#pragma once

#include "base/Rect.h"
#include "platform/linux/toolkit/PictureFile.h"
#include "platform/linux/toolkit/Pictures.h"

#include <vector>

namespace zm {

/** Pictures of files in the sizes in which they were drawn last: scaling takes longer than drawing. */
class ScaledPictures {
public:
    struct Fitted {
        cairo_surface_t* surface; ///< belongs to this object; valid until the next call
        Rect box;
    };
    /** `picture` in its own shape in the middle of `place`. */
    Fitted fitted(const PictureFilePtr& picture, const Rect& place);

private:
    struct Kept {
        PictureFilePtr picture; ///< held, so that no other one gets its address
        int width;
        int height;
        SurfacePtr surface;
    };
    std::vector<Kept> m_kept;
};

} // namespace zm
