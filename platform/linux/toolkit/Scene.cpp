#include "platform/linux/toolkit/SceneImpl.h"
#include "platform/linux/toolkit/Tint.h"
#include "platform/linux/toolkit/UiMng.h"

namespace zm {

Scene::Impl::Impl(Resource resource, std::unique_ptr<FontBook> fontBook, const ScreenFit& fit,
                  SceneListener& listener)
    : fonts(std::move(fontBook)), pages(std::move(resource), fit), motion(pages, listener),
      touch(pages, motion, listener), painter(std::in_place, pages, motion, *fonts),
      wndMng(std::make_unique<CUIWndMng>(std::make_unique<CUIWndMng::Impl>(pages, motion))) {
    makeLists();
}

void Scene::Impl::makeLists() {
    for (const auto& [id, window] : pages.windows()) {
        for (const auto& item : window->items) {
            if (item->spec.kind == ItemKind::List && !item->list) {
                item->list = std::make_unique<CUI_BtList>(std::make_unique<CUI_BtList::Impl>(pages, *item));
            }
        }
    }
}

/** Where a list stands, in rows: their height may change. */
struct Scene::Impl::ListPlace {
    CUI_BtList::Impl* list;
    int top;
};

// Never between a page that covers what lies below the window and one that does not: on the way a film that must not be seen
// would shine through.
void Scene::Impl::fadeOver(const Window& changed, bool covered) {
    if (pages.opaque() != covered) {
        return motion.fade().finish();
    }
    const MotionTimes& times = pages.resource().motion;
    const bool over = changed.spec.stacked || !covered;
    motion.fadeOver(pages.screen(), over ? times.popup : times.page);
}

void Scene::Impl::redefine(Resource next) {
    touch.letGo();
    motion.rest();
    std::vector<ListPlace> places;
    for (const auto& [id, window] : pages.windows()) {
        for (const auto& item : window->items) {
            if (item->list) {
                places.push_back({&item->list->impl(), item->list->impl().top()});
            }
        }
    }
    pages.redefine(std::move(next));
    for (const auto& [list, top] : places) {
        list->scroll = top * list->rowHeight();
        list->keptRows.clear();
        list->showEmptiness();
    }
    makeLists();
    motion.collect();
    painter.emplace(pages, motion, *fonts); // its pictures are those of the old resource
}

void Scene::Impl::paint(uint8_t* pixels, int stride, const std::vector<Rect>& areas, Contents contents) {
    const Rect& screen = pages.screen();
    const SurfacePtr surface(
        cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, screen.w, screen.h, stride));
    cairo_t* cairo = cairo_create(surface.get());
    for (const Rect& area : areas) {
        painter->paint(cairo, area, contents);
    }
    cairo_destroy(cairo);
    cairo_surface_flush(surface.get());
}

Scene::Scene(std::unique_ptr<Impl> impl) : m_impl(std::move(impl)) {}
Scene::~Scene() = default;

Result<std::unique_ptr<Scene>> Scene::load(const std::string& resourceFile, const std::string& fontDir,
                                           int width, int height, SceneListener& listener,
                                           std::optional<ScreenSize> screen) {
    const ScreenSize written{width, height};
    Result<Resource> resource = loadResource(resourceFile, width, height);
    if (!resource) {
        return resource.failure();
    }
    Result<std::unique_ptr<FontBook>> fonts = FontBook::open(fontDir);
    if (!fonts) {
        return fonts.failure();
    }
    const ScreenFit fit(written, screen.value_or(written));
    auto impl = std::make_unique<Impl>(std::move(*resource), std::move(*fonts), fit, listener);
    return std::unique_ptr<Scene>(new Scene(std::move(impl)));
}

Status Scene::reload() {
    const ScreenSize& written = m_impl->pages.fit().written();
    const std::string file = files().front();
    Result<Resource> next = loadResource(file, written.width, written.height);
    if (!next) {
        return next.failure();
    }
    if (auto fit = m_impl->pages.fits(*next); !fit) {
        return Error{file + ": " + fit.error() + "; for other pages start anew"};
    }
    m_impl->redefine(std::move(*next));
    return ok();
}

const std::vector<std::string>& Scene::files() const {
    return m_impl->pages.resource().files;
}

CUIWndMng& Scene::wndMng() {
    return *m_impl->wndMng;
}

