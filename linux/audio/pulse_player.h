#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <vector>

#include "linux/audio/headroom.h"
#include "linux/audio/overflow_mixer.h"
#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_stream.h"
#include "linux/base/worker.h"
#include "linux/decoding/sound_file.h"

namespace chimewerk {

/// Plays sounds through a pool of streams that are connected beforehand and corked, which costs nothing while
/// it is quiet. A sound takes one of them, is handed to it and uncorks it; when it has been heard the stream
/// is corked again. The server does the mixing. When more sounds play at once than the pool may have streams,
/// the overflow is mixed here and goes out through one stream more.
///
/// `play()` belongs to the main thread; the rest runs on the connection's thread, under its lock. Long sounds
/// are decoded ahead of the server on a worker.
class PulsePlayer final : public PulseClient {
public:
    /// The connection outlives the player.
    explicit PulsePlayer(PulseConnection& connection);
    PulsePlayer(const PulsePlayer&) = delete;
    PulsePlayer& operator=(const PulsePlayer&) = delete;
    ~PulsePlayer() override;

    /// Starts the sound and returns at once. `volume` is from 0 to 1. While there is no server, or no device,
    /// the sound waits for one for a second.
    void play(std::shared_ptr<SoundFile> sound, float volume);

    void serverFound(pa_context& context) override;
    void serverLost() override;

private:
    using Clock = std::chrono::steady_clock;

    /// A sound on its way to the speaker.
    struct Voice {
        std::uint64_t id = 0;
        std::vector<float> stereo;         // The part to play first, at its volume.
        std::shared_ptr<SoundFile> sound;  // What follows comes from here; null when nothing does.
        float volume = 0;
        Clock::time_point asked;     // When it was to be heard.
        std::int64_t nextFrame = 0;  // On the headroom's time line, where the next part goes.
        bool decoding = false;       // The next part is being decoded.
    };
    /// A stream of the pool and the sound that it plays.
    struct Lane {
        enum class State { connecting, idle, playing };
        State state = State::connecting;
        std::unique_ptr<PulseStream> stream;
        Voice voice = {};
        Clock::time_point heardBy = {};  // When the voice should have been heard to its end.
        std::unique_ptr<PulseConnection::Alarm> refill = {};
    };
    using Lanes = std::list<Lane>;

    void start(Voice voice);
    void addLane();
    void laneReady(Lane& lane);
    void laneFailed(Lane& lane);
    void begin(Lane& lane, Voice voice);
    void finish(Lane& lane);
    void takeWaiting(Lane& lane);
    void reclaimOverdue();
    void shrinkLater();
    void shrink();

    void startOverflow(Voice voice);
    void addOverflowStream();
    void runOverflow();
    void mixOverflow(std::size_t frames);
    void overflowLost();

    void decodeNext(Voice& voice);
    void deliver(std::uint64_t id, std::span<float> stereo, bool complete);
    void deliverOverflow(std::uint64_t id, std::span<float> stereo, bool complete);
    void refill(Lane& lane);
    void fit(Voice& voice, std::span<float> stereo);

    PulseConnection& connection_;
    // Guarded by the connection's lock:
    pa_context* context_ = nullptr;
    Lanes lanes_;
    std::deque<Voice> waiting_;
    std::unique_ptr<PulseStream> overflowStream_;
    /// The stream of the overflow is made, corked, kept fed, or fed no more and heard to its end, in turn.
    enum class OverflowState { connecting, idle, feeding, draining };
    OverflowState overflowState_ = OverflowState::connecting;
    OverflowMixer overflow_;
    std::vector<Voice> overflowRests_;  // The overflow sounds that are still being decoded.
    std::vector<float> mixed_;
    Headroom headroom_;
    std::unique_ptr<PulseConnection::Alarm> shrinking_;
    std::uint64_t lastId_ = 0;

    Worker decoding_;  // Last, so that it ends first.
};

}  // namespace chimewerk
