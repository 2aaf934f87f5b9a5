#pragma once

#include "core/Text.h"
#include "patch/modTableDef.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace plinket3 {

/// Finds a label's place in a table of labels without regard to case: a small hash table made once from the table, so
/// that a patch of a million lines is read about as fast as its lines can be split.
template <std::size_t slotCount> class LabelIndex {
public:
    template <class Labels, class Label> LabelIndex(const Labels& labels, Label label) {
        static_assert((slotCount & (slotCount - 1)) == 0);
        for (std::size_t place = 0; place < labels.size(); ++place) {
            const std::string_view text = label(labels[place]);
            if (text.empty())
                continue;
            std::size_t slot = SlotOf(text);
            while (!slots_[slot].label.empty())
                slot = (slot + 1) % slotCount;
            slots_[slot] = {text, place};
        }
    }

    /// -1 when no label is `key`.
    int Find(std::string_view key) const {
        if (key.empty())
            return -1;
        for (std::size_t slot = SlotOf(key); !slots_[slot].label.empty(); slot = (slot + 1) % slotCount)
            if (EqualIgnoringCase(slots_[slot].label, key))
                return static_cast<int>(slots_[slot].place);
        return -1;
    }

private:
    struct Slot {
        std::string_view label;
        std::size_t place = 0;
    };
    static std::size_t SlotOf(std::string_view text) {
        const auto letter = [text](std::size_t at) { return static_cast<std::size_t>(text[at] & 0x1f); };
        return (text.size() * 5 + letter(0) * 3 + letter(text.size() - 1) + letter(text.size() / 2) * 7) % slotCount;
    }

    std::array<Slot, slotCount> slots_{};
};

/// The rows of a record kind that a patch has, by label.
template <class Record> const Field<Record>* FindField(std::string_view key) {
    static const LabelIndex<64> index(
        fieldsOf<Record>, [](const Field<Record>& field) { return field.inPatch ? field.label : std::string_view(); });
    const int place = index.Find(key);
    return place < 0 ? nullptr : &fieldsOf<Record>[static_cast<std::size_t>(place)];
}

} // namespace plinket3
