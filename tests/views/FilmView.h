#pragma once

#include "tests/support/Decoder.h"
#include "tests/views/FolderView.h"

namespace zm::test {

/** A film of one colour that no page has, and a look at how much of it the driver sees. */
class FilmView : public FolderView {
protected:
    using FolderView::FolderView;

    /** Pixels of the composed screen that show the film as it plays on,
     * also through something translucent. */
    int filmPixels() {
        m_decoder.showColor(FILM);
        unit.settle();
        const Image picture = unit.picture();
        int count = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const uint8_t* pixel = picture.at(x, y); // B, G, R
                count += pixel[0] > pixel[1] + TINGE && pixel[2] > pixel[1] + TINGE;
            }
        }
        return count;
    }
    /** Of a film that nothing lies over. */
    static constexpr int WHOLE_SCREEN = ScreenSize().width * ScreenSize().height;

    void drive() { unit.device(DEV_STATUS_PARKING, 0); }
    void park() { unit.device(DEV_STATUS_PARKING, 1); }
    void showAnyway() { unit.touchItem(unit.main, WND_PARKING, PARK_CTRL_CONTINUE); }

private:
    static constexpr uint32_t FILM = 0xFFFF00FF;
    static constexpr int TINGE = 12; ///< what a tenth of the film adds to a page's colours

    Decoder m_decoder{unit};
};

} // namespace zm::test