bool Scene::showWindow(int id, bool show) {
    Window* window = m_impl->pages.window(id);
    if (!window) {
        return false;
    }
    const bool covered = m_impl->pages.opaque();
    if (m_impl->pages.show(*window, show)) {
        show ? m_impl->motion.windowShown(*window) : m_impl->motion.windowHidden(*window);
        if (!m_impl->motion.leaving()) {
            m_impl->fadeOver(*window, covered);
        }
    }
    return true;
}

std::vector<int> Scene::shownWindows() const {
    std::vector<int> ids;
    for (const Window* window : m_impl->pages.shown()) {
        ids.push_back(window->spec.id);
    }
    return ids;
}

int Scene::replacedBy(int id) const {
    const Window* window = m_impl->pages.window(id);
    const Window* replaced = window ? m_impl->pages.replacedBy(*window) : nullptr;
    return replaced ? replaced->spec.id : 0;
}

std::vector<int> Scene::droppedBy(int id) const {
    std::vector<int> ids;
    const Window* window = m_impl->pages.window(id);
    if (window && !window->spec.stacked && !m_impl->pages.isShown(*window)) {
        const auto& shown = m_impl->pages.shown();
        for (auto above = shown.rbegin(); above != shown.rend() && (*above)->spec.stacked; ++above) {
            ids.push_back((*above)->spec.id);
        }
    }
    return ids;
}

bool Scene::hits(int x, int y) const {
    return m_impl->touch.covers(x, y);
}

void Scene::press(int x, int y) {
    m_impl->touch.press(x, y);
}

void Scene::move(int x, int y, int64_t nowMs) {
    m_impl->touch.move(x, y, nowMs);
}

void Scene::hold() {
    m_impl->touch.hold();
}

void Scene::release(int x, int y, int64_t nowMs) {
    m_impl->touch.release(x, y, nowMs);
}

void Scene::letGo() {
    m_impl->touch.letGo();
}

void Scene::setMotion(MotionLevel level) {
    m_impl->motion.setLevel(level);
}

MotionLevel Scene::motion() const {
    return m_impl->motion.level();
}

void Scene::setSeen(bool seen) {
    m_impl->motion.setSeen(seen);
}

bool Scene::fading() const {
    return m_impl->motion.fading();
}

void Scene::finishFades() {
    m_impl->motion.finishFades();
}

int64_t Scene::nextTick() const {
    return m_impl->motion.next();
}

void Scene::tick(int64_t nowMs) {
    m_impl->motion.tick(nowMs);
}

void Scene::drawWindow(int id) {
    if (Window* window = m_impl->pages.window(id)) {
        m_impl->pages.drawWindow(*window);
    }
}

std::vector<Rect> Scene::paint(uint8_t* pixels, int stride) {
    const Rect& screen = m_impl->pages.screen();
    std::vector<Rect> areas = m_impl->pages.damaged().take(screen);
    Fade& fade = m_impl->motion.fade();
    fade.begin(pixels, stride, screen);
    if (!areas.empty()) {
        m_impl->paint(fade.running() ? fade.settled() : pixels, stride, areas, Contents::Drawn);
    }
    return fade.running() ? fade.show(pixels, std::move(areas)) : areas;
}

void Scene::invalidate() {
    m_impl->pages.repaint();
}

std::map<Binding, BoundAs> Scene::bindings() const {
    std::map<Binding, BoundAs> found;
    for (const auto& [id, window] : m_impl->pages.windows()) {
        if (!window->spec.tint.empty()) {
            found[window->spec.tint] = BoundAs::Color;
        }
        for (const auto& item : window->items) {
            if (!item->spec.bound.empty()) {
                found[item->spec.bound] = BoundAs::Picture;
            }
            for (const Binding& word : {item->spec.movesWhile, item->spec.value}) {
                if (!word.empty()) {
                    found[word] = BoundAs::Word;
                }
            }
        }
    }
    return found;
}

void Scene::publish(const Binding& binding, const std::string& text, PictureFilePtr picture) {
    m_impl->pages.publish(binding, {text, std::move(picture), colorOf(text)});
    m_impl->motion.published();
}

bool Scene::setLanguage(const std::string& code) {
    return m_impl->pages.setLanguage(code);
}

bool Scene::setTheme(const std::string& name) {
    return m_impl->pages.setTheme(name);
}

} // namespace zm
