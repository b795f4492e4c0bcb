#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

struct pa_context;
struct pa_server_info;
struct pa_sink_info;
struct pa_source_info;
struct pa_threaded_mainloop;

namespace orvel {

/// What records, as the server describes it.
struct PulseSource {
    QByteArray name;
    QString description;
    QStringList ports;
    int activePort = 0; ///< position in ports
    std::uint32_t card = 0;
    bool isMonitor = false;
};

/// What plays.
struct PulseSink {
    QByteArray name;
    std::uint32_t card = 0;
    bool isMuted = false;
};

struct PulseDevices {
    std::vector<PulseSource> sources; ///< real inputs first, then monitors, each by name: plugging one leaves the rest
    std::vector<PulseSink> sinks;
    QByteArray defaultSink;
};

/// The connection to a PulseAudio (or PipeWire) server and what hangs on it, kept up to date by the server's events.
/// The library's own thread runs the callbacks, with the main loop's lock held; that lock guards everything here, and
/// no other lock is taken under it. All public calls come from the window thread, without the lock where not said
/// otherwise.
class PulseServer {
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
    ~PulseServer();
    PulseServer(const PulseServer &) = delete;
    PulseServer(PulseServer &&) = delete;
    PulseServer &operator=(const PulseServer &) = delete;
    PulseServer &operator=(PulseServer &&) = delete;

    /// As last heard from the server; nothing without one.
    [[nodiscard]] PulseDevices devices() const;
    /// Tries again to connect when the server is gone, once a second at most. Does not wait.
    void retry();
    /// Throws DeviceError when the server is gone or does not answer. An output that is gone is no error.
    void setMute(const QByteArray &sink, bool mute);

    // With a Lock held, for streams.

    [[nodiscard]] bool isReady() const;
    [[nodiscard]] pa_context *context() const { return context_; }
    /// Waits until a callback has made something true and called wakeWaiters(); false after so long.
    bool waitUntil(const std::function<bool()> &done, std::chrono::milliseconds longest);
    /// Called by callbacks.
    void wakeWaiters();

  private:
    friend struct PulseServerCallbacks;
    void connect();
    void disconnect();
    void stateChanged();
    void askForDevices();
    void devicesComplete();

    pa_threaded_mainloop *loop_;
    pa_context *context_ = nullptr;
    PulseDevices devices_;
    PulseDevices arriving_; ///< what came of the lists that were asked for
    bool asking_ = false;
    bool askAgain_ = false;
    bool known_ = false; ///< devices_ is complete
    std::chrono::steady_clock::time_point lastAttempt_;
};

} // namespace orvel
