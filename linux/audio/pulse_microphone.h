#pragma once

#include "linux/audio/pulse_connection.h"
#include "monitors/microphone.h"

namespace chimewerk {

/// The sound server's default source, or another where that is the monitor of a sink: what the computer
/// itself plays is never taken for a microphone. Taps are called on the connection's thread, with its lock
/// held, for buffers of exactly the length that they ask for.
///
/// An engine listens as long as it runs to whichever source that is at the time: servers, sources and
/// defaults may come, go and change. While there is no microphone, nothing runs.
///
/// A sound server lets every program of the user's record and has nobody to ask, and so access is always
/// granted. Where a server refuses after all, the engine stays silent.
class PulseMicrophone final : public Microphone {
public:
    /// The connection outlives the engines.
    explicit PulseMicrophone(PulseConnection& connection) : connection_(connection) {}

    Authorization authorization() override { return Authorization::authorized; }
    void requestAccess(std::function<void(bool granted)> answered) override { answered(true); }
    std::unique_ptr<AudioEngine> makeEngine() override;

private:
    PulseConnection& connection_;
};

}  // namespace chimewerk
