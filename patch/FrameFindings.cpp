#include "patch/FrameFindings.h"

#include "core/Text.h"
#include "patch/StateUse.h"
#include "patch/StepNames.h"
#include "patch/TimelessCircles.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace plinket3::modPatchCheck {

namespace {

constexpr std::string_view invisible = "TNT1"; // engines draw nothing for it, whatever there is

class FrameFindings {
public:
    FrameFindings(const PatchSet& set, const EngineConfiguration& engine, const LineOfCell& lineOf,
                  const HasPicture& hasPicture)
        : set_(set), engine_(engine), lineOf_(lineOf), hasPicture_(hasPicture) {}

    std::vector<FrameFinding> Find() {
        FirstFrames();
        for (const std::vector<std::int32_t>& circle : TimelessCircles(set_))
            Circle(circle);
        if (hasPicture_) {
            for (const auto& [number, thing] : set_.things)
                Pictures(RecordKind::Thing, number, thing, StatesOfThing(set_, engine_, number));
            for (const auto& [number, weapon] : set_.weapons)
                Pictures(RecordKind::Weapon, number, weapon, StatesOfWeapon(set_, engine_, number));
        }
        return std::move(findings_);
    }

private:
    const std::size_t* LineOfState(std::int32_t state, std::int32_t StateNumbers::*member) const {
        return lineOf_({RecordKind::State, state, RowOf(member)});
    }

    void FirstFrames() {
        for (const auto& [number, thing] : set_.things) {
            const StateRecord* state = thing.initialState == 0 ? nullptr : set_.states.Find(thing.initialState);
            if (state == nullptr || state->duration != 0)
                continue;
            const std::size_t* line = lineOf_({RecordKind::Thing, number, RowOf(&ThingRecord::initialState)});
            if (line == nullptr)
                line = LineOfState(thing.initialState, &StateRecord::duration);
            if (line != nullptr)
                findings_.push_back({*line, "lets " + RecordName(set_, RecordKind::Thing, number) +
                                                " begin in a frame of 0 tics, which it never leaves"});
        }
    }

    void Circle(const std::vector<std::int32_t>& states) {
        const std::size_t* last = nullptr;
        for (const std::int32_t state : states)
            for (const auto member : {&StateRecord::duration, &StateRecord::nextState})
                if (const std::size_t* line = LineOfState(state, member);
                    line != nullptr && (last == nullptr || *line > *last))
                    last = line;
        if (last != nullptr)
            findings_.push_back({*last,
                                 states.size() == 1
                                     ? "lets a frame of 0 tics follow itself: the game hangs or breaks it off"
                                     : "closes a circle of " + std::to_string(states.size()) +
                                           " frames of 0 tics: the game hangs or breaks it off",
                                 Severity::Refused});
    }

    /// Pictures that are missing, each told of once: by the line that gives it to a frame, renames its sprite or leads
    /// to the frame.
    template <class Record>
    void Pictures(RecordKind kind, std::int32_t number, const Record& record, const std::vector<std::int32_t>& states) {
        for (const std::int32_t state : states) {
            if (state == 0 || HasItsPicture(set_.states[state]) || told_.contains(PictureOf(state)))
                continue;
            const std::size_t* line = LineOfPicture(state);
            for (const std::int32_t before : states)
                if (line == nullptr && set_.states[before].nextState == state)
                    line = LineOfState(before, &StateRecord::nextState);
            for (const Field<Record>& field : fieldsOf<Record>)
                if (line == nullptr && field.unit == FieldUnit::State && record.*field.member == state)
                    line = lineOf_({kind, number, static_cast<int>(&field - fieldsOf<Record>.data())});
            if (line != nullptr && told_.insert(PictureOf(state)).second)
                findings_.push_back({*line, "makes " + RecordName(set_, kind, number) + " come to frame " +
                                                std::to_string(state) + ", which shows " + PictureOf(state) +
                                                ": the WADs have no such picture"});
        }
    }

    const std::size_t* LineOfPicture(std::int32_t state) const {
        const std::size_t* line = LineOfState(state, &StateRecord::sprite);
        if (line == nullptr)
            line = LineOfState(state, &StateRecord::subnumber);
        return line != nullptr ? line : lineOf_({RecordKind::Sprite, set_.states[state].sprite, lumpNameField});
    }

    static int FrameOf(const StateRecord& state) { return state.subnumber & ~litBit; }

    std::string PictureOf(std::int32_t state) const { return PictureName(set_, set_.states[state]); }

    /// What is no sprite or frame at all is told of elsewhere.
    bool HasItsPicture(const StateRecord& state) {
        constexpr int frames = 29; // as many as letters and signs stand for
        const std::string_view sprite = set_.SpriteName(state.sprite);
        const int frame = FrameOf(state);
        if (sprite.empty() || sprite.front() == '\0' || sprite == invisible || frame < 0 || frame >= frames)
            return true;
        const auto [known, isNew] = pictures_.try_emplace({std::string(sprite), frame}, false);
        if (isNew)
            known->second = hasPicture_(sprite, frame);
        return known->second;
    }

    const PatchSet& set_;
    const EngineConfiguration& engine_;
    const LineOfCell& lineOf_;
    const HasPicture& hasPicture_;
    std::vector<FrameFinding> findings_;
    std::set<std::string> told_; // pictures
    std::map<std::pair<std::string, int>, bool> pictures_;
};

} // namespace

std::vector<FrameFinding> FindingsOfFrames(const PatchSet& set, const EngineConfiguration& engine,
                                           const LineOfCell& lineOf, const HasPicture& hasPicture) {
    return FrameFindings(set, engine, lineOf, hasPicture).Find();
}

} // namespace plinket3::modPatchCheck
