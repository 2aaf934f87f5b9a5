#include "patch/CopyChoice.h"

#include <map>

namespace plinket3 {

CopyChoice::CopyChoice(const PatchData& patch, const EngineConfiguration& engine, const std::vector<RecordId>& records)
    : companions_(CompanionsOf(patch, engine, records)), leads_(companions_.size()) {
    std::map<RecordId, std::size_t> places;
    for (std::size_t i = 0; i < companions_.size(); ++i) {
        places.emplace(companions_[i].record, i);
        ticked_.push_back(companions_[i].proposed);
        if (!companions_[i].parent)
            heads_.insert(i);
    }
    const LinkWalk walk(patch.current, engine);
    for (std::size_t i = 0; i < companions_.size(); ++i)
        walk.ForEachOf(companions_[i].record.first, companions_[i].record.second, [&](const Link& link) {
            const auto kind = RecordKindOf(link.to.kind);
            const auto place = kind ? places.find({*kind, link.to.number}) : places.end();
            if (place != places.end())
                leads_[i].push_back(place->second);
        });
}

void CopyChoice::Tick(std::size_t place, bool ticked) {
    if (!companions_[place].parent)
        return;
    std::vector<bool> reached(companions_.size());
    std::vector<std::size_t> next;
    const auto reach = [&](std::size_t each) {
        if (!reached[each])
            next.push_back(each);
        reached[each] = true;
    };
    const auto follow = [&](const auto& isWanted) {
        while (!next.empty()) {
            const std::size_t from = next.back();
            next.pop_back();
            for (const std::size_t to : leads_[from])
                if (isWanted(to))
                    reach(to);
        }
    };
    if (ticked) {
        heads_.insert(place);
        reach(place);
        follow([this](std::size_t to) { return companions_[to].differs; });
        for (std::size_t i = 0; i < reached.size(); ++i)
            ticked_[i] = ticked_[i] || reached[i];
        return;
    }
    heads_.erase(place);
    ticked_[place] = false;
    for (const std::size_t head : heads_)
        reach(head);
    follow([this](std::size_t to) { return ticked_[to]; });
    ticked_ = std::move(reached);
}

std::set<RecordId> CopyChoice::Chosen() const {
    std::set<RecordId> chosen;
    for (std::size_t i = 0; i < companions_.size(); ++i)
        if (ticked_[i])
            chosen.insert(companions_[i].record);
    return chosen;
}

std::set<RecordId> WithOwnStates(const PatchData& patch, const EngineConfiguration& engine, const RecordId& record) {
    CopyChoice choice(patch, engine, {record});
    for (std::size_t i = 0; i < choice.Companions().size(); ++i) {
        const RecordKind kind = choice.Companions()[i].record.first;
        if (kind != RecordKind::State && kind != RecordKind::Sound && kind != RecordKind::Sprite)
            choice.Tick(i, false);
    }
    return choice.Chosen();
}

} // namespace plinket3
