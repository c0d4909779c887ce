#include "services/bench/display/Keyboard.h"

#include <SDL2/SDL.h>

#include <array>
#include <cctype>
#include <string_view>

namespace zm::bench::display {

namespace {

struct NamedKey {
    SDL_Keycode code;
    std::string_view name;
};

// Keys that bring no character; the others come as text, whatever the layout makes of them.
constexpr std::array Keys = {
    NamedKey{SDLK_RETURN, "Enter"},
    NamedKey{SDLK_KP_ENTER, "Enter"},
    NamedKey{SDLK_LEFT, "ArrowLeft"},
    NamedKey{SDLK_RIGHT, "ArrowRight"},
    NamedKey{SDLK_UP, "ArrowUp"},
    NamedKey{SDLK_DOWN, "ArrowDown"},
    NamedKey{SDLK_ESCAPE, "Escape"},
    NamedKey{SDLK_PAGEUP, "PageUp"},
    NamedKey{SDLK_PAGEDOWN, "PageDown"},
    NamedKey{SDLK_AUDIOPLAY, "MediaPlayPause"},
    NamedKey{SDLK_AUDIOSTOP, "MediaStop"},
    NamedKey{SDLK_AUDIONEXT, "MediaTrackNext"},
    NamedKey{SDLK_AUDIOPREV, "MediaTrackPrevious"},
    NamedKey{SDLK_AUDIOFASTFORWARD, "MediaFastForward"},
    NamedKey{SDLK_AUDIOREWIND, "MediaRewind"},
    NamedKey{SDLK_VOLUMEUP, "AudioVolumeUp"},
    NamedKey{SDLK_VOLUMEDOWN, "AudioVolumeDown"},
    NamedKey{SDLK_MUTE, "AudioVolumeMute"},
    NamedKey{SDLK_AUDIOMUTE, "AudioVolumeMute"},
};

} // namespace

std::string pressedKey(const SDL_Event& event) {
    if (event.type == SDL_TEXTINPUT) {
        const std::string_view text(event.text.text);
        return text.size() == 1 ? std::string(1, static_cast<char>(std::tolower(text[0]))) : std::string();
    }
    constexpr unsigned others = KMOD_CTRL | KMOD_ALT | KMOD_GUI;
    if (event.type != SDL_KEYDOWN || event.key.repeat || (event.key.keysym.mod & others)) {
        return {};
    }
    for (const auto& key : Keys) {
        if (key.code == event.key.keysym.sym) {
            return std::string(key.name);
        }
    }
    return {};
}

} // namespace zm::bench::display
