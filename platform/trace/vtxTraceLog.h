#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <cstddef>

/// What a vtxTraceDevice writes: the operations as lines of text, counters, and misuse. Shared with whoever reads it,
/// so that it outlives the device. The text is the same from run to run: handles are numbered in the order of creation,
/// pixels stand as a hash, numbers as short as they can be told apart.
class VORLEX_API vtxTraceLog {
public:
    struct Counters {
        unsigned passes = 0;
        unsigned runs = 0;
        unsigned quads = 0;
        unsigned geometryDraws = 0;  ///< effects included
        unsigned targets = 0;        ///< targets rendered
        unsigned uploads = 0;        ///< textures and geometry
    };

    // --- Lines ---
    /// Off: only counters and misuse are kept, and no memory is touched in a steady frame.
    void setRecording(bool recording) {
        recording_ = recording;
        contractRecorded_ = contractWanted_ && recording_;
    }
    bool getRecording() const { return recording_; }
    /// Whether operations of the contract are recorded too, as lines that begin with "> ".
    void setContractWanted(bool wanted) {
        contractWanted_ = wanted;
        contractRecorded_ = contractWanted_ && recording_;
    }
    bool getContractWanted() const { return contractRecorded_; }
    qor::vector<qor::string> const& getLines() const { return lines_; }
    /// All lines, each ended by a line feed.
    qor::string getText() const;
    void clearLines() { lines_.clear(); }

    // --- Counters ---
    /// Since the last takeFrame.
    Counters const& getCounters() const { return counters_; }
    /// The counters so far; counting begins anew.
    Counters takeFrame();
    /// Textures, targets and geometry that exist.
    int getLiveObjects() const { return liveObjects_; }

    // --- Misuse: of the contract, as the front half reports it, and of the device by the front half ---
    bool hasMisuse() const { return !misuses_.empty(); }
    qor::vector<qor::string> const& getMisuses() const { return misuses_; }
    void clearMisuses() { misuses_.clear(); }

private:
    friend class vtxTraceDevice;

    void addLine_(char const* format, ...) __attribute__((format(printf, 2, 3)));
    void addMisuse_(char const* text);
    bool const* getContractSwitch_() const { return &contractRecorded_; }

    bool recording_ = true;
    bool contractWanted_ = false;
    bool contractRecorded_ = false;
    int liveObjects_ = 0;
    Counters counters_;
    qor::vector<qor::string> lines_;
    qor::vector<qor::string> misuses_;
};
