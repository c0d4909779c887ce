#pragma once

#include "platform/linux/screen/ScreenClient.h"

#include <cstdint>
#include <memory>

namespace zm::test {

class Unit;

/** Plays the decoder's part on the screen: gives it the same picture for every clip. */
class Decoder {
public:
    explicit Decoder(const Unit& unit);

    /**
     * A frame of bars from white to black over the whole screen. Only what comes after capture was asked for
     * is shown.
     */
    void showBars();
    /** A frame of one colour, 0xAARRGGBB. */
    void showColor(uint32_t color);

private:
    template <class ColorOfColumn>
    void show(ColorOfColumn color);

    std::unique_ptr<ScreenClient> m_client;
    ScreenWindow* m_window = nullptr;
};

} // namespace zm::test
