#pragma once

#include "base/EventLoop.h"
#include "platform/linux/pps/PpsFile.h"
#include "platform/linux/pps/PpsService.h"
#include "services/disc/Service.h"
#include "services/disc/engine/FrameSink.h"
#include "tests/disc/Samples.h"
#include "tests/disc/SoundRecorder.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

/** One attribute as it was published. */
struct Published {
    std::string object; ///< "device", "status", "playing", ...
    std::string name;
    std::string value;
    std::chrono::steady_clock::time_point when;

    nlohmann::json json() const { return nlohmann::json::parse(value); }
};

/** Records what is published, in order; waits for conditions with a deadline. Any thread. */
class Recorder {
public:
    using Condition = std::function<bool(const Published&)>;

    void add(const std::string& object, const std::string& text);
    /** The first record from place `from` on that fulfils `condition`;
     * its place is left in `from`, plus one. */
    std::optional<Published> wait(size_t& from, const Condition& condition,
                                  std::chrono::milliseconds timeout);
    void clear();
    std::vector<Published> all() const;
    std::string text() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Published> m_records;
};

/** Colour of a picture or a part of it, 0 to 255 each. */
struct Colour {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/** The smallest upright rectangle around some pixels. */
struct PixelBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};
/** Whether all of it is the same within a few pixels. */
bool isNear(const PixelBox& a, const PixelBox& b);
std::ostream& operator<<(std::ostream& out, const PixelBox& box);

/** Keeps the last picture that was shown. Any thread. */
class PictureRecorder : public disc::engine::FrameSink {
public:
    void show(const disc::engine::DrawPicture& draw) override;
    void clear() override;

    int frames() const;
    /** When pictures were shown, and when their middle turned from dark to bright, since `forgetTimes`. */
    std::vector<std::chrono::steady_clock::time_point> times() const;
    std::vector<std::chrono::steady_clock::time_point> flashes() const;
    void forgetTimes();
    /** Waits until the picture was taken away. */
    bool waitCleared(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /** Mean colour of the part around (x, y) of the last picture. */
    Colour at(int x, int y) const;
    /** Waits until the part around (x, y) has that colour, more or less. */
    bool waitFor(int x, int y, Colour wanted, std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /** Where pixels of that colour, more or less, lie in the last picture. */
    PixelBox boxOf(Colour colour) const;
    /** Waits until that is `wanted`. */
    bool waitForBox(Colour colour, const PixelBox& wanted,
                    std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /** Waits until `count` pictures more than `before` were shown. */
    bool waitFrames(int before, int count, std::chrono::milliseconds timeout = std::chrono::seconds(10));

private:
    Colour mean(int x, int y) const;
    PixelBox box(Colour colour) const;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<uint8_t> m_pixels;
    int m_frames = 0;
    std::vector<std::chrono::steady_clock::time_point> m_times;
    std::vector<std::chrono::steady_clock::time_point> m_flashes;
    bool m_bright = false;
    bool m_cleared = false;
};

/** An event loop on a thread of its own. */
class LoopThread {
public:
    LoopThread() : m_thread([this] { m_loop.run(); }) {}
    ~LoopThread() { end(); }
    void end();
    EventLoop& loop() { return m_loop; }
    /** Runs `task` there and waits for it. */
    void call(const std::function<void()>& task);

private:
    EventLoop m_loop;
    std::thread m_thread;
};

/**
 * The engine that tests use: the real one, or, where the thread sanitizer watches, one that only keeps the
 * time: the decoder's libraries are not instrumented, so that their locks would not be seen.
 */
disc::EngineMaker engineMaker(std::shared_ptr<disc::engine::FrameSink> frames);
/** The engine for DVDs; its sound goes to `sound`. */
disc::dvd::EngineMaker dvdEngineMaker(std::shared_ptr<disc::engine::FrameSink> frames,
                                      std::shared_ptr<SoundRecorder> sound);

/** The objects' service and the disc service in this process, and the application's side of both. */
class DiscUnit {
public:
    DiscUnit();
    ~DiscUnit();

    void startObjects();
    void stopObjects();
    /** Starts the disc service, with `disc` inside unless empty. */
    void startService(const std::string& disc = "");
    /** The same where it may fail: why it did, or nothing. `before` runs on its thread. */
    std::string tryService(const std::string& disc, const std::function<void()>& before);
    void stopService();
    /** Runs `task` on the service's thread, which sees to nothing else meanwhile. */
    void whileServiceStands(const std::function<void()>& task) { m_serviceThread->call(task); }

    void command(int number, int first = 0, int second = 0);
    void request(const nlohmann::json& json);
    /** What the voice assistant writes. */
    void voice(const nlohmann::json& json);
    /** Inserts a disc, requests the source and waits until it plays. */
    void play(const std::string& disc);

    /** The next publication of `name` that fulfils `condition`; fails the test after `timeout`. */
    Published next(const std::string& name, const Recorder::Condition& condition,
                   std::chrono::milliseconds timeout = std::chrono::seconds(15));
    /** The next publication of `name` with that value. */
    Published next(const std::string& name, const std::string& value,
                   std::chrono::milliseconds timeout = std::chrono::seconds(15));
    Published nextState(disc::model::PlayState state,
                        std::chrono::milliseconds timeout = std::chrono::seconds(15));
    /** Whether `name` is published with that value within `time`. */
    bool follows(const std::string& name, const std::string& value, std::chrono::milliseconds time);
    /** From here on `next` looks only at what comes later. */
    void mark();
    /** As `mark`, and what was published so far is no longer kept. */
    void forget();
    /** Values of `name` since the mark, in order. */
    std::vector<std::string> since(const std::string& name) const;
    /** Publications since the mark as "name=value", of the names given. */
    std::vector<std::string> sequence(const std::vector<std::string>& names) const;

    const std::string runtime() const { return m_folder.path().string(); }
    std::string catalogue() const { return m_folder / "discdb.sqlite"; }
    std::string resume() const { return m_folder / "resume.sqlite"; }
    Recorder& recorder() { return m_recorder; }
    PictureRecorder& pictures() { return *m_pictures; }
    /** What a DVD sounds like. */
    SoundRecorder& sound() { return *m_sound; }

private:
    TempFolder m_folder;
    Recorder m_recorder;
    std::shared_ptr<PictureRecorder> m_pictures = std::make_shared<PictureRecorder>();
    std::shared_ptr<SoundRecorder> m_sound = std::make_shared<SoundRecorder>();
    size_t m_from = 0;
    std::unique_ptr<LoopThread> m_objectsThread;
    std::unique_ptr<PpsService> m_objects;
    std::unique_ptr<LoopThread> m_serviceThread;
    std::unique_ptr<disc::Service> m_service;
    std::optional<PpsFile> m_control;
    std::optional<PpsFile> m_drive;
};

} // namespace zm::test
