#include "patch/NewChain.h"

#include "patch/NewRecords.h"
#include "patch/PointerTargets.h"
#include "patch/StepNames.h"

#include <algorithm>
#include <string>

namespace plinket3 {

namespace {

Status TooFew(std::size_t free, const std::string& what, std::size_t asked) {
    return Status::Failure(
        (free == 1 ? "There is 1 free state" : "There are " + std::to_string(free) + " free states") + what + ", " +
        std::to_string(asked) + (asked == 1 ? " is" : " are") + " asked for.");
}

/// Free states for the frames' actions, where patches only move actions: to states that have one, which then cannot do
/// without.
Status TakeByAction(const Session& session, const FreeRecords& free, const NewChain& chain,
                    std::vector<std::int32_t>& states) {
    const PatchSet& set = session.patch.current;
    const PointerTargets pointers(session.patch.defaults.states, session.engine.codePointerStates);
    std::vector<std::int32_t> left = free.Take(set, RecordKind::State, free.Count());
    const auto mayHave = [&](std::int32_t state, std::int32_t action) {
        return action == 0 ? set.states[state].action == 0
                           : set.states[state].action != 0 && pointers.CanExpress(state, action);
    };
    for (const NewChain::Frame& frame : chain.frames) {
        const auto found = std::ranges::find_if(left, [&](std::int32_t state) { return mayHave(state, frame.action); });
        if (found == left.end()) {
            const bool any = frame.action != 0;
            const auto alike = [any](const NewChain::Frame& each) { return (each.action != 0) == any; };
            const auto all = free.Take(set, RecordKind::State, free.Count());
            return TooFew(static_cast<std::size_t>(std::ranges::count_if(
                              all, [&](std::int32_t state) { return mayHave(state, frame.action); })),
                          any ? " that can have such an action" : " without an action",
                          static_cast<std::size_t>(std::ranges::count_if(chain.frames, alike)));
        }
        states.push_back(*found);
        left.erase(found);
    }
    return {};
}

std::int32_t NextOf(const NewChain& chain, const std::vector<std::int32_t>& states, std::size_t place) {
    if (place + 1 < states.size())
        return states[place + 1];
    return chain.end == NewChain::End::Loop ? states.front() : chain.end == NewChain::End::GoOn ? chain.next : 0;
}

} // namespace

Status MakeChain(const Session& session, const FreeRecords& free, const NewChain& chain, MadeChain& made) {
    const PatchSet& set = session.patch.current;
    const std::size_t count = chain.frames.size();
    if (count == 0)
        return Status::Failure("At least one state is needed.");
    if (!set.sprites.Has(chain.sprite))
        return Status::Failure("There is no sprite " + std::to_string(chain.sprite) + ".");
    if (chain.end == NewChain::End::GoOn && !set.states.Has(chain.next))
        return Status::Failure("There is no state " + std::to_string(chain.next) + ".");

    MadeChain making;
    if (session.engine.dialect.namedCodePointers) {
        making.states = free.Take(set, RecordKind::State, count);
        if (making.states.size() < count)
            return TooFew(making.states.size(), "", count);
    } else if (const Status taken = TakeByAction(session, free, chain, making.states); !taken) {
        return taken;
    }
    PatchSet run;
    for (std::size_t place = 0; place < count; ++place) {
        const std::int32_t number = making.states[place];
        const NewChain::Frame& frame = chain.frames[place];
        StateRecord state = NewRecord<StateRecord>(number);
        state.sprite = chain.sprite;
        state.subnumber = frame.frame | (chain.lit ? litBit : 0);
        state.duration = place + 1 == count && chain.end == NewChain::End::Stay ? -1 : frame.duration;
        state.nextState = NextOf(chain, making.states, place);
        state.codePointer = frame.action;
        run.states.Add(number, state);
        if (!set.states.Has(number))
            making.assignments.push_back({{RecordKind::State, number, existsField}, 1});
        for (const Cell& cell : CellsOf(RecordKind::State, number))
            if (cell.field < 0 || FactsOf(cell.kind, cell.field).inPatch)
                making.assignments.push_back({cell, ReadCell(run, cell)});
    }
    if (chain.begins)
        making.assignments.push_back({*chain.begins, making.states.front()});
    made = std::move(making);
    return {};
}

} // namespace plinket3
