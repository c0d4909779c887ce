#pragma once

#include "base/Rect.h"
#include "platform/linux/toolkit/Scene.h"
#include "services/bench/screen/CarStatus.h"
#include "services/bench/screen/Compositor.h"

#include <memory>
#include <string>

namespace zm::bench::screen {

/**
 * The pages that stand for the other applications of the head unit, laid out by a resource file as the disc player's
 * are: they have its colours and status bar and speak its language. On the loop's thread.
 */
class PlainPages : private SceneListener {
public:
    /** The files are read when the first page is drawn; a fault in them is named on standard error, once. */
    PlainPages(std::string resourceFile, std::string fontDir, ScreenSize screen);

    /** The area of every page that leads back to the disc player. */
    Rect wayBack() const;

    void setLanguage(const std::string& code) { m_language = code; }
    void setTheme(const std::string& name) { m_theme = name; }
    void setStatus(const CarStatus& status) { m_status = status; }
    Image draw(const std::string& application);

private:
    void itemClicked(int window, int control, int state) override;
    void listScrolled(int window, int kind, _tagList_Info& info) override;
    void load();

    const std::string m_resourceFile;
    const std::string m_fontDir;
    const ScreenSize m_screen;
    std::string m_language = "en";
    std::string m_theme = "night";
    CarStatus m_status;
    bool m_loaded = false;
    std::unique_ptr<Scene> m_scene; ///< null if the files are faulty
};

} // namespace zm::bench::screen
