#pragma once

#include "patch/Clip.h"

#include <cstddef>
#include <set>
#include <vector>

namespace plinket3 {

/// What goes along with records that are copied, as the user chooses it.
class CopyChoice {
public:
    /// Begins with what `CompanionsOf` proposes.
    CopyChoice(const PatchData& patch, const EngineConfiguration& engine, const std::vector<RecordId>& records);

    const std::vector<Companion>& Companions() const { return companions_; }
    bool IsTicked(std::size_t place) const { return ticked_[place]; }
    /// Ticks one, and what is another one elsewhere of all that it brings in; or unticks it with what then nothing that
    /// is ticked brings in, unless that was ticked by itself. What is copied stays ticked.
    void Tick(std::size_t place, bool ticked);
    /// The records that are ticked.
    std::set<RecordId> Chosen() const;

private:
    std::vector<Companion> companions_;
    std::vector<std::vector<std::size_t>> leads_; // from each to others, by their places
    std::vector<bool> ticked_;
    std::set<std::size_t> heads_; // what is copied, and what was ticked by itself
};

/// The record, and the states that are its own: those of other things that it makes are not. The sounds and sprites of
/// the patch that they name go along, so that they are known by their names.
std::set<RecordId> WithOwnStates(const PatchData& patch, const EngineConfiguration& engine, const RecordId& record);

} // namespace plinket3
