#pragma once

#include "platform/pulse/pulse_devices.h"

#include <chrono>
#include <functional>
#include <map>
#include <utility>

struct pa_context;
struct pa_operation;
struct pa_threaded_mainloop;

namespace orvel {

/// How long the server may take to answer before it counts as gone.
inline constexpr std::chrono::milliseconds kServerPatience{3000};

/// Throws a RuntimeError (DeviceError). detail: UTF-8, why.
[[noreturn]] void throwDeviceError(const char *detail);

/// The connection to a PulseAudio (or PipeWire) server and what hangs on it, kept up to date by the server's events.
/// The library's own thread runs the callbacks, with the main loop's lock held; that lock guards everything here, and
/// no other lock is taken under it. All public calls come from the window thread, without the lock, where not said
/// otherwise.
class PulseServer : public PulseControls {
  public:
    /// Holds the main loop's lock as long as it lives.
    class Lock {
      public:
        explicit Lock(const PulseServer &server);
        ~Lock();
        Lock(const Lock &) = delete;
        Lock(Lock &&) = delete;
        Lock &operator=(const Lock &) = delete;
        Lock &operator=(Lock &&) = delete;

      private:
        pa_threaded_mainloop *loop_;
    };

    /// Connects; waits until the devices are known, three seconds at most. Not finding a server is no error.
    PulseServer();
    ~PulseServer() override;
    PulseServer(const PulseServer &) = delete;
    PulseServer(PulseServer &&) = delete;
    PulseServer &operator=(const PulseServer &) = delete;
    PulseServer &operator=(PulseServer &&) = delete;

    /// As last heard from the server; nothing without one.
    [[nodiscard]] PulseDevices devices() const override;
    /// Tries again to connect when the server is gone, once a second at most. Does not wait.
    void retry();
    /// Throws DeviceError when the server is gone or does not answer. An output that is gone is no error.
    void setMute(const QByteArray &sink, bool mute);
    void setLevels(const QByteArray &source, const PulseLevels &levels) override;
    void setSourceMute(const QByteArray &source, bool mute) override;
    void setPort(const QByteArray &source, const QByteArray &port) override;
    void setLatencyOffset(const QByteArray &card, const QByteArray &port, std::int64_t microseconds) override;

    // With a Lock held, from any thread, for streams.

    [[nodiscard]] bool isReady() const;
    [[nodiscard]] pa_context *context() const { return context_; }
    /// Waits until a callback has made something true and called wakeWaiters(); false after so long.
    bool waitUntil(const std::function<bool()> &done, std::chrono::milliseconds longest);
    /// Waits for the next wakeWaiters(), whatever it is for.
    void wait();
    /// Called by callbacks.
    void wakeWaiters();

  private:
    friend struct PulseServerCallbacks;
    /// What the server has not answered yet, and whether it said yes.
    struct Answer;
    using Question = std::function<pa_operation *(Answer &)>;
    /// Whether the server did what it was asked; throws DeviceError when it does not answer in time.
    bool ask(const Question &question, std::chrono::milliseconds patience);
    /// Throws DeviceError when the server refuses; waits until what it accepted is in devices_.
    void change(const Question &question);
    void connect();
    void disconnect();
    void stateChanged();
    void askForDevices();
    void devicesComplete();

    pa_threaded_mainloop *loop_;
    pa_context *context_ = nullptr;
    PulseDevices devices_;
    PulseDevices arriving_; ///< what came of the lists that were asked for
    /// Latency offsets of the ports of the cards that are arriving, by card and port.
    std::map<std::pair<std::uint32_t, QByteArray>, std::int64_t> offsets_;
    std::map<std::uint32_t, QByteArray> cardNames_;
    bool asking_ = false;
    bool askAgain_ = false;
    bool known_ = false; ///< devices_ is complete
    std::chrono::steady_clock::time_point lastAttempt_;
};

} // namespace orvel
