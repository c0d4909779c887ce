#include "services/bench/screen/Compositor.h"

#include "base/Socket.h"
#include "services/bench/screen/SurfaceClient.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <utility>

namespace zm::bench::screen {

namespace {

constexpr size_t MostClients = 32;
// Some five minutes of a film.
constexpr size_t KeptMoments = 10000;

} // namespace

struct Compositor::Impl {
    Compositor& owner;
    EventLoop& loop;
    std::string socket;
    ScreenSize size;
    Rect screen = size.area();
    Image frame{size.width, size.height};
    SurfaceScene scene;
    std::map<int, std::unique_ptr<SurfaceClient>> clients;
    int nextClient = 0;
    Listener listener{loop, [this](UniqueFd fd) { accept(std::move(fd)); }};
    std::optional<Image> cover;
    bool appVisible = true;
    uint64_t composed = 0;
    std::deque<std::chrono::steady_clock::time_point> moments; ///< of the latest frames
    SurfaceDamage damage;                                      ///< parts of the frame that are out of date
    Rect untold;            ///< what was brought up to date before the owner was told of it
    bool posted = false;    ///< the owner will be told of damage in the next turn
    bool announced = false; ///< the owner was told and has not composed since
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);

    Impl(Compositor& compositor, EventLoop& eventLoop, std::string path, ScreenSize screenSize)
        : owner(compositor), loop(eventLoop), socket(std::move(path)), size(screenSize) {
        damage.add(screen);
    }
    ~Impl() { *alive = false; }

    bool hasClient(SurfaceClient::Role role) const {
        return std::ranges::any_of(clients,
                                   [role](const auto& entry) { return entry.second->role() == role; });
    }

    void accept(UniqueFd fd) {
        if (clients.size() >= MostClients) {
            return;
        }
        const int number = nextClient++;
        auto client = std::make_unique<SurfaceClient>(loop, std::move(fd), scene, number);
        client->onChange = [this] { changed(); };
        client->onGone = [this, number] { gone(number); };
        clients[number] = std::move(client);
    }

    void gone(int number) {
        clients.erase(number);
        if (!hasClient(SurfaceClient::Role::Application)) {
            scene.hideChildren();
        }
        changed();
    }

    // Takes over what changed among the windows; behind the cover nobody sees it.
    void changed() {
        if (appVisible) {
            for (const auto& rect : scene.damage.rects()) {
                damage.add(rect.intersected(screen));
            }
        }
        scene.damage.clear();
        announce();
    }

    void announce() {
        if (damage.empty() || announced || posted) {
            return;
        }
        posted = true;
        loop.post([this, still = alive] {
            if (!*still) {
                return;
            }
            posted = false;
            const Rect area = damage.bounds().united(std::exchange(untold, {}));
            if (!area.empty() && !announced && owner.onDamage) {
                announced = !damage.empty();
                owner.onDamage(area);
            }
        });
    }

    std::vector<SurfaceLayer> layers() const {
        if (appVisible) {
            return scene.layers();
        }
        if (!cover) {
            return {};
        }
        return {{cover->pixels.data(),
                 cover->width,
                 cover->height,
                 cover->stride,
                 {0, 0, cover->width, cover->height},
                 false,
                 nullptr}};
    }
};

Compositor::Compositor(EventLoop& loop, std::string socket, ScreenSize size)
    : m_impl(std::make_unique<Impl>(*this, loop, std::move(socket), size)) {}

Compositor::~Compositor() {
    m_impl->clients.clear();
}

const ScreenSize& Compositor::size() const {
    return m_impl->size;
}

Status Compositor::start() {
    auto listening = m_impl->listener.listen(m_impl->socket);
    if (listening) {
        m_impl->announce();
    }
    return listening;
}

const Image& Compositor::compose() {
    m_impl->announced = false;
    if (!m_impl->damage.empty()) {
        const auto layers = m_impl->layers();
        for (const auto& rect : m_impl->damage.rects()) {
            composeLayers(m_impl->frame, rect, layers);
        }
        if (m_impl->posted) {
            m_impl->untold = m_impl->untold.united(m_impl->damage.bounds());
        }
        m_impl->damage.clear();
        ++m_impl->composed;
        m_impl->moments.push_back(std::chrono::steady_clock::now());
        if (m_impl->moments.size() > KeptMoments) {
            m_impl->moments.pop_front();
        }
    }
    return m_impl->frame;
}

uint64_t Compositor::composedFrames() const {
    return m_impl->composed;
}

const std::deque<std::chrono::steady_clock::time_point>& Compositor::frameMoments() const {
    return m_impl->moments;
}

void Compositor::setAppVisible(bool visible) {
    if (m_impl->appVisible != visible) {
        m_impl->appVisible = visible;
        m_impl->damage.add(m_impl->screen);
        m_impl->announce();
    }
}

void Compositor::setCover(std::optional<Image> cover) {
    m_impl->cover = std::move(cover);
    if (!m_impl->appVisible) {
        m_impl->damage.add(m_impl->screen);
        m_impl->announce();
    }
}

unsigned Compositor::postChild(const std::string& name) {
    auto* child = m_impl->scene.findChild(name);
    return child ? child->number : m_impl->scene.addChild(name, m_impl->screen).number;
}

bool Compositor::withdrawChild(const std::string& name) {
    const bool removed = m_impl->scene.removeChild(name);
    m_impl->changed();
    return removed;
}

void Compositor::lockVideo(bool locked) {
    m_impl->scene.lockChildren(locked);
    m_impl->changed();
}

nlohmann::json Compositor::videoState() const {
    const auto* child = m_impl->scene.latestChild();
    const SurfacePlacement placement = child ? child->placement : SurfacePlacement();
    return {{"posted", child != nullptr},
            {"visible", placement.visible},
            {"rect", {placement.rect.x, placement.rect.y, placement.rect.w, placement.rect.h}},
            {"zorder", placement.order},
            {"frames", child ? child->frames : 0},
            {"locked", m_impl->scene.childrenLocked()}};
}

bool Compositor::appConnected() const {
    return m_impl->hasClient(SurfaceClient::Role::Application);
}

} // namespace zm::bench::screen
